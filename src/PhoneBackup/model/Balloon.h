#ifndef PHONEBACKUP_MODEL_BALLOON_H
#define PHONEBACKUP_MODEL_BALLOON_H

#include <QByteArray>
#include <QString>

namespace PhoneBackup {

/*!
    What a link preview or the message of an app says, for a message that has no text: the link, or
    what the app calls it in brackets. \a bundleId names the app and may be empty, \a payload is the
    app's own data, which may be damaged. Never empty.
*/
QString balloonText(const QString &bundleId, const QByteArray &payload);

} // namespace PhoneBackup

#endif
