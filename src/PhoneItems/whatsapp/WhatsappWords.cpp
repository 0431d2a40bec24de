#include "PhoneItems/whatsapp/WhatsappWords.h"

#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems::WhatsappWords {

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

using Kind = WhatsappMessage::Kind;

QString oneOf(const QString &first, const QString &second, const QString &third = {})
{
    if (!first.isEmpty())
        return first;
    return second.isEmpty() ? third : second;
}

void addLine(QString &text, const QString &line)
{
    text += text.isEmpty() ? line : u'\n' + line;
}

QString documentName(const WhatsappMessage &message)
{
    const WhatsappFile &file = message.details().file;
    const QString &text = message.text;
    const QString name =
        oneOf(file.title, file.path.section(u'/', -1), text.isEmpty() ? tr("Document") : text);
    return text.isEmpty() || text == name ? name : name + u'\n' + text;
}

// The text that became a link, else the address that it leads to.
QString linkText(const WhatsappMessage &message)
{
    for (const WhatsappLink &link : message.details().links) {
        const QString text = oneOf(link.matched, link.address);
        if (!text.isEmpty())
            return text;
    }
    return message.details().file.title;
}

// The people of one or several cards with their numbers, a line each.
QString contactCards(const std::vector<WhatsappCard> &cards)
{
    QStringList lines;
    for (const WhatsappCard &card : cards) {
        QStringList parts { card.name.isEmpty() ? tr("Contact") : card.name };
        for (const QString &number : card.numbers) {
            if (!parts.contains(number))
                parts.append(number);
        }
        lines.append(parts.join(u", "_s));
    }
    return lines.join(u'\n');
}

// A place: its name, address and coordinates with a link to a map. \a comment stands above.
QString location(const WhatsappPlace &place, const QString &comment)
{
    QStringList parts;
    for (const QString &part : { place.name, place.address }) {
        if (!part.isEmpty())
            parts.append(part);
    }
    if (place.latitude && place.longitude) {
        const QString latitude = QString::number(*place.latitude, 'f', 6);
        const QString longitude = QString::number(*place.longitude, 'f', 6);
        parts.append(latitude + u',' + longitude);
        parts.append(u"https://www.openstreetmap.org/?mlat=%1&mlon=%2"_s.arg(latitude, longitude));
    }
    QString text = comment;
    if (!parts.isEmpty())
        addLine(text, parts.join(u", "_s));
    return text;
}

QString poll(const WhatsappMessage &message)
{
    const std::optional<WhatsappPoll> &poll = message.details().poll;
    QString text = oneOf(message.text, poll ? poll->question : QString(), tr("Poll"));
    for (const QString &option : poll ? poll->options : QStringList()) {
        if (!option.isEmpty())
            addLine(text, u"• "_s + option);
    }
    return text;
}

} // namespace

QString name(const WhatsappPerson &person)
{
    return oneOf(person.name, person.number, tr("Unknown"));
}

QString title(const WhatsappChat &chat)
{
    if (!chat.name.isEmpty())
        return chat.name;
    return chat.isWithPerson() ? name(chat.partner) : oneOf(chat.jid.user(), tr("Unknown"));
}

QString mediaKind(int code)
{
    switch (code) {
    case BkWhatsappType::Picture:
        return tr("Photo");
    case BkWhatsappType::Video:
        return tr("Video");
    case BkWhatsappType::Audio:
        return tr("Audio");
    default:
        return {};
    }
}

QString quoted(const WhatsappQuote &quote)
{
    if (!quote.text.isEmpty())
        return quote.text;
    switch (quote.kind) {
    case WhatsappQuote::Kind::Picture:
        return tr("Photo");
    case WhatsappQuote::Kind::ContactCard:
        return tr("Contact");
    case WhatsappQuote::Kind::Place:
        return tr("Location");
    case WhatsappQuote::Kind::Document:
        return tr("Document");
    case WhatsappQuote::Kind::Audio:
        return tr("Audio");
    case WhatsappQuote::Kind::Video:
        return tr("Video");
    case WhatsappQuote::Kind::Unknown:
    case WhatsappQuote::Kind::Text:
        break;
    }
    return {};
}

QString text(const WhatsappMessage &message)
{
    const WhatsappDetails &details = message.details();
    const QString &own = message.text;
    const QString caption = oneOf(details.file.title, own);
    const QString either = oneOf(own, details.file.title);
    switch (message.kind) {
    case Kind::Text:
    case Kind::Reply:
        return own;
    case Kind::Picture:
    case Kind::Video:
    case Kind::Gif:
        return message.isOnce ? oneOf(caption, tr("View once")) : caption;
    case Kind::Album:
        return caption;
    case Kind::Audio:
        return message.isOnce ? oneOf(caption, tr("View once")) : QString();
    case Kind::VideoNote:
        return {};
    case Kind::ContactCard:
        return oneOf(contactCards(details.cards), own, tr("Contact"));
    case Kind::Place:
        return location(details.place.value_or(WhatsappPlace()), own);
    case Kind::Link:
        return oneOf(own, linkText(message));
    case Kind::Document:
        return documentName(message);
    case Kind::Undecrypted:
        return tr("Waiting for this message");
    case Kind::Deleted:
        return tr("[Deleted message]");
    case Kind::Sticker:
        return tr("Sticker");
    case Kind::Product:
        return oneOf(either, tr("Product"));
    case Kind::Invitation:
        return oneOf(own, tr("Group invitation"));
    case Kind::Poll:
        return poll(message);
    case Kind::Call:
        return tr("Call");
    case Kind::PlannedEvent:
        return oneOf(either, tr("Event"));
    case Kind::StatusMention:
        return tr("Status mention");
    case Kind::Business:
        return oneOf(either, tr("Business message"));
    case Kind::Unsupported:
        return oneOf(either, tr("Unsupported message"));
    case Kind::Event:
        break;
    }
    return details.event ? event(*details.event) : QString();
}

QString reactionCounts(const std::vector<WhatsappReactionCount> &counts)
{
    QStringList list;
    for (const WhatsappReactionCount &one : counts)
        list.append(u"%1 %2"_s.arg(one.emoji, QString::number(one.count)));
    return tr("[Reactions: %1]").arg(list.join(u", "_s));
}

QString previewOfVideo()
{
    return tr("[Video]");
}

QString reactor(const WhatsappPerson &person, bool inGroup)
{
    if (person.isOwner())
        return tr("You");
    return inGroup ? oneOf(person.name, person.number, tr("Somebody")) : name(person);
}

} // namespace PhoneItems::WhatsappWords
