#ifndef PHONEBACKUP_FOLDER_BACKUPFILES_H
#define PHONEBACKUP_FOLDER_BACKUPFILES_H

#include "folder/BackupFolder.h"
#include "folder/FileIndex.h"
#include "folder/FileRecord.h"
#include "folder/ManifestDb.h"
#include "folder/PrivateFolder.h"
#include "folder/Result.h"
#include "sqlite/Database.h"

#include <functional>
#include <memory>

namespace PhoneBackup {

/*!
    \brief The files of one backup: where they are, what they hold, what is recorded of them.
*/
class BackupFiles
{
public:
    using Row = FileIndex::Row;
    using KeepGoing = std::function<bool()>;

    //! Opens the folder \a path and reads its index.
    static Result<std::unique_ptr<BackupFiles>> open(const QString &path,
                                                     const KeepGoing &keepGoing);

    const BackupFolder &folder() const { return m_folder; }
    const FileIndex &index() const { return m_index; }
    PrivateFolder &privateFolder() { return m_private; }

    //! What reading the index met that did not stop it.
    const ManifestDb::Findings &findings() const { return m_findings; }

    //! Path of the content file of \a row; see BackupFolder::contentPath().
    QString contentPath(Row row) const;

    //! Bytes of the content file of \a row, 0 when it is missing.
    qint64 contentSize(Row row) const;

    //! The content of \a row, at most \a maxBytes of it; empty when it cannot be read.
    QByteArray content(Row row, qint64 maxBytes) const;

    //! What is recorded of \a row; unset when the record is damaged.
    FileRecord record(Row row);

    //! Whether the record of \a row names the extended attribute; costs less than record().
    bool hasAttribute(Row row, QByteArrayView name);

    //! "domain/path", for a person.
    QString place(Row row) const;

    //! The file at exactly this place, FileIndex::kNone when there is none.
    Row findFile(QByteArrayView domain, const QString &path) const;

    /*!
        The database at this place with its log or journal. Fault::NotFound when the index has none;
        Fault::Io when its content is missing.
    */
    Result<Database> openDatabase(QByteArrayView domain, const QString &path);

private:
    explicit BackupFiles(BackupFolder folder);
    Result<> load(const KeepGoing &keepGoing);

    BackupFolder m_folder;
    FileIndex m_index;
    PrivateFolder m_private; // before the database, which may lie in it
    std::unique_ptr<ManifestDb> m_manifest;
    ManifestDb::Findings m_findings;
};

} // namespace PhoneBackup

#endif
