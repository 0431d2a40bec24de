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

//! An object with the key "status", which every result has.
QJsonObject result(Status status);

//! The result for \a failure, with the backups to choose from if there are \a several.
QJsonObject failed(const Failure &failure, const QList<PhoneBackup::BackupInfo> &several);

QJsonObject backup(const PhoneBackup::BackupInfo &info);

//! The name, code, display name and counts of a data type.
QJsonObject type(const TypeTotals &totals);

//! The \a problems of the given \a kind.
QJsonArray problems(const QList<Problem> &problems, Problem::Kind kind);

} // namespace Export::Json

#endif
