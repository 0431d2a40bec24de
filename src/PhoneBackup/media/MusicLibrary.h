#ifndef PHONEBACKUP_MEDIA_MUSICLIBRARY_H
#define PHONEBACKUP_MEDIA_MUSICLIBRARY_H

#include "PhoneBackup/media/Songs.h"

#include <QHash>

namespace PhoneBackup {

//! What the phone's media library tells of songs.
class MusicLibrary
{
public:
    //! Reads it; what is wrong with it becomes a problem of the music.
    explicit MusicLibrary(Source &source);

    //! Fills in what is known of \a song besides its file: title, artist, album and duration.
    void describe(Song &song) const;

private:
    QHash<FileIndex::Row, Song> m_songs;
};

} // namespace PhoneBackup

#endif
