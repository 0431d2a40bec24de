#ifndef PHONEBACKUP_MEDIA_TRANSCRIPT_H
#define PHONEBACKUP_MEDIA_TRANSCRIPT_H

#include <QByteArrayView>
#include <QString>

namespace PhoneBackup {

/*!
    What the phone (iOS 18 or later) wrote down of what is said in a recording, whose box "moov" is
    \a movie; empty when it did not.
*/
QString recordingTranscript(QByteArrayView movie);

} // namespace PhoneBackup

#endif
