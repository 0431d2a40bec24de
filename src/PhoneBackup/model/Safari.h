#ifndef PHONEBACKUP_MODEL_SAFARI_H
#define PHONEBACKUP_MODEL_SAFARI_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Data type 17: bookmarks in their folders, reading list, and history, newest first.
void readSafari(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
