#ifndef PHONEBACKUP_FOLDER_MANIFESTDB_H
#define PHONEBACKUP_FOLDER_MANIFESTDB_H

#include "PhoneBackup/crypto/RecordKey.h"
#include "PhoneBackup/folder/Manifest.h"
#include "PhoneBackup/sqlite/Database.h"

#include <memory>
#include <optional>

namespace PhoneBackup {

class PrivateFolder;

/*!
    \brief Manifest.db, the index of backups made since system version 10.

    The private folder must outlive this object.
*/
class ManifestDb final : public Manifest
{
public:
    //! \a keepGoing as for Database::open().
    static Result<std::unique_ptr<ManifestDb>>
    open(const DatabaseFiles &files, PrivateFolder &folder, const KeepGoing &keepGoing);

    Result<Findings> load(FileIndex &index, const std::function<bool()> &keepGoing) override;
    FileRecord record(qint64 recordKey) override;
    bool mentions(qint64 recordKey, QByteArrayView attribute) override;

    //! Makes records readable that system version 10.0 encrypted in a plain database.
    void openRecords(const Secret &password);

private:
    explicit ManifestDb(Database database);

    enum class Outcome { Complete, Broken, Stopped };
    Outcome scan(Statement &query,
                 bool descending,
                 qint64 &previous,
                 FileIndex &index,
                 const std::function<bool()> &keepGoing);
    QByteArray archive(qint64 recordKey);

    Database m_database;
    std::optional<Statement> m_recordQuery;
    std::optional<RecordKey> m_recordKey;
    Findings m_findings;
    Notice m_error;
};

} // namespace PhoneBackup

#endif
