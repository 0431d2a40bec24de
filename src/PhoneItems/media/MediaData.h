#ifndef PHONEITEMS_MEDIA_MEDIADATA_H
#define PHONEITEMS_MEDIA_MEDIADATA_H

#include "PhoneItems/DataTypes.h"

// The data sets of files that the phone keeps as such.
namespace PhoneItems {

/*!
    Data types 0 and 1, which are read together: photos and videos; a group a folder. An edited
    version stands beside its original, in whose group it is.
*/
void readCameraRoll(PhoneBackup::Source &source, DataSets &sets);

//! Data type 2: pictures and videos of shared albums; a group an album.
void readSharedAlbums(PhoneBackup::Source &source, DataSets &sets);

//! Data type 3: voice memos under their titles, newest first.
void readVoiceMemos(PhoneBackup::Source &source, DataSets &sets);

//! Data type 5: ringtones under their titles, and the audio files of the media library.
void readSongs(PhoneBackup::Source &source, DataSets &sets);

//! Data type 10: documents of apps; a group an app.
void readAppDocuments(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
