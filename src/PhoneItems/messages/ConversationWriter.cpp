#include "PhoneItems/messages/ConversationWriter.h"

#include "PhoneBackup/messages/Conversation.h"
#include "PhoneBackup/messages/People.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/messages/AttachmentLabel.h"
#include "PhoneItems/messages/ConversationContent.h"
#include "PhoneItems/messages/MessageWords.h"
#include "PhoneItems/shared/QuoteWords.h"
#include "platform/Translation_p.h"

#include <QSet>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

// Nothing but a subject.
bool isBlank(const MessageChat &chat)
{
    return chat.content().isEmpty() && chat.pieces().isEmpty();
}

bool isEmpty(const MessageChat &chat)
{
    return isBlank(chat) && chat.subject().isEmpty();
}

// Adds \a word to \a text, with blanks between it and what is written before and \a after.
void addWord(QString &text, const QString &word, QChar after)
{
    if (!text.isEmpty() && !text.back().isSpace())
        text += u' ';
    text += word;
    if (!after.isNull() && !after.isSpace())
        text += u' ';
}

} // namespace

ConversationWriter::ConversationWriter(Source &source,
                                       const People &people,
                                       const Conversation &conversation,
                                       const QString &name,
                                       ConversationContent &content)
    : m_source(source)
    , m_people(people)
    , m_conversation(conversation)
    , m_name(name)
    , m_content(content)
{
}

void ConversationWriter::write()
{
    const MessageService ofAll = messageService(m_conversation.service.toUtf8());
    const MessageFilter &filter = m_source.messageFilter();
    const bool byDate = filter.since.isValid() || filter.until.isValid();
    for (const Message &message : m_content.records().messages()) {
        MessageChat &chat = m_content.add(message);
        const MessageService service =
            message.service == MessageService::Unknown ? ofAll : message.service;
        chat.normalSms =
            service != MessageService::IMessage && service != MessageService::IMessageLite;
        if (message.extras)
            writeMessage(chat);
        hideOrMarkDeleted(chat);
    }
    relate();
    for (MessageChat &chat : m_content.all())
        chat.hidden = chat.hidden || (byDate && !filter.accepts(chat.msgDate()));
    m_content.list();
    nameParticipants();
}

void ConversationWriter::writeMessage(MessageChat &chat)
{
    const MessageExtras &extras = *chat.record->extras;
    MessageChat::Extras &shown = m_content.extrasOf(chat);
    shown.subject = extras.subject;
    writeParts(chat, extras);
    if (extras.event) {
        shown.text = eventLine(chat);
        shown.isEvent = true;
    } else if (extras.balloon) {
        writeBalloon(chat, extras);
    } else if (isBlank(chat) && extras.isVoice && !extras.reaction) {
        shown.text = MessageWords::voiceMessage(extras.isExpired, extras.transcription);
    }
    if (extras.isTextLost)
        append(chat, MessageWords::unreadable(), u'\n');
    mark(chat, extras);
}

// What stands between two files is one text, whatever places of lost files are in it.
void ConversationWriter::writeParts(MessageChat &chat, const MessageExtras &extras)
{
    QString text;
    for (std::size_t i = 0; i < extras.parts.size(); ++i) {
        const MessagePart &part = extras.parts[i];
        const MessagePart *before = i > 0 ? &extras.parts[i - 1] : nullptr;
        const MessagePart *after = i + 1 < extras.parts.size() ? &extras.parts[i + 1] : nullptr;
        switch (part.kind) {
        case MessagePart::Kind::Text:
            if (before && before->kind == MessagePart::Kind::Text)
                addPart(chat, std::exchange(text, {}));
            text += part.text;
            break;
        case MessagePart::Kind::LostFile: {
            const bool isTextNext = after && !after->text.isEmpty();
            addWord(text, MessageWords::attachment(), isTextNext ? after->text.front() : QChar());
            break;
        }
        case MessagePart::Kind::File:
            addPart(chat, std::exchange(text, {}));
            addFile(chat, part, extras);
            break;
        }
    }
    addPart(chat, text);
}

void ConversationWriter::addPart(MessageChat &chat, const QString &text)
{
    if (QStringView(text).trimmed().isEmpty())
        return;
    MessageChat::Extras &shown = m_content.extrasOf(chat);
    if (isBlank(chat))
        shown.text = text;
    else
        m_content.addText(chat, text);
    shown.parts.append(text);
}

void ConversationWriter::addFile(MessageChat &chat,
                                 const MessagePart &part,
                                 const MessageExtras &extras)
{
    const MessageAttachment &file = *part.file;
    if (!file.isForPeople)
        return;
    const bool isPicture = file.kind == MessageAttachment::Kind::Picture;
    if (isPicture || file.kind == MessageAttachment::Kind::Video)
        m_content.extrasOf(chat).parts.append(isPicture ? tr("[Picture]") : tr("[Video]"));
    else // what the page does not show by itself gets a line that says what it is
        addPart(chat, attachmentLabel(file, extras.isVoice, extras.transcription));
    m_content.addFile(chat, file, m_source.files());
}

void ConversationWriter::writeBalloon(MessageChat &chat, const MessageExtras &extras)
{
    const Balloon &balloon = *extras.balloon;
    MessageChat::Extras &shown = m_content.extrasOf(chat);
    if (!balloon.poll.options.isEmpty()) {
        append(chat, MessageWords::poll(balloon.poll), u'\n');
        if (shown.pieces.isEmpty())
            shown.parts = { MessageWords::pollTitle(balloon.poll) };
        chat.hidden = extras.isPollUpdate;
    } else if (isBlank(chat)) {
        shown.text = MessageWords::balloon(balloon);
    } else if (balloon.kind == Balloon::Kind::Link && !balloon.title.isEmpty()
               && shown.text != balloon.title) {
        append(chat, MessageWords::linkTitle(balloon.title), u' ');
    }
}

QString ConversationWriter::eventLine(const MessageChat &chat) const
{
    const GroupEvent &event = *chat.record->extras->event;
    return MessageWords::event(
        event, nameOf(*chat.record), event.other ? m_people.name(*event.other) : tr("somebody"));
}

void ConversationWriter::mark(MessageChat &chat, const MessageExtras &extras)
{
    if (extras.isUnsent) {
        if (isEmpty(chat))
            m_content.extrasOf(chat).text = MessageWords::unsent();
        else if (extras.history && extras.history->isUnsent())
            append(chat, MessageWords::unsent(), u'\n');
    }
    if (extras.isEdited && !isEmpty(chat))
        append(chat, MessageWords::edited(), u' ');
    if (!extras.effect.isEmpty() && !extras.reaction && !isEmpty(chat))
        append(chat, MessageWords::effect(extras.effect), u' ');
    const bool isWaiting = chat.record->isFromMe && !chat.isSentDone();
    if (extras.isScheduled && isWaiting && !isEmpty(chat))
        append(chat, MessageWords::scheduled(), u' ');
    for (const DeletedPart &part : extras.deletedParts) {
        const QString text = part.text.isEmpty() ? MessageWords::attachment() : part.text;
        if (!chat.record->isDeleted || !chat.content().contains(text)) // it may all be gone
            append(chat, MessageWords::deleted() + u' ' + text, u'\n');
    }
}

void ConversationWriter::hideOrMarkDeleted(MessageChat &chat)
{
    // Rows without anything are the phone's own notes; it does not show them either.
    const bool isReaction = chat.record->extras && chat.record->extras->reaction;
    if (isEmpty(chat) && !isReaction) {
        chat.hidden = true;
    } else if (chat.record->isDeleted && !m_conversation.isDeleted) {
        keepForQuotes(chat);
        QString &text = m_content.extrasOf(chat).text;
        text = text.isEmpty() ? MessageWords::deleted() : MessageWords::deleted() + u' ' + text;
    }
}

// The lines of reactions, and above each answer what it answers.
void ConversationWriter::relate()
{
    // All quotes are taken before any text changes: none holds another.
    std::vector<std::pair<MessageChat *, QString>> quoted;
    for (MessageChat &chat : m_content.all()) {
        const MessageExtras *extras = chat.record->extras;
        if (!extras)
            continue;
        if (extras->reaction && !extras->reaction->holds()
            && extras->reaction->kind != Reaction::Kind::PutSticker)
            chat.hidden = true;
        if (extras->reaction)
            quoted.emplace_back(&chat, quote(extras->reaction->target, extras->reaction->part));
        else if (extras->answer)
            quoted.emplace_back(&chat, quote(extras->answer->target, extras->answer->part));
    }
    for (const auto &[chat, other] : quoted) {
        const bool isReaction = chat->record->extras->reaction != nullptr;
        QString &text = m_content.extrasOf(*chat).text;
        const QString line = isReaction ? reactionLine(*chat, other) : QuoteWords::replyTo(other);
        // Marks of a reaction stay behind it.
        text = text.isEmpty() ? line : line + (isReaction ? u' ' : u'\n') + text;
    }
}

QString ConversationWriter::reactionLine(const MessageChat &chat, const QString &quoted) const
{
    const Reaction &reaction = *chat.record->extras->reaction;
    const QString who = nameOf(*chat.record);
    if (reaction.kind != Reaction::Kind::Vote)
        return MessageWords::reaction(who, reaction, quoted);
    QStringList options;
    if (reaction.poll != Reaction::kNone) {
        const MessageChat &poll = m_content.all()[std::size_t(reaction.poll)];
        for (const qsizetype option : reaction.options)
            options.append(MessageWords::pollOption(poll.record->extras->balloon->poll, option));
    }
    return MessageWords::vote(who, options, quoted);
}

QString ConversationWriter::quote(qsizetype target, int part) const
{
    if (target == Reaction::kNone)
        return {};
    const MessageChat &chat = m_content.all()[std::size_t(target)];
    const QStringList parts = chat.extras ? chat.extras->parts : QStringList();
    if (part >= 0 && part < parts.size())
        return QuoteWords::quote(parts.at(part));
    // The only part is the whole message, without what marks it.
    if (parts.size() == 1 || (parts.size() > 1 && chat.content().isEmpty()))
        return QuoteWords::quote(parts.first());
    return QuoteWords::quote(chat.content());
}

// Others quote what was written, and not what marks it.
void ConversationWriter::keepForQuotes(MessageChat &chat)
{
    MessageChat::Extras &shown = m_content.extrasOf(chat);
    if (!shown.text.isEmpty() && shown.parts.isEmpty())
        shown.parts.append(shown.text);
}

void ConversationWriter::append(MessageChat &chat, const QString &text, QChar separator)
{
    keepForQuotes(chat);
    MessageChat::Extras &shown = m_content.extrasOf(chat);
    if (!shown.pieces.isEmpty())
        m_content.addText(chat, text);
    else
        shown.text = shown.text.isEmpty() ? text : shown.text + separator + text;
}

QString ConversationWriter::nameOf(const Message &message) const
{
    if (message.isFromMe)
        return tr("You");
    return message.sender ? m_people.name(*message.sender) : tr("Somebody");
}

// A group is everybody in it and everybody who once wrote; a person with two addresses is one.
void ConversationWriter::nameParticipants()
{
    const QStringList &addresses = m_conversation.addresses;
    if (!m_conversation.isGroup) {
        if (!addresses.isEmpty())
            m_content.setName(addresses.first(), m_name);
        return;
    }
    for (const QString &address : addresses)
        m_content.setName(address, m_people.name(address));
    QSet<const QString *> senders;
    for (const Message &message : m_content.records().messages()) {
        if (message.sender)
            senders.insert(message.sender);
    }
    for (const QString *address : std::as_const(senders))
        m_content.setName(*address, m_people.name(*address));
}

} // namespace PhoneItems
