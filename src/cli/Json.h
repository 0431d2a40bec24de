#ifndef CLI_JSON_H
#define CLI_JSON_H

#include "BackupAccess.h"
#include "Failure.h"
#include "Inventory.h"
#include "Problems.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>

//! The machine-readable results. Keys are only ever added.
namespace Cli::Json {

//! The keys that every result has: "status" and "exitCode".
QJsonObject result(ExitCode exitCode);

//! Why nothing was done, with the backups to choose from if there are several.
QJsonObject failed(const NoChoice &choice);

QJsonObject backup(const PhoneBackup::BackupInfo &info);

//! Word, code, name and counts of a data type.
QJsonObject type(const TypeTotals &totals);

//! Those of \a problems that are of \a kind.
QJsonArray problems(const QList<PhoneBackup::Problem> &problems, ProblemKind kind);

//! \a object as text that ends with a line feed.
QByteArray document(const QJsonObject &object);

} // namespace Cli::Json

#endif
