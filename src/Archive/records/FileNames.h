#ifndef ARCHIVE_RECORDS_FILENAMES_H
#define ARCHIVE_RECORDS_FILENAMES_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QString>

namespace Archive {

//! What the data calls the files of a backup.
class FileNames
{
public:
    FileNames() = default;
    virtual ~FileNames();

    FileNames(const FileNames &) = delete;
    FileNames &operator=(const FileNames &) = delete;

    //! The name of the file \a row, which is in the index; empty for one that was not exported.
    virtual QString nameOf(PhoneBackup::FileIndex::Row row) const = 0;
};

} // namespace Archive

#endif
