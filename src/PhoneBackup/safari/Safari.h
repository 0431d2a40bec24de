#ifndef PHONEBACKUP_SAFARI_SAFARI_H
#define PHONEBACKUP_SAFARI_SAFARI_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 17: bookmarks in their folders, reading list, and history, newest first.
void readSafari(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
