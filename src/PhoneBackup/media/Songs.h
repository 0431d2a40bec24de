#ifndef PHONEBACKUP_MEDIA_SONGS_H
#define PHONEBACKUP_MEDIA_SONGS_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QString>

#include <functional>
#include <optional>

namespace PhoneBackup {

class Source;

//! A ringtone, or a song or other sound of the media library.
struct Song
{
    FileIndex::Row file = FileIndex::kNone;
    bool ringtone = false;
    QString identifier; //!< The same from backup to backup; empty when nothing tells it.
    QString title; //!< Likewise.
    QString artist;
    QString album;
    std::optional<double> seconds; //!< How long it plays.
};

/*!
    Tells \a sink all ringtones, with what their lists tell, and all songs, of which a MusicLibrary
    tells more; in the order of the index.
*/
void readSongs(Source &source, const std::function<void(const Song &)> &sink);

} // namespace PhoneBackup

#endif
