#ifndef PHONEBACKUP_MEDIA_SHAREDALBUMS_H
#define PHONEBACKUP_MEDIA_SHAREDALBUMS_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 2: pictures and videos of shared albums; a group an album.
void readSharedAlbums(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
