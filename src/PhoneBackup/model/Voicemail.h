#ifndef PHONEBACKUP_MODEL_VOICEMAIL_H
#define PHONEBACKUP_MODEL_VOICEMAIL_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Data type 16: voicemail recordings, named after date and caller, newest first.
void readVoicemail(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
