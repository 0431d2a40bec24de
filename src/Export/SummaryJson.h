#ifndef EXPORT_SUMMARYJSON_H
#define EXPORT_SUMMARYJSON_H

#include <QJsonObject>

namespace Export {

struct Outcome;

//! What became of an export, for a program. Keys are only ever added.
QJsonObject summaryJson(const Outcome &outcome);

} // namespace Export

#endif
