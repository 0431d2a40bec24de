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

//! Finding and opening backups.
namespace Export {

// What front ends need from the reader.
using PhoneBackup::BackupInfo;
using PhoneBackup::backupSizeBytes;
using PhoneBackup::KeepGoing;
using PhoneBackup::MessageFilter;
using PhoneBackup::Secret;
using PhoneItems::Backup;

class Observer;

//! Why no backup could be used.
struct Refusal
{
    Failure failure;
    QList<BackupInfo> several; //!< The backups to choose from, newest first; usually none.
};

//! The backup at \a path, or the only one in that folder.
std::variant<BackupInfo, Refusal> chooseBackup(const QString &path);

/*!
    Opens the backup \a info, limited to the messages that \a messages accepts. If it is encrypted,
    \a observer is asked for the password until it is right or there is none. \a keepGoing is kept
    and also called while data sets are read.
*/
std::variant<std::unique_ptr<Backup>, Failure> openBackup(const BackupInfo &info,
                                                          const MessageFilter &messages,
                                                          Observer &observer,
                                                          const KeepGoing &keepGoing);

//! The failure if no password was provided for the encrypted backup \a info.
Failure noPassword(const BackupInfo &info);

//! "2023-03-01 12:00" in local time, or "no date".
QString dateText(const BackupInfo &info);

//! "Anna's phone (iPhone 11, version 14.3), 2023-03-01 12:00".
QString describe(const BackupInfo &info);

//! "iPhone 11, version 14.3", as far as known.
QString phoneText(const BackupInfo &info);

} // namespace Export

#endif
