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
    QString identifier; //!< A ringtone's own; empty when no list tells it.
    QString title; //!< A ringtone's, likewise.
    std::optional<double> seconds; //!< How long it plays, likewise.
};

//! Tells \a sink all ringtones and songs, in the order of the index.
void readSongs(Source &source, const std::function<void(const Song &)> &sink);

} // namespace PhoneBackup

#endif
