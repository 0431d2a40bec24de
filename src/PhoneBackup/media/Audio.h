#ifndef PHONEBACKUP_MEDIA_AUDIO_H
#define PHONEBACKUP_MEDIA_AUDIO_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 5: ringtones under their titles, and the audio files of the media library.
void readAudio(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
