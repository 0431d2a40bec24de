#ifndef ARCHIVE_CHATS_BUBBLE_H
#define ARCHIVE_CHATS_BUBBLE_H

#include "Archive/media/MediaHtml.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/messages/MessagePart.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace Archive {

//! One thing that a message shows. Which members are used depends on its kind.
struct BubblePart
{
    enum class Kind : quint8 {
        Text, //!< text, links.
        Media, //!< media.
        Link, //!< address, title, text: what the page says of itself, site, media: its picture.
        App, //!< title: its name, lines: what it says, address.
        Poll, //!< title: the question, lines: the options, votes: who chose each.
        Place, //!< title, text: its address, latitude, longitude.
        Card, //!< title: a name, lines: numbers.
        Note, //!< text: words of the archive's own, in brackets elsewhere.
    };

    Kind kind = Kind::Text;
    QString text;
    QList<PhoneBackup::TextSpan> links;
    Media media;
    QString address;
    QString title;
    QString site;
    QStringList lines;
    std::vector<QStringList> votes;
    std::optional<double> latitude;
    std::optional<double> longitude;
};

//! One message as a page shows it, whatever app it comes from.
struct Bubble
{
    enum class Side : quint8 { Left, Right, Middle };
    enum class Tone : quint8 { Message, TextMessage, Whatsapp };

    struct Quote
    {
        QString who;
        QString text;
        QByteArray page; //!< Page and anchor of the answered message; empty when it is not there.
    };
    struct Badge
    {
        QString emoji;
        QStringList who;
    };
    struct Version
    {
        qint64 dateMs = PhoneBackup::PhoneTime::kNoMs;
        QString text;
    };

    QByteArray anchor; //!< Letters and digits, unlike all others of the conversation.
    qint64 dateMs = PhoneBackup::PhoneTime::kNoMs;
    Side side = Side::Left;
    Tone tone = Tone::Message;
    bool isDeleted = false; //!< The phone still keeps it.
    QString sender; //!< Empty for the owner.
    QString subject;
    std::vector<BubblePart> parts;
    std::optional<Quote> quote;
    std::vector<Badge> badges;
    std::vector<Version> earlier; //!< Texts that it had before, the first one first.
    QStringList marks; //!< "Edited", "Sent with Confetti".
    QString status; //!< "Read 25 May 2024, 17:31".
    bool hasFailed = false;

    //! What lists show of it: the beginning of its text, else a word for what it is.
    QString summary() const;

    //! Whether it is one picture or film and nothing else.
    bool isBare() const;

    //! Everything of it that can be read, in one line.
    QString plainText() const;

    void addText(const QString &text, const QList<PhoneBackup::TextSpan> &links = {});
    void addNote(const QString &text); //!< Words of the archive's own.
    void addBadge(const QString &emoji, const QString &who);
};

} // namespace Archive

#endif
