#ifndef PHONEBACKUP_FOLDER_MANIFESTDB_H
#define PHONEBACKUP_FOLDER_MANIFESTDB_H

#include "folder/FileIndex.h"
#include "folder/Result.h"
#include "sqlite/Database.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace PhoneBackup {

struct FileRecord;
class PrivateFolder;

/*!
    \brief Manifest.db, the index of backups made since system version 10.

    The places of all files are read at once; what is recorded of a file only when asked for. The
    private folder must outlive this object.
*/
class ManifestDb
{
public:
    //! What load() met that did not stop it.
    struct Findings
    {
        QString damage; //!< For a person; empty when every row was read.
        int unnamed = 0; //!< Rows whose identifier was none; that of their path was taken.
        int unknownKind = 0; //!< Rows that are no file, folder or link.
    };

    static Result<ManifestDb> open(const DatabaseFiles &files, PrivateFolder &folder);

    //! Adds every readable row to \a index. An error when none can be read, or on \a keepGoing.
    Result<Findings> load(FileIndex &index, const std::function<bool()> &keepGoing);

    //! The stored record of the row with \a recordKey, empty when it cannot be read.
    QByteArray record(qint64 recordKey);

private:
    explicit ManifestDb(Database database);

    enum class Outcome { Complete, Broken, Stopped };
    Outcome scan(Statement &query,
                 bool descending,
                 qint64 &previous,
                 FileIndex &index,
                 const std::function<bool()> &keepGoing);

    Database m_database;
    std::optional<Statement> m_recordQuery;
    Findings m_findings;
    QString m_error;
};

} // namespace PhoneBackup

#endif
