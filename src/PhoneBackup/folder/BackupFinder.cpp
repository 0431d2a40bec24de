#include "PhoneBackup/folder/BackupFinder.h"

#include "PhoneBackup/base/FolderReader.h"
#include "PhoneBackup/folder/BackupFolder.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxFolderDepth = 64;

bool isBackup(const QString &path)
{
    const Result<IndexKind> kind = BackupFolder::kindOf(path);
    return kind && kind.value() != IndexKind::None;
}

// The folders in \a path that are backups; links to folders count, people keep backups elsewhere.
QStringList backupsIn(const QString &path)
{
    QStringList found;
    FolderReader folder(path);
    for (QByteArray name = folder.next(); !name.isEmpty(); name = folder.next()) {
        const QString child = QDir(path).filePath(QFile::decodeName(name));
        if (isBackup(child))
            found.append(child);
    }
    return found;
}

qint64 folderSize(FolderReader &folder, int depth)
{
    qint64 total = 0;
    struct stat status
    {
    };
    for (QByteArray name = folder.next(); !name.isEmpty(); name = folder.next()) {
        if (!folder.status(name, status))
            continue;
        if (S_ISREG(status.st_mode)) {
            total += status.st_size;
        } else if (S_ISDIR(status.st_mode) && depth < kMaxFolderDepth) {
            FolderReader child(folder, name);
            total += folderSize(child, depth + 1);
        }
    }
    return total;
}

} // namespace

Result<QList<BackupInfo>> findBackups(const QString &path)
{
    const Result<IndexKind> kind = BackupFolder::kindOf(path);
    if (!kind)
        return kind.error();

    QStringList folders;
    if (kind.value() != IndexKind::None) {
        folders.append(path);
    } else {
        const FolderReader readable(path);
        if (!readable.isOpen()) {
            return Error { Fault::Io,
                           path,
                           Notice("base.unreadable", { path, readable.error() }),
                           readable.errorCode() };
        }
        folders = backupsIn(path);
        // The folder above the one that the computer's software keeps its backups in.
        for (const QString &inner : { u"Backup"_s, u"MobileSync/Backup"_s })
            folders += backupsIn(QDir(path).filePath(inner));
    }

    QList<BackupInfo> backups;
    for (const QString &folder : folders) {
        const Result<BackupFolder> opened = BackupFolder::open(folder);
        if (opened)
            backups.append(opened.value().info());
        else if (folders.size() == 1)
            return opened.error();
    }
    if (backups.isEmpty()) {
        return Error { Fault::NotABackup, path, Notice("folder.noBackupAt", { path }) };
    }
    std::sort(backups.begin(), backups.end(), [](const BackupInfo &a, const BackupInfo &b) {
        if (a.date.isValid() != b.date.isValid())
            return a.date.isValid();
        return a.date != b.date ? a.date > b.date : a.path < b.path;
    });
    return backups;
}

qint64 backupSizeBytes(const QString &path)
{
    FolderReader folder(path);
    return folderSize(folder, 0);
}

} // namespace PhoneBackup
