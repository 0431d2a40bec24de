#ifndef PHONEBACKUP_MESSAGES_MESSAGEATTACHMENT_H
#define PHONEBACKUP_MESSAGES_MESSAGEATTACHMENT_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QSize>
#include <QString>
#include <QStringList>

namespace PhoneBackup {

//! A file that was sent in a message, as the message database tells of it.
struct MessageAttachment
{
    enum class Kind : quint8 { Picture, Video, Audio, Contact, Location, Other };
    enum class State : quint8 {
        Present,
        NeverDownloaded, //!< The phone itself did not have it.
        Missing, //!< The backup lacks it.
    };
    static constexpr int kUnknownSeconds = -1;

    //! The kind of a file that has the type \a mimeType and no name.
    static Kind kindOfType(const QString &mimeType);

    qint64 row = 0;
    QString guid;
    QString path; //!< On the phone; empty when it was never downloaded.
    QString name; //!< What it was called when it was sent, else the last part of its path.
    QString mimeType; //!< In lower case; as the sender said, which may be wrong.
    QString description; //!< What a drawn emoji shows, as its maker asked for it.
    qint64 created = 0; //!< Seconds since 2001, 0 for none.
    qint64 sentBytes = 0; //!< Size as it was sent, 0 where not known; the file's own may differ.
    bool isForPeople = true; //!< false: part of a link's or an app's balloon, or hidden.
    bool isSticker = false;
    Kind kind = Kind::Other;
    FileIndex::Row file = FileIndex::kNone; //!< The file or folder; kNone when it is missing.

    // Of the parts of a message only.
    QSize pixels; //!< Of a picture or film, as the message's text tells it; else invalid.
    int seconds = kUnknownSeconds; //!< How long a recording plays.
    QStringList people; //!< Names on a contact card.
    QString address; //!< Of a place, on a map.

    //! Whether it is something that was said, and no music; \a isSpoken: its message was spoken.
    bool isRecording(bool isSpoken) const;

    bool isOfBalloon() const; //!< Of a link's preview or of an app.

    State state() const
    {
        if (file != FileIndex::kNone)
            return State::Present;
        return path.isEmpty() ? State::NeverDownloaded : State::Missing;
    }
};

} // namespace PhoneBackup

#endif
