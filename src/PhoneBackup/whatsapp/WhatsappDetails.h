#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPDETAILS_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPDETAILS_H

#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/whatsapp/WhatsappEvent.h"

#include <QDateTime>
#include <QSize>
#include <QStringList>

#include <optional>
#include <vector>

namespace PhoneBackup {

//! The file of a message. Its row is 0 when the message has none.
struct WhatsappFile
{
    enum class State : quint8 {
        None, //!< It has none; there may be a preview of something else.
        Present,
        NeverDownloaded, //!< The phone does not have it.
        Missing, //!< The backup does not have it, though the phone did.
    };

    qint64 row = 0;
    State state = State::None;
    FileIndex::Row file = FileIndex::kNone;
    FileIndex::Row preview = FileIndex::kNone; //!< A small picture of it; of a place a map.
    QString path; //!< Below the app's folder, as it is stored.
    QString title; //!< A caption, the name of a document or place, the title of a page.
    QString mimeType;
    qint64 bytes = 0; //!< 0: not known.
    std::optional<double> seconds; //!< Of sound and film.
    QSize pixels; //!< Of pictures and film; may be invalid.
    bool isRecorded = false; //!< Sound that was recorded for the message.
};

//! What a message answers. No identifier: it answers none.
struct WhatsappQuote
{
    enum class Kind : quint8 { Unknown, Text, Picture, ContactCard, Place, Document, Audio, Video };

    QByteArray id; //!< Of the message that it answers.
    WhatsappPerson author; //!< Who wrote that one; Nobody where it is not told.
    Kind kind = Kind::Unknown; //!< What that one was when it was answered.
    QString text; //!< What it said then; empty when not known.
};

//! A reaction to a message. One that was withdrawn is none.
struct WhatsappReaction
{
    WhatsappPerson by;
    QString emoji;
    QDateTime date; //!< UTC; may be invalid.
};

//! How many readers of a channel chose an emoji.
struct WhatsappReactionCount
{
    QString emoji;
    qint64 count = 0;
};

struct WhatsappCard
{
    QString name; //!< As the message has it, else as the card does; may be empty.
    QStringList numbers;
    QString vCard;
};

struct WhatsappPlace
{
    QString name;
    QString address;
    std::optional<double> latitude; //!< Degrees; there with the longitude, or neither.
    std::optional<double> longitude;
};

//! The preview of a page that a message links to.
struct WhatsappLink
{
    QString address;
    QString matched; //!< The part of the text that it was made of.
    QString title;
    QString summary;
    FileIndex::Row picture = FileIndex::kNone;
};

struct WhatsappPoll
{
    struct Vote
    {
        WhatsappPerson by;
        std::vector<int> options; //!< Numbers from 0 in options.
    };

    QString question;
    QStringList options; //!< Some may be empty.
    std::vector<Vote> votes;
};

//! A call as its chat shows it.
struct WhatsappChatCall
{
    bool isVideo = false;
    bool isConnected = false;
    std::optional<double> seconds;
    std::vector<WhatsappPerson> people;
};

//! What few messages have.
struct WhatsappDetails
{
    WhatsappFile file;
    WhatsappQuote quote;
    std::vector<WhatsappReaction> reactions; //!< The last one of each person.
    std::vector<WhatsappReactionCount> reactionCounts;
    std::vector<WhatsappCard> cards;
    std::optional<WhatsappPlace> place;
    std::vector<WhatsappLink> links;
    std::optional<WhatsappPoll> poll;
    std::optional<WhatsappChatCall> call;
    std::optional<WhatsappEvent> event;
    QString invitedTo; //!< The name of the group of an invitation.
    std::optional<qint64> timerSeconds; //!< After which messages disappear, 0: they stay.
    qint64 forwards = 0; //!< How often it was forwarded before.
    Jid forwardedFrom;
    Jid deletedBy; //!< Who deleted it for everyone.
};

} // namespace PhoneBackup

#endif
