#ifndef PHONEBACKUP_FOLDER_BACKUPFOLDER_H
#define PHONEBACKUP_FOLDER_BACKUPFOLDER_H

#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/folder/BackupInfo.h"
#include "PhoneBackup/folder/FileIndex.h"

#include <QStringList>

#include <memory>

namespace PhoneBackup {

//! What tells a folder's kind of backup: the index that lies in it.
enum class IndexKind {
    None, //!< No backup.
    Database, //!< Manifest.db.
    Records, //!< Manifest.mbdb only.
    TooOld, //!< Manifest.mbdx or .mddata files: before either.
    Missing, //!< The property lists of a backup without an index.
};

/*!
    \brief A backup folder: its property lists, and where its content files lie.
*/
class BackupFolder
{
public:
    //! Something of the property lists that could not be read, and what follows from it.
    struct Remark
    {
        QString source;
        Notice what;
    };

    //! Looks for an index in \a path; an error when the folder cannot be looked into.
    static Result<IndexKind> kindOf(const QString &path);

    //! Opens a folder of any kind but None.
    static Result<BackupFolder> open(const QString &path);

    ~BackupFolder();
    BackupFolder(BackupFolder &&other) noexcept;
    BackupFolder &operator=(BackupFolder &&other) noexcept;

    const QString &path() const { return m_info.path; }
    IndexKind kind() const { return m_kind; }
    const BackupInfo &info() const { return m_info; }
    const QList<Remark> &remarks() const { return m_remarks; }
    void addRemark(const Remark &remark) { m_remarks.append(remark); }

    //! The keys of an encrypted backup and that of its index, as Manifest.plist stores them.
    const QByteArray &keybag() const { return m_keybag; }
    const QByteArray &indexKey() const { return m_indexKey; }

    //! Whether Manifest.plist could be read, and so whether info().encrypted can be relied on.
    bool isManifestReadable() const { return m_manifestReadable; }

    /*!
        Path of the content file \a id: in the folder of its first two digits, else in the backup
        folder itself, else where it should be. Empty when a symbolic link stands in its place, or
        in that of its folder: what a link leads to is no part of the backup.
    */
    QString contentPath(const FileIndex::Id &id) const;

    //! Whether the file \a name of the backup folder itself is a symbolic link, and what to say
    //! then.
    bool isLink(const QString &name) const;
    static Notice linkText(const QString &name);

    //! Bytes of the content file \a id, -1 when there is no such regular file.
    qint64 contentSize(const FileIndex::Id &id) const;

private:
    struct Handle;

    explicit BackupFolder(const QString &path);
    void readPropertyLists();
    bool isEncrypted(const QVariant &flag);

    BackupInfo m_info;
    IndexKind m_kind = IndexKind::None;
    QList<Remark> m_remarks;
    bool m_manifestReadable = false;
    QByteArray m_keybag;
    QByteArray m_indexKey;
    std::unique_ptr<Handle> m_handle;
};

} // namespace PhoneBackup

#endif
