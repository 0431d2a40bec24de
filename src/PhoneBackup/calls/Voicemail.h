#ifndef PHONEBACKUP_CALLS_VOICEMAIL_H
#define PHONEBACKUP_CALLS_VOICEMAIL_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 16: voicemail recordings, named after date and caller, newest first.
void readVoicemail(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
