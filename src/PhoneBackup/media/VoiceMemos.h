#ifndef PHONEBACKUP_MEDIA_VOICEMEMOS_H
#define PHONEBACKUP_MEDIA_VOICEMEMOS_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 3: voice memos under their titles, newest first.
void readVoiceMemos(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
