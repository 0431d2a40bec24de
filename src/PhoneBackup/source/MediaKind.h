#ifndef PHONEBACKUP_SOURCE_MEDIAKIND_H
#define PHONEBACKUP_SOURCE_MEDIAKIND_H

#include <QByteArrayView>

namespace PhoneBackup {

/*!
    What kind of content a file's extension promises: the only list of extensions in the reader.
   What a file is by its bytes, PictureFormat tells.
*/
enum class MediaKind {
    Unknown,
    Picture,
    Video,
    Audio,
    Book,
    Auxiliary, //!< Belongs to another file and is of no use to a person.
};

//! By the extension of \a path, in any case.
MediaKind mediaKind(QByteArrayView path);

} // namespace PhoneBackup

#endif
