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
using PhoneBackup::Secret;
using PhoneItems::Backup;

class Observer;

//! Why there is nothing to work on.
struct Refusal
{
    Failure failure;
    QList<BackupInfo> several; //!< Of which one is to be chosen, newest first; mostly none.
};

//! The backup at \a path, or the only one that lies in it.
std::variant<BackupInfo, Refusal> chooseBackup(const QString &path);

/*!
    Opens the backup \a info for what \a messages accepts. The password of an encrypted one comes
    from \a observer, which is asked until it is right or there is none. \a keepGoing is kept, and
    asked while data sets are read, too.
*/
std::variant<std::unique_ptr<Backup>, Failure> openBackup(const BackupInfo &info,
                                                          const MessageFilter &messages,
                                                          Observer &observer,
                                                          const KeepGoing &keepGoing);

//! The failure when nobody gave the password of the encrypted backup \a info.
Failure noPassword(const BackupInfo &info);

//! "2023-03-01 12:00" in local time, or that there is no date.
QString dateText(const BackupInfo &info);

//! "Anna's phone (iPhone 11, version 14.3), 2023-03-01 12:00".
QString describe(const BackupInfo &info);

//! "iPhone 11, version 14.3", as far as it is known.
QString phoneText(const BackupInfo &info);

} // namespace Export

#endif
