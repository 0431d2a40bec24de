#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPMESSAGE_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPMESSAGE_H

#include "PhoneBackup/whatsapp/WhatsappDetails.h"

#include <memory>

namespace PhoneBackup {

/*!
    \brief One message of a chat.

    Texts are as they were written, but for control characters. Neither earlier texts of edited
    messages nor the times at which a message was delivered and read are known to be stored.
*/
struct WhatsappMessage
{
    enum class Kind : quint8 {
        Text,
        Link, //!< A text with the preview of a page.
        Picture,
        Video,
        Gif, //!< Stored as a film.
        VideoNote,
        Audio, //!< WhatsappFile::isRecorded: a voice message.
        Sticker,
        Document,
        ContactCard,
        Place,
        Poll,
        PlannedEvent,
        Call,
        Event, //!< What happened to the chat: WhatsappDetails::event.
        Deleted, //!< For everyone; what it said is gone.
        Undecrypted, //!< The phone waits for what it needs to read it.
        Invitation, //!< To a group.
        Product,
        Business, //!< From a template of a business.
        Reply, //!< To such a template or to an assistant.
        Album, //!< Its pictures are messages of their own.
        StatusMention,
        Unsupported, //!< storedType is newer than this reader.
    };

    //! How far a message of the owner got.
    enum class State : quint8 { Unknown, Waiting, Sent, Delivered, Read, NotSent };

    qint64 row = 0; //!< In the database of this backup.
    QByteArray id; //!< By which the network knows it: the same in every backup.
    QDateTime date; //!< UTC; may be invalid.
    QDateTime phoneDate; //!< When this phone sent or received it; may be invalid.
    qint64 storedType = 0; //!< What kind was made of.
    Kind kind = Kind::Text;
    State state = State::Unknown;
    bool isFromOwner = false;
    bool isFailed = false; //!< One of the owner's that was not sent.
    bool isStarred = false;
    bool isForwarded = false;
    bool isBroadcast = false; //!< Sent to a list, or the copy of such a message.
    bool isOnce = false; //!< To be seen or heard once.
    int deliveredTo = 0; //!< People of a group; 0 where that is not counted.
    int readBy = 0;
    int playedBy = 0;
    WhatsappPerson sender; //!< Nobody for what the app itself says.
    QString text;
    std::unique_ptr<WhatsappDetails> more; //!< Null for a mere text.

    //! What it has besides its text, all of it empty where that is nothing.
    const WhatsappDetails &details() const;

    //! The same, to be filled.
    WhatsappDetails &makeDetails();
};

//! The kind that WhatsApp's number \a storedType stands for.
WhatsappMessage::Kind whatsappKind(qint64 storedType);

//! Whether a message of this kind is about a file of its own, be it there or not.
bool isFileKind(WhatsappMessage::Kind kind);

} // namespace PhoneBackup

#endif
