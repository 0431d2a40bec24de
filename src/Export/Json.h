#ifndef EXPORT_JSON_H
#define EXPORT_JSON_H

#include "Export/Failure.h"
#include "Export/Inventory.h"
#include "Export/Problems.h"
#include "PhoneBackup/folder/BackupInfo.h"

#include <QJsonArray>
#include <QJsonObject>

//! Parts of machine-readable results. Keys are only ever added.
namespace Export::Json {

//! The key "status", which every result has.
QJsonObject result(Status status);

//! Why nothing was done, with the backups to choose from if there are \a several.
QJsonObject failed(const Failure &failure, const QList<PhoneBackup::BackupInfo> &several);

QJsonObject backup(const PhoneBackup::BackupInfo &info);

//! Word, code, name and counts of a data type.
QJsonObject type(const TypeTotals &totals);

//! Those of \a problems that are of \a kind.
QJsonArray problems(const QList<Problem> &problems, Problem::Kind kind);

} // namespace Export::Json

#endif
