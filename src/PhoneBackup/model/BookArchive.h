#ifndef PHONEBACKUP_MODEL_BOOKARCHIVE_H
#define PHONEBACKUP_MODEL_BOOKARCHIVE_H

#include "folder/FileIndex.h"
#include "folder/Result.h"

#include <vector>

namespace PhoneBackup {

class BackupFiles;

/*!
    Packs \a rows, the files of a book, into the new file \a target as the reader programs expect
    it: a zip archive with "mimetype" first and stored. Names in it are paths below \a folder; what
    would lead out of the archive is left out. An error when a file of the book cannot be read.
*/
Result<> writeBookArchive(BackupFiles &files,
                          const std::vector<FileIndex::Row> &rows,
                          QByteArrayView folder,
                          const QString &target);

} // namespace PhoneBackup

#endif
