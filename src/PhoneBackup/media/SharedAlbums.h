#ifndef PHONEBACKUP_MEDIA_SHAREDALBUMS_H
#define PHONEBACKUP_MEDIA_SHAREDALBUMS_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace PhoneBackup {

class Source;

//! An album that its owner shares with others, and what of it is on the phone.
struct SharedAlbum
{
    QByteArray identifier; //!< The same from backup to backup.
    QByteArray owner; //!< Number of the owner in the service that shares it.
    QString title; //!< Empty when nothing tells it.
    std::vector<FileIndex::Row> files; //!< Pictures and videos in the order of their names.
};

//! All shared albums of which there is a file, by title; one without goes by its identifier.
std::vector<SharedAlbum> sharedAlbums(Source &source);

} // namespace PhoneBackup

#endif
