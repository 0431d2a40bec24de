#ifndef EXPORT_BACKUPS_H
#define EXPORT_BACKUPS_H

#include "Export/Failure.h"
#include "PhoneBackup/folder/BackupFinder.h"
#include "PhoneBackup/folder/BackupInfo.h"
#include "PhoneBackup/folder/Password.h"
#include "PhoneBackup/source/MessageFilter.h"
#include "PhoneItems/Backup.h"

#include <QList>
#include <QString>

#include <memory>
#include <variant>

//! From a path to an open backup.
namespace Export {

// What front ends need to know of the reader.
using PhoneBackup::BackupInfo;
using PhoneBackup::backupSizeBytes;
using PhoneBackup::KeepGoing;
using PhoneBackup::MessageFilter;
using PhoneBackup::Password;
using PhoneBackup::Secret;
using PhoneItems::Backup;

//! The backup at \a path, or those that lie in it, newest first; never none.
std::variant<QList<BackupInfo>, Failure> backupsAt(const QString &path);

//! That \a count backups lie in \a path, and one of them is to be chosen.
Failure severalBackups(const QString &path, qsizetype count);

/*!
    Opens the backup \a info for what \a messages accepts. \a keepGoing is kept, and asked while
    data sets are read, too. Failure::Cause::WrongPassword: another \a password may be tried.
*/
std::variant<std::unique_ptr<Backup>, Failure> openBackup(const BackupInfo &info,
                                                          const MessageFilter &messages,
                                                          const KeepGoing &keepGoing,
                                                          const Password &password);

//! "2023-03-01 12:00" in local time, or that there is no date.
QString dateText(const BackupInfo &info);

//! "Anna's phone (iPhone 11, version 14.3), 2023-03-01 12:00".
QString describe(const BackupInfo &info);

//! "iPhone 11, version 14.3", as far as it is known.
QString phoneText(const BackupInfo &info);

} // namespace Export

#endif
