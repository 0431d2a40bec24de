#ifndef PHONEBACKUP_MESSAGES_ATTACHMENTFILES_H
#define PHONEBACKUP_MESSAGES_ATTACHMENTFILES_H

#include "PhoneBackup/folder/FileIndex.h"

namespace PhoneBackup {

/*!
    \brief Finds the files that messages tell of by their path on the phone.

    Only entries of the index are found: a path that leads elsewhere, by ".." or from the root, is
    that of a missing file.
*/
class AttachmentFiles
{
public:
    static constexpr QByteArrayView kDomain = "MediaDomain";
    static constexpr QByteArrayView kFolder = "Library/SMS/Attachments/";

    explicit AttachmentFiles(const FileIndex &index)
        : m_index(index)
    {
    }

    //! The file or folder at \a path, FileIndex::kNone when the backup has none.
    FileIndex::Row find(const QString &path) const;

    //! The same for files alone.
    FileIndex::Row findFile(const QString &path) const;

private:
    const FileIndex &m_index;
};

} // namespace PhoneBackup

#endif
