#include "Archive/chats/WhatsappChats.h"

#include "Archive/media/Site.h"
#include "PhoneBackup/whatsapp/WhatsappStore.h"
#include "PhoneItems/whatsapp/WhatsappWords.h"

namespace Archive {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;
namespace Words = PhoneItems::WhatsappWords;

namespace {

using Kind = WhatsappMessage::Kind;

QString nameOf(const WhatsappPerson &person)
{
    return person.isOwner() ? u"You"_s : Words::name(person);
}

Media::Kind mediaKind(Kind kind)
{
    switch (kind) {
    case Kind::Picture:
    case Kind::Sticker:
        return Media::Kind::Picture;
    case Kind::Video:
    case Kind::Gif:
    case Kind::VideoNote:
        return Media::Kind::Film;
    case Kind::Audio:
        return Media::Kind::Sound;
    default:
        return Media::Kind::Other;
    }
}

QString kindName(Kind kind)
{
    switch (mediaKind(kind)) {
    case Media::Kind::Picture:
        return kind == Kind::Sticker ? u"Sticker"_s : u"Photo"_s;
    case Media::Kind::Film:
        return u"Video"_s;
    case Media::Kind::Sound:
        return u"Audio"_s;
    case Media::Kind::Other:
        break;
    }
    return u"Document"_s;
}

} // namespace

WhatsappChats::WhatsappChats(Site &site, ChatPages &pages, Persons &persons)
    : m_site(site)
    , m_pages(pages)
    , m_persons(persons)
{
}

void WhatsappChats::take(const ChatOf &of)
{
    m_numbers.clear();
    m_next = 0;
    ChatHead head;
    head.identity = "whatsapp/" + of.chat.store->name().toUtf8() + '/' + of.chat.jid.key().toUtf8();
    head.title = Words::title(of.chat);
    head.service = of.chat.store->isBusiness() ? u"WhatsApp Business"_s : u"WhatsApp"_s;
    head.isGroup = of.chat.kind != WhatsappChat::Kind::Person;
    head.isDeleted = of.chat.isRemoved;
    if (head.isGroup) {
        QStringList members;
        for (const WhatsappMember &member : of.members) {
            QString name = nameOf(member.person);
            if (member.hasLeft)
                name += u" (left)"_s;
            else if (member.isAdmin)
                name += u" (admin)"_s;
            members.append(name);
        }
        head.about = members.join(u", "_s);
        head.service += of.chat.kind == WhatsappChat::Kind::List ? u" list"_s : u" group"_s;
    } else {
        head.about = of.chat.partner.number;
    }
    const FileIndex::Row picture = of.chat.store->picture(of.chat.jid);
    if (picture != FileIndex::kNone) {
        m_site.thumbnails.prepare({ picture });
        head.avatar = m_site.thumbnails.of(picture).path;
    }
    const QString number = of.chat.partner.number;
    if (head.avatar.isEmpty() && !number.isEmpty())
        head.avatar = m_persons.avatar(number);
    const QString folder = m_pages.begin(head);
    if (!number.isEmpty())
        m_persons.mention(number, { u"WhatsApp"_s, folder + u"/index.html"_s });
}

void WhatsappChats::take(const WhatsappMessage &message)
{
    Bubble bubble;
    bubble.anchor = ChatPages::anchorOf(message.id, message.row);
    bubble.dateMs = message.date.isValid() ? message.date.toMSecsSinceEpoch() : PhoneTime::kNoMs;
    bubble.tone = Bubble::Tone::Whatsapp;
    bubble.side = message.isFromOwner ? Bubble::Side::Right : Bubble::Side::Left;
    if (!message.isFromOwner)
        bubble.sender = nameOf(message.sender);
    if (message.kind == Kind::Event) {
        bubble.side = Bubble::Side::Middle;
        bubble.addNote(Words::text(message));
    } else {
        addContent(bubble, message);
        addOthers(bubble, message);
    }
    if (bubble.parts.empty() && !bubble.quote && bubble.badges.empty())
        return;
    if (!message.id.isEmpty())
        m_numbers.insert(message.id, m_next);
    ++m_next;
    m_pages.add(std::move(bubble));
}

void WhatsappChats::addContent(Bubble &bubble, const WhatsappMessage &message) const
{
    const WhatsappDetails &details = message.details();
    const bool hasFile = addFile(bubble, message);
    switch (message.kind) {
    case Kind::ContactCard:
        addCards(bubble, details);
        bubble.addText(message.text);
        break;
    case Kind::Place:
        bubble.addText(message.text);
        if (details.place) {
            BubblePart &part = bubble.parts.emplace_back();
            part.kind = BubblePart::Kind::Place;
            part.title = details.place->name;
            part.text = details.place->address;
            part.latitude = details.place->latitude;
            part.longitude = details.place->longitude;
        }
        break;
    case Kind::Poll: {
        if (!details.poll) {
            bubble.addNote(Words::text(message));
            break;
        }
        BubblePart &part = bubble.parts.emplace_back();
        part.kind = BubblePart::Kind::Poll;
        part.title = details.poll->question.isEmpty() ? message.text : details.poll->question;
        part.lines = details.poll->options;
        part.votes.resize(std::size_t(part.lines.size()));
        for (const WhatsappPoll::Vote &vote : details.poll->votes) {
            for (const int option : vote.options) {
                if (option >= 0 && std::size_t(option) < part.votes.size())
                    part.votes[std::size_t(option)].append(nameOf(vote.by));
            }
        }
        break;
    }
    case Kind::Call: {
        QString text = details.call && details.call->isVideo ? u"Video call"_s : u"Voice call"_s;
        if (details.call && !details.call->isConnected)
            text += u", not answered"_s;
        else if (details.call && details.call->seconds)
            text += u", "_s + lengthText(*details.call->seconds);
        bubble.addNote(text);
        break;
    }
    case Kind::Deleted:
        bubble.addNote(u"This message was deleted"_s);
        break;
    case Kind::Document:
        if (hasFile)
            bubble.addText(message.text);
        else
            bubble.addText(Words::text(message));
        break;
    case Kind::Text:
    case Kind::Reply:
        bubble.addText(message.text);
        break;
    default: {
        const QString text = Words::text(message);
        if (!hasFile || (text != u"Sticker"_s && text != details.file.title))
            bubble.addText(text);
        else if (message.kind != Kind::Sticker)
            bubble.addText(details.file.title);
        break;
    }
    }
    for (const WhatsappLink &link : details.links) {
        if (link.title.isEmpty() && link.summary.isEmpty())
            continue;
        BubblePart &part = bubble.parts.emplace_back();
        part.kind = BubblePart::Kind::Link;
        part.address = link.address.isEmpty() ? link.matched : link.address;
        part.title = link.title;
        part.text = link.summary;
        part.media.kind = Media::Kind::Picture;
        part.media.file = link.picture;
    }
    if (!details.invitedTo.isEmpty())
        bubble.addNote(u"Invitation to “%1”"_s.arg(details.invitedTo));
}

bool WhatsappChats::addFile(Bubble &bubble, const WhatsappMessage &message) const
{
    const WhatsappFile &file = message.details().file;
    if (!isFileKind(message.kind) || file.state == WhatsappFile::State::None)
        return false;
    BubblePart &part = bubble.parts.emplace_back();
    part.kind = BubblePart::Kind::Media;
    Media &media = part.media;
    media.kind = mediaKind(message.kind);
    media.isSticker = message.kind == Kind::Sticker;
    media.file = file.file;
    media.preview = file.preview;
    media.name = file.path.section(u'/', -1);
    if (message.kind == Kind::Document && !file.title.isEmpty())
        media.name = file.title;
    if (file.isRecorded)
        media.name = u"Voice message"_s;
    else if (media.name.isEmpty())
        media.name = kindName(message.kind);
    media.bytes = file.bytes;
    media.seconds = file.seconds.value_or(-1);
    if (file.state == WhatsappFile::State::NeverDownloaded)
        media.missing = u"was never downloaded to the phone"_s;
    else if (file.state == WhatsappFile::State::Missing)
        media.missing = u"is missing from the backup"_s;
    return true;
}

void WhatsappChats::addCards(Bubble &bubble, const WhatsappDetails &details) const
{
    for (const WhatsappCard &card : details.cards) {
        BubblePart &part = bubble.parts.emplace_back();
        part.kind = BubblePart::Kind::Card;
        part.title = card.name.isEmpty() ? u"Contact"_s : card.name;
        part.lines = card.numbers;
    }
}

void WhatsappChats::addOthers(Bubble &bubble, const WhatsappMessage &message) const
{
    const WhatsappDetails &details = message.details();
    for (const WhatsappReaction &reaction : details.reactions)
        bubble.addBadge(reaction.emoji, nameOf(reaction.by));
    for (const WhatsappReactionCount &count : details.reactionCounts)
        bubble.addBadge(u"%1 %2"_s.arg(count.emoji).arg(count.count), {});
    if (!details.quote.id.isEmpty()) {
        Bubble::Quote quote;
        if (details.quote.author.who != WhatsappPerson::Who::Nobody)
            quote.who = nameOf(details.quote.author);
        quote.text = Words::quoted(details.quote);
        const auto number = m_numbers.constFind(details.quote.id);
        if (number != m_numbers.cend())
            quote.page = ChatPages::pageOf(*number, ChatPages::anchorOf(details.quote.id, 0));
        bubble.quote = quote;
    }
    if (message.isStarred)
        bubble.marks.append(u"Starred"_s);
    if (message.isForwarded || details.forwards > 0)
        bubble.marks.append(u"Forwarded"_s);
    if (message.isOnce)
        bubble.marks.append(u"View once"_s);
    if (message.isBroadcast)
        bubble.marks.append(u"Sent to a list"_s);
    if (!message.isFromOwner)
        return;
    bubble.hasFailed = message.isFailed;
    switch (message.state) {
    case WhatsappMessage::State::NotSent:
        bubble.status = u"Not sent"_s;
        break;
    case WhatsappMessage::State::Waiting:
        bubble.status = u"Not sent yet"_s;
        break;
    case WhatsappMessage::State::Delivered:
        bubble.status = u"Delivered"_s;
        break;
    case WhatsappMessage::State::Read:
        bubble.status = u"Read"_s;
        break;
    case WhatsappMessage::State::Sent:
    case WhatsappMessage::State::Unknown:
        break;
    }
    if (message.readBy > 0)
        bubble.status = u"Read by %1"_s.arg(message.readBy);
    else if (message.deliveredTo > 0)
        bubble.status = u"Delivered to %1"_s.arg(message.deliveredTo);
}

} // namespace Archive
