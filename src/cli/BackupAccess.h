#ifndef CLI_BACKUPACCESS_H
#define CLI_BACKUPACCESS_H

#include "Failure.h"
#include "PhoneBackup/folder/BackupInfo.h"
#include "PhoneItems/Backup.h"

#include <QList>
#include <QString>

#include <memory>
#include <variant>

//! From the BACKUP of the command line to an open backup.
namespace Cli {

struct Options;

//! No backup was chosen; several says among which ones the user has to.
struct NoChoice
{
    Failure failure;
    QList<PhoneBackup::BackupInfo> several;
    QStringList table; //!< The same for a person.
};

//! The backup at \a path, or the only one in it.
std::variant<PhoneBackup::BackupInfo, NoChoice> chooseBackup(Console &console, const QString &path);

/*!
    Opens the backup \a info as \a options want it, and says which one it is. For an encrypted one
    the password is fetched, and asked for up to three times.
*/
std::variant<std::unique_ptr<PhoneItems::Backup>, Failure>
openBackup(Console &console, const PhoneBackup::BackupInfo &info, const Options &options);

//! "Anna's phone (iPhone 11, version 14.3), 2023-03-01 12:00".
QString describe(const PhoneBackup::BackupInfo &info);

} // namespace Cli

#endif
