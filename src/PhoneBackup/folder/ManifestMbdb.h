#ifndef PHONEBACKUP_FOLDER_MANIFESTMBDB_H
#define PHONEBACKUP_FOLDER_MANIFESTMBDB_H

#include "PhoneBackup/folder/Manifest.h"

#include <memory>

namespace PhoneBackup {

/*!
    \brief Manifest.mbdb, the index of backups made by system versions 4 to 9: records one after the
    other.

    Where a record cannot be one, reading goes on at the next that can.
*/
class ManifestMbdb final : public Manifest
{
public:
    static Result<std::unique_ptr<ManifestMbdb>> open(const QString &path);

    Result<Findings> load(FileIndex &index, const std::function<bool()> &keepGoing) override;
    FileRecord record(qint64 recordKey) override;
    bool mentions(qint64 recordKey, QByteArrayView attribute) override;

private:
    ManifestMbdb(const QString &path, const QByteArray &bytes);

    QString m_path;
    QByteArray m_bytes;
};

} // namespace PhoneBackup

#endif
