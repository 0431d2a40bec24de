#ifndef PHONEBACKUP_MEDIA_APPDOCUMENTS_H
#define PHONEBACKUP_MEDIA_APPDOCUMENTS_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

/*!
    Data type 10: what apps keep in their Documents folder, and the local files of the Files app;
    a group an app. Hidden files and caches are left out.
*/
void readAppDocuments(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
