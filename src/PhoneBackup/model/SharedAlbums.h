#ifndef PHONEBACKUP_MODEL_SHAREDALBUMS_H
#define PHONEBACKUP_MODEL_SHAREDALBUMS_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Data type 2: pictures and videos of shared albums; a group an album.
void readSharedAlbums(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
