#include "Archive/chats/MessageChats.h"

#include "PhoneBackup/messages/Conversation.h"
#include "PhoneBackup/messages/MessageList.h"
#include "PhoneBackup/messages/People.h"
#include "PhoneItems/messages/MessageWords.h"

#include <array>

namespace Archive {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;
namespace Words = PhoneItems::MessageWords;

namespace {

// By Reaction::Kind; those of emoji and stickers are their own.
constexpr std::array kBadges { "❤️", "👍", "👎", "😂", "‼️", "❓" };

bool isBlank(QStringView text)
{
    return text.trimmed().isEmpty();
}

// Rows without anything are the phone's own notes; it does not show them either.
bool isShown(const Message &message)
{
    if (!isBlank(message.text))
        return true;
    const MessageExtras *extras = message.extras;
    if (!extras)
        return false;
    if (extras->reaction)
        return extras->reaction->holds() || extras->reaction->kind == Reaction::Kind::PutSticker;
    const bool hasPart =
        std::any_of(extras->parts.begin(), extras->parts.end(), [](const MessagePart &part) {
            return part.kind != MessagePart::Kind::Text || !isBlank(part.text);
        });
    return hasPart || extras->event || extras->balloon || extras->isVoice || extras->isTextLost
        || extras->isUnsent || !extras->subject.isEmpty() || !extras->deletedParts.empty();
}

QByteArray anchorOf(const Message &message)
{
    return message.id.isNull() ? 'r' + QByteArray::number(message.row)
                               : 'm' + QByteArray::number(message.id.high ^ message.id.low, 16);
}

Media mediaOf(const MessageAttachment &file, const MessageExtras &extras)
{
    Media media;
    switch (file.kind) {
    case MessageAttachment::Kind::Picture:
        media.kind = Media::Kind::Picture;
        break;
    case MessageAttachment::Kind::Video:
        media.kind = Media::Kind::Film;
        break;
    case MessageAttachment::Kind::Audio:
        media.kind = Media::Kind::Sound;
        break;
    case MessageAttachment::Kind::Contact:
    case MessageAttachment::Kind::Location:
    case MessageAttachment::Kind::Other:
        break;
    }
    media.isSticker = file.isSticker;
    media.file = file.file;
    media.name = file.name;
    media.bytes = file.sentBytes;
    media.seconds = file.seconds;
    if (file.state() == MessageAttachment::State::NeverDownloaded)
        media.missing = u"was never downloaded to the phone"_s;
    else if (file.state() == MessageAttachment::State::Missing)
        media.missing = extras.isExpired ? u"has expired"_s : u"is missing from the backup"_s;
    if (file.isRecording(extras.isVoice))
        media.transcript = extras.transcription;
    return media;
}

QString serviceName(const QString &service)
{
    switch (messageService(service.toUtf8())) {
    case MessageService::IMessage:
    case MessageService::IMessageLite:
        return u"iMessage"_s;
    case MessageService::Rcs:
        return u"RCS"_s;
    case MessageService::Sms:
    case MessageService::SatelliteSms:
        return u"SMS"_s;
    case MessageService::Unknown:
    case MessageService::Other:
        break;
    }
    return service.isEmpty() ? u"Messages"_s : service;
}

// What a message says, for those that are about it.
QString summaryOf(const Message &message)
{
    if (!isBlank(message.text) || !message.extras)
        return message.text;
    const MessageExtras &extras = *message.extras;
    if (extras.balloon)
        return Words::balloon(*extras.balloon);
    for (const MessagePart &part : extras.parts) {
        if (part.kind == MessagePart::Kind::File && part.file->isForPeople)
            return part.file->name;
        if (!isBlank(part.text))
            return part.text;
    }
    return extras.subject;
}

} // namespace

MessageChats::MessageChats(ChatPages &pages, Persons &persons)
    : m_pages(pages)
    , m_persons(persons)
{
}

void MessageChats::take(const ConversationOf &of)
{
    m_people = &of.people;
    m_conversation = &of.conversation;
    m_list = nullptr;
    ChatHead head;
    head.identity = "messages/" + of.conversation.identifier.toUtf8() + '/'
        + of.conversation.addresses.join(u',').toUtf8()
        + (of.conversation.isDeleted ? "/deleted" : "");
    head.title = Words::conversation(of.conversation);
    head.about = of.conversation.addresses.join(u", "_s);
    head.service = serviceName(of.conversation.service);
    head.isGroup = of.conversation.isGroup;
    head.isDeleted = of.conversation.isDeleted;
    if (!head.isGroup && !of.conversation.addresses.isEmpty())
        head.avatar = m_persons.avatar(of.conversation.addresses.constFirst());
    const QString folder = m_pages.begin(head);
    for (const QString &address : of.conversation.addresses)
        m_persons.mention(address,
                          { head.isGroup ? head.title : u"Messages"_s, folder + u"/index.html"_s });
}

// Numbers of the messages as the pages count them.
void MessageChats::number(const MessageList &list)
{
    m_list = &list;
    m_numbers.assign(list.messages().size(), 0);
    for (const Message &message : list.messages()) {
        if (!message.extras)
            continue;
        for (const qsizetype place : message.extras->reactions)
            m_numbers[std::size_t(place)] = -1;
    }
    qint64 next = 0;
    for (std::size_t i = 0; i < m_numbers.size(); ++i) {
        const bool isOwn = m_numbers[i] == 0 && isShown(list.messages()[i]);
        m_numbers[i] = isOwn ? next++ : -1;
    }
}

QString MessageChats::nameOf(const Message &message) const
{
    if (message.isFromMe)
        return u"You"_s;
    return message.sender ? m_people->name(*message.sender) : u"Somebody"_s;
}

void MessageChats::take(const MessageOf &of)
{
    const Message &message = of.message;
    if (m_list != &of.list)
        number(of.list);
    if (!isShown(message))
        return;
    Bubble bubble;
    bubble.anchor = anchorOf(message);
    bubble.dateMs = message.dateMs;
    bubble.side = message.isFromMe ? Bubble::Side::Right : Bubble::Side::Left;
    const MessageService service = message.service == MessageService::Unknown
        ? messageService(m_conversation->service.toUtf8())
        : message.service;
    const bool isIMessage =
        service == MessageService::IMessage || service == MessageService::IMessageLite;
    bubble.tone = isIMessage ? Bubble::Tone::Message : Bubble::Tone::TextMessage;
    bubble.isDeleted = message.isDeleted;
    if (!message.isFromMe)
        bubble.sender = nameOf(message);
    const MessageExtras *extras = message.extras;
    if (extras && extras->event) {
        bubble.side = Bubble::Side::Middle;
        bubble.addNote(Words::event(*extras->event,
                                    nameOf(message),
                                    extras->event->other ? m_people->name(*extras->event->other)
                                                         : u"somebody"_s));
    } else if (extras && extras->reaction) { // to a message that is gone
        bubble.side = Bubble::Side::Middle;
        bubble.addNote(extras->reaction->kind == Reaction::Kind::Vote
                           ? Words::vote(nameOf(message), {}, {})
                           : Words::reaction(nameOf(message), *extras->reaction, {}));
    } else if (extras) {
        bubble.subject = extras->subject;
        if (extras->parts.empty())
            bubble.addText(message.text, extras->links);
        else
            addParts(bubble, *extras);
        addBalloon(bubble, of);
        if (bubble.parts.empty() && extras->isVoice)
            bubble.addNote(Words::voiceMessage(extras->isExpired, extras->transcription));
        addReactions(bubble, of);
        addHistory(bubble, *extras);
        addQuote(bubble, of);
    } else {
        bubble.addText(message.text);
    }
    addMarks(bubble, of);
    m_pages.add(std::move(bubble));
}

void MessageChats::addParts(Bubble &bubble, const MessageExtras &extras) const
{
    for (const MessagePart &part : extras.parts) {
        switch (part.kind) {
        case MessagePart::Kind::Text:
            bubble.addText(part.text, part.links);
            break;
        case MessagePart::Kind::LostFile:
            bubble.addNote(Words::attachment());
            break;
        case MessagePart::Kind::File: {
            const MessageAttachment &file = *part.file;
            if (!file.isForPeople)
                break;
            BubblePart &shown = bubble.parts.emplace_back();
            shown.kind = BubblePart::Kind::Media;
            shown.media = mediaOf(file, extras);
            if (!file.people.isEmpty() || !file.address.isEmpty()) {
                BubblePart &more = bubble.parts.emplace_back();
                more.kind =
                    file.people.isEmpty() ? BubblePart::Kind::Place : BubblePart::Kind::Card;
                more.title = file.people.join(u", "_s);
                more.address = file.address;
            }
            break;
        }
        }
    }
}

void MessageChats::addBalloon(Bubble &bubble, const MessageOf &of) const
{
    const Balloon *balloon = of.message.extras->balloon.get();
    if (!balloon)
        return;
    if (balloon->kind == Balloon::Kind::Link && balloon->address.isEmpty()
        && balloon->title.isEmpty() && !bubble.parts.empty())
        return;
    BubblePart part;
    part.address = balloon->address;
    if (!balloon->poll.options.isEmpty()) {
        part.kind = BubblePart::Kind::Poll;
        part.title = balloon->poll.title;
        for (const Poll::Option &option : balloon->poll.options)
            part.lines.append(option.text);
        part.votes.resize(std::size_t(part.lines.size()));
        for (const qsizetype place : of.message.extras->reactions) {
            const Message &vote = of.list.messages()[std::size_t(place)];
            const Reaction &reaction = *vote.extras->reaction;
            if (reaction.kind != Reaction::Kind::Vote || !reaction.holds())
                continue;
            for (const qsizetype option : reaction.options) {
                if (std::size_t(option) < part.votes.size())
                    part.votes[std::size_t(option)].append(nameOf(vote));
            }
        }
    } else if (balloon->kind == Balloon::Kind::Link) {
        part.kind = BubblePart::Kind::Link;
        part.title = balloon->title;
        part.text = balloon->place.isEmpty() ? balloon->summary : balloon->place;
        part.site = balloon->site;
        part.media.kind = Media::Kind::Picture;
        part.media.file = balloon->pictureFile;
    } else {
        part.kind = BubblePart::Kind::App;
        part.title = Words::balloon(*balloon);
        part.lines = balloon->captions;
    }
    bubble.parts.push_back(std::move(part));
}

void MessageChats::addReactions(Bubble &bubble, const MessageOf &of) const
{
    for (const qsizetype place : of.message.extras->reactions) {
        const Message &row = of.list.messages()[std::size_t(place)];
        const Reaction &reaction = *row.extras->reaction;
        const bool isSticker = reaction.kind == Reaction::Kind::PutSticker;
        if (reaction.kind == Reaction::Kind::Vote || (!reaction.holds() && !isSticker))
            continue;
        QString emoji = reaction.emoji;
        if (std::size_t(reaction.kind) < kBadges.size())
            emoji = QString::fromUtf8(kBadges[std::size_t(reaction.kind)]);
        bubble.addBadge(emoji.isEmpty() ? u"🏷️"_s : emoji, nameOf(row));
    }
}

void MessageChats::addHistory(Bubble &bubble, const MessageExtras &extras) const
{
    if (extras.history) {
        for (const EditHistory::Part &part : extras.history->parts) {
            for (std::size_t i = 0; i + 1 < part.versions.size(); ++i)
                bubble.earlier.push_back({ part.versions[i].dateMs, part.versions[i].text });
        }
        for (const EditHistory::Translation &translation : extras.history->translations) {
            BubblePart &part = bubble.parts.emplace_back();
            part.kind = BubblePart::Kind::Card;
            part.title = u"Translation"_s;
            part.lines = QStringList { translation.text };
        }
        if (extras.history->isUnsent() && !bubble.parts.empty())
            bubble.marks.append(u"A part was unsent"_s);
    }
    if (extras.isUnsent && bubble.parts.empty())
        bubble.addNote(u"This message was unsent"_s);
    if (extras.isTextLost)
        bubble.addNote(u"This message could not be read"_s);
    for (const DeletedPart &part : extras.deletedParts)
        bubble.addNote(u"Deleted: "_s + (part.text.isEmpty() ? u"attachment"_s : part.text));
}

void MessageChats::addQuote(Bubble &bubble, const MessageOf &of) const
{
    const Answer *answer = of.message.extras->answer.get();
    if (!answer)
        return;
    Bubble::Quote quote;
    if (answer->target != Reaction::kNone) {
        const Message &target = of.list.messages()[std::size_t(answer->target)];
        quote.who = nameOf(target);
        quote.text = summaryOf(target);
        const qint64 number = m_numbers[std::size_t(answer->target)];
        if (number >= 0)
            quote.page = ChatPages::pageOf(number, anchorOf(target));
    }
    bubble.quote = quote;
}

void MessageChats::addMarks(Bubble &bubble, const MessageOf &of) const
{
    const Message &message = of.message;
    const MessageExtras *extras = message.extras;
    if (message.isDeleted)
        bubble.marks.append(u"Deleted"_s);
    if (extras) {
        if (extras->isEdited && bubble.earlier.empty())
            bubble.marks.append(u"Edited"_s);
        if (!extras->effect.isEmpty() && !extras->reaction) {
            const QString effect = Words::effect(extras->effect);
            bubble.marks.append(effect.sliced(1, effect.size() - 2)); // without its brackets
        }
        if (extras->isScheduled && message.delivery == Delivery::Waiting)
            bubble.marks.append(u"Scheduled"_s);
    }
    if (!message.isFromMe || bubble.side == Bubble::Side::Middle)
        return;
    bubble.hasFailed = message.delivery == Delivery::Failed;
    if (bubble.hasFailed)
        bubble.status = u"Not delivered"_s;
    else if (message.readMs != PhoneTime::kNoMs)
        bubble.status = m_pages.timeText(u"Read"_s, message.readMs, message.dateMs);
    else if (message.deliveredMs != PhoneTime::kNoMs)
        bubble.status = u"Delivered"_s;
    else if (message.delivery == Delivery::Waiting)
        bubble.status = u"Not sent yet"_s;
}

} // namespace Archive
