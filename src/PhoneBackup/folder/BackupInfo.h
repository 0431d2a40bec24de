#ifndef PHONEBACKUP_FOLDER_BACKUPINFO_H
#define PHONEBACKUP_FOLDER_BACKUPINFO_H

#include <QDateTime>
#include <QString>

namespace PhoneBackup {

//! What a backup says of itself in its property lists. Any text may be empty, the date invalid.
struct BackupInfo
{
    QString path; //!< Folder that holds the manifest.
    QString displayName; //!< Name shown by the computer, else the device's, else the folder's.
    QString deviceName; //!< Name that the owner gave the phone.
    QString productName; //!< "iPhone 11", else the type "iPhone12,1".
    QString productVersion; //!< Version of the phone's system, "14.3".
    QDateTime date; //!< When the backup was made, UTC.
    bool encrypted = false;
    bool finished = true; //!< false: the last run was interrupted; files may be missing or stale.
};

} // namespace PhoneBackup

#endif
