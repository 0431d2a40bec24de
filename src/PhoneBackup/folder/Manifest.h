#ifndef PHONEBACKUP_FOLDER_MANIFEST_H
#define PHONEBACKUP_FOLDER_MANIFEST_H

#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/folder/FileRecord.h"

#include <QString>

#include <functional>

namespace PhoneBackup {

/*!
    \brief The index of a backup as it is stored.

    The places of all files are read at once; what is recorded of a file only when asked for.
*/
class Manifest
{
public:
    //! What load() met that did not stop it.
    struct Findings
    {
        Notice damage; //!< A sentence for a person; empty when every row was read.
        int unnamed = 0; //!< Rows whose identifier was none; that of their path was taken.
        int unknownKind = 0; //!< Rows that are no file, folder or link.
    };

    Manifest() = default;
    virtual ~Manifest();
    Manifest(const Manifest &) = delete;
    Manifest &operator=(const Manifest &) = delete;

    //! Adds every readable row to \a index. An error when none can be read, or on \a keepGoing.
    virtual Result<Findings> load(FileIndex &index, const std::function<bool()> &keepGoing) = 0;

    //! What is recorded of the row with \a recordKey; unset when it cannot be read.
    virtual FileRecord record(qint64 recordKey) = 0;

    //! Whether that record names \a attribute; costs less than record().
    virtual bool mentions(qint64 recordKey, QByteArrayView attribute) = 0;
};

} // namespace PhoneBackup

#endif
