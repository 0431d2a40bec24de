#ifndef PHONEBACKUP_MODEL_AUDIO_H
#define PHONEBACKUP_MODEL_AUDIO_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Data type 5: ringtones under their titles, and the audio files of the media library.
void readAudio(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
