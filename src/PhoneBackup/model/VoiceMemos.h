#ifndef PHONEBACKUP_MODEL_VOICEMEMOS_H
#define PHONEBACKUP_MODEL_VOICEMEMOS_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Data type 3: voice memos under their titles, newest first.
void readVoiceMemos(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
