#ifndef PHONEBACKUP_SOURCE_AUDIODURATION_H
#define PHONEBACKUP_SOURCE_AUDIODURATION_H

#include <QByteArrayView>

namespace PhoneBackup {

/*!
    Seconds that the recording \a file plays (CAF, AMR, M4A and other files of boxes), rounded; -1
    when it does not tell. Hostile bytes are never read beyond their end.
*/
int audioDurationSeconds(QByteArrayView file);

} // namespace PhoneBackup

#endif
