#ifndef PHONEBACKUP_MEDIA_CAMERAROLL_H
#define PHONEBACKUP_MEDIA_CAMERAROLL_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QByteArrayView>

#include <vector>

namespace PhoneBackup {

class Source;

//! One file of the camera roll, small: a phone may have half a million. Its views lie in the index.
struct CameraFile
{
    FileIndex::Row row = FileIndex::kNone;
    QByteArrayView folder; //!< Folder of the original below "Media/", such as "DCIM/100APPLE".
    QByteArrayView stem; //!< Name of the original without its extension.
    int folderRank = 0; //!< Place of the folder among all of them.
    bool edited = false; //!< An edited version; the original may be gone.
    bool video = false;
    bool deleted = false; //!< In "recently deleted".
};

/*!
    Pictures and videos of the camera roll: originals, edited versions and the films of live photos,
    each once. They are in the order of folders and names as a person counts them; an edited version
    follows its original.
*/
std::vector<CameraFile> cameraFiles(Source &source);

} // namespace PhoneBackup

#endif
