#ifndef PHONEBACKUP_FOLDER_BACKUPFINDER_H
#define PHONEBACKUP_FOLDER_BACKUPFINDER_H

#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/folder/BackupInfo.h"

#include <QList>

namespace PhoneBackup {

/*!
    The backups at \a path: the one that \a path itself is, or those that lie in it, newest first.
    Never empty: nothing there is an error that says what was looked for.
*/
Result<QList<BackupInfo>> findBackups(const QString &path);

//! Bytes that the backup folder \a path takes on disk. Reads every folder of it once.
qint64 backupSizeBytes(const QString &path);

} // namespace PhoneBackup

#endif
