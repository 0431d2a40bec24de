#ifndef PHONEITEMS_SAFARI_SAFARI_H
#define PHONEITEMS_SAFARI_SAFARI_H

#include "PhoneItems/DataTypes.h"

namespace PhoneItems {

//! Data type 17: bookmarks in their folders, reading list, and history, newest first.
void readSafari(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
