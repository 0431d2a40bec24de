#ifndef PHONEBACKUP_MEDIA_CAMERAROLL_H
#define PHONEBACKUP_MEDIA_CAMERAROLL_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

/*!
    Data types 0 and 1, which are read together: pictures and videos of the camera roll, originals,
    edited versions and the films of live photos, each once; a group a folder. An edited version
    stands beside its original, in whose group it is.
*/
void readCameraRoll(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
