#ifndef EXPORT_SUMMARYJSON_H
#define EXPORT_SUMMARYJSON_H

#include <QJsonObject>

namespace Export {

struct Outcome;

//! The machine-readable result of an export. Keys are only ever added.
QJsonObject summaryJson(const Outcome &outcome);

} // namespace Export

#endif
