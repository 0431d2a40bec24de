#ifndef PHONEBACKUP_MESSAGES_BALLOON_H
#define PHONEBACKUP_MESSAGES_BALLOON_H

#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/messages/Poll.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace PhoneBackup {

/*!
    \brief What a link preview, or the message of an app, holds.

    Made of what the app stored, which may be damaged: everything but the kind may be empty.
*/
struct Balloon
{
    enum class Kind { Link, App, Payment, Poll, Handwriting, DigitalTouch };

    static constexpr int kNoPicture = -1;

    Kind kind = Kind::App;
    QString address; //!< Of a link, and that which an app opens.
    QString title; //!< Of the page that a link leads to, in one line.
    QString summary; //!< What the page says of itself.
    QString site; //!< The name of the page's site.
    QString place; //!< Name and address of the place that a link to a map shows, a line each.
    int picture =
        kNoPicture; //!< Which of the message's files that are not for people is its picture.
    FileIndex::Row pictureFile = FileIndex::kNone; //!< That file.
    QString bundleId; //!< What the phone calls the app.
    QString app; //!< The app's name.
    QStringList captions; //!< What the app says, each in one line.
    PhoneBackup::Poll poll;

    //! \a bundleId names the app and may be empty, \a payload is the app's own data.
    static Balloon read(const QString &bundleId, const QByteArray &payload);
};

} // namespace PhoneBackup

#endif
