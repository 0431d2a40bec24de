#ifndef EXPORT_SUMMARYJSON_H
#define EXPORT_SUMMARYJSON_H

#include "PhoneBackup/folder/BackupInfo.h"

#include <QJsonObject>

namespace Export {

struct Outcome;

//! What became of an export of \a backup, for a program. Keys are only ever added.
QJsonObject summaryJson(const Outcome &outcome, const PhoneBackup::BackupInfo &backup);

} // namespace Export

#endif
