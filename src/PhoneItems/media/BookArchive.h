#ifndef PHONEITEMS_MEDIA_BOOKARCHIVE_H
#define PHONEITEMS_MEDIA_BOOKARCHIVE_H

#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/folder/FileIndex.h"

#include <QStringList>

#include <vector>

namespace PhoneBackup {
class BackupFiles;
}

namespace PhoneItems {

/*!
    Packs \a rows, the files of a book, into the new file \a target as the reader programs expect
    it: a zip archive with "mimetype" first and stored. Names in it are paths below \a folder; what
    would lead out of the archive is left out.
    \return the places of the files that could not be read and are not in it; an error when the
    archive could not be written, or when none could be read.
*/
PhoneBackup::Result<QStringList>
writeBookArchive(PhoneBackup::BackupFiles &files,
                 const std::vector<PhoneBackup::FileIndex::Row> &rows,
                 QByteArrayView folder,
                 const QString &target);

} // namespace PhoneItems

#endif
