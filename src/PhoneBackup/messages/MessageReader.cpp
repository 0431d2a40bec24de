#include "PhoneBackup/messages/MessageReader.h"

#include "PhoneBackup/messages/Balloon.h"
#include "PhoneBackup/messages/EditHistory.h"
#include "PhoneBackup/messages/Handles.h"
#include "PhoneBackup/messages/MessageBody.h"
#include "PhoneBackup/messages/MessageParts.h"
#include "PhoneBackup/messages/People.h"
#include "PhoneBackup/messages/SmsDatabase.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneItems/messages/MessageWords.h"
#include "platform/Translation_p.h"

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

bool isIMessage(QByteArrayView service)
{
    return service.compare("iMessage", Qt::CaseInsensitive) == 0
        || service.compare("iMessageLite", Qt::CaseInsensitive) == 0;
}

constexpr qint64 kScheduled = 2;

enum Column { // of the query for every message
    kText,
    kBody,
    kDate,
    kFromMe,
    kHandle,
    kService,
    kSubject,
    kGuid,
    kSentDone,
    kSummary,
    kHasDetails,
};

enum DetailColumn {
    kItemType,
    kGroupAction,
    kGroupTitle,
    kOtherHandle,
    kShareStatus,
    kAssociatedType,
    kAssociatedGuid,
    kAssociatedEmoji,
    kBundle,
    kPayload,
    kDateEdited,
    kDateRetracted,
    kOriginator,
    kOriginatorPart,
    kIsAudio,
    kEffect,
    kScheduleType,
    kExpireState,
};

// Nothing but a subject.
bool isBlank(const Message &message)
{
    return message.text.isEmpty() && message.pieces().isEmpty();
}

bool isEmpty(const Message &message)
{
    return isBlank(message) && message.subject().isEmpty();
}

} // namespace

struct MessageReader::Details
{
    qint64 itemType = 0;
    qint64 groupAction = 0;
    QString groupTitle;
    qint64 otherHandle = 0;
    qint64 shareStatus = 0;
    qint64 associatedType = 0;
    QString associatedGuid;
    QString associatedEmoji;
    QString bundle;
    QByteArray payload;
    bool edited = false;
    bool retracted = false;
    QByteArray originator;
    QString originatorPart;
    bool isAudio = false;
    QString effect;
    bool isScheduled = false;
    bool isExpired = false;

    bool isReaction() const { return MessageRelations::isReaction(associatedType); }
    bool isEvent() const { return itemType != 0; }
    bool isBalloon() const { return !bundle.isEmpty() || !payload.isEmpty(); }
};

MessageReader::MessageReader(Source &source,
                             SmsDatabase &database,
                             const Handles &handles,
                             People &people,
                             MessageAttachments &attachments)
    : m_source(source)
    , m_database(database)
    , m_handles(handles)
    , m_people(people)
    , m_attachments(attachments)
{
}

MessageReader::~MessageReader() = default;

void MessageReader::prepare()
{
    m_prepared = true;
    const QString table = u"message"_s;
    const auto column = [&](const QString &name) { return m_database.column(table, name); };
    const auto columns = [&](const QStringList &names) {
        QStringList list;
        for (const QString &name : names)
            list.append(column(name));
        return list;
    };
    // That nothing was delivered says nothing where no column tells what was sent.
    QString sentDone = column(u"error"_s) + u" IS NOT TRUE"_s;
    if (m_database.hasColumn(table, u"is_sent"_s)) {
        sentDone += u" AND (is_sent IS TRUE OR %1 IS TRUE OR %2 IS TRUE)"_s.arg(
            column(u"is_delivered"_s), column(u"date_delivered"_s));
    }
    QStringList hasDetails { u"0"_s };
    for (const QString &name : { u"item_type"_s,
                                 u"associated_message_type"_s,
                                 u"is_audio_message"_s,
                                 u"date_edited"_s,
                                 u"date_retracted"_s,
                                 u"schedule_type"_s }) {
        if (m_database.hasColumn(table, name))
            hasDetails.append(name + u" IS TRUE"_s);
    }
    for (const QString &name : { u"thread_originator_guid"_s,
                                 u"balloon_bundle_id"_s,
                                 u"payload_data"_s,
                                 u"expressive_send_style_id"_s }) {
        if (m_database.hasColumn(table, name))
            hasDetails.append(name + u" IS NOT NULL"_s);
    }
    QStringList main = columns({ u"text"_s,
                                 u"attributedBody"_s,
                                 u"date"_s,
                                 u"is_from_me"_s,
                                 u"handle_id"_s,
                                 u"service"_s,
                                 u"subject"_s,
                                 u"guid"_s });
    main.append({ sentDone, column(u"message_summary_info"_s), hasDetails.join(u" OR "_s) });
    m_rows =
        m_database.prepare(u"SELECT %1 FROM message WHERE ROWID = ?1"_s.arg(main.join(u", "_s)));
    m_details = m_database.prepare(
        u"SELECT %1 FROM message WHERE ROWID = ?1"_s.arg(columns({ u"item_type"_s,
                                                                   u"group_action_type"_s,
                                                                   u"group_title"_s,
                                                                   u"other_handle"_s,
                                                                   u"share_status"_s,
                                                                   u"associated_message_type"_s,
                                                                   u"associated_message_guid"_s,
                                                                   u"associated_message_emoji"_s,
                                                                   u"balloon_bundle_id"_s,
                                                                   u"payload_data"_s,
                                                                   u"date_edited"_s,
                                                                   u"date_retracted"_s,
                                                                   u"thread_originator_guid"_s,
                                                                   u"thread_originator_part"_s,
                                                                   u"is_audio_message"_s,
                                                                   u"expressive_send_style_id"_s,
                                                                   u"schedule_type"_s,
                                                                   u"expire_state"_s })
                                                             .join(u", "_s)));
    readDeletedParts();
}

void MessageReader::readDeletedParts()
{
    const QString table = u"recoverable_message_part"_s;
    if (!m_database.hasColumn(table, u"message_id"_s)
        || !m_database.hasColumn(table, u"part_text"_s))
        return;
    const QString what =
        u"message_id, %1, part_text"_s.arg(m_database.column(table, u"part_index"_s));
    m_database.query(what, table, [this](const Statement &row) {
        const QByteArrayView bytes = row.bytes(2);
        const QByteArrayView body = bytes.first(std::min(bytes.size(), MessageBody::kMaxTextBytes));
        const auto part = AttributedText::decode(body);
        QString text = StoredText::cleaned(
            part ? part->text : AttributedText::salvage(body).value_or(QString()));
        if (text.isEmpty() && part && !part->files.isEmpty())
            text = MessageWords::attachment();
        QStringList &texts = m_deletedParts[row.integer(0)][row.integer(1)];
        if (!text.isEmpty() && !texts.contains(text)) // each chat of the message has a row for it
            texts.append(text);
    });
}

QDateTime MessageReader::dateOf(qint64 row)
{
    if (!m_dates) {
        m_dates = m_database.prepare(u"SELECT %1 FROM message WHERE ROWID = ?1"_s.arg(
            m_database.column(u"message"_s, u"date"_s)));
    }
    Message message;
    if (m_dates) {
        m_dates->reset();
        m_dates->bind(1, row);
        if (m_dates->step() == Statement::Step::Row)
            message.dateMs = SmsDatabase::dateMs(m_dates->integer(0));
    }
    return message.msgDate();
}

bool MessageReader::isExpired(qint64 row)
{
    if (!m_prepared)
        prepare();
    if (!m_details)
        return false;
    const Details details = readDetails(row);
    return details.isAudio && details.isExpired;
}

bool MessageReader::read(const Conversation &conversation, ConversationContent &content)
{
    if (!m_prepared)
        prepare();
    if (!m_rows || !m_details)
        return false;
    m_conversation = &conversation;
    m_content = &content;
    m_relations.clear();
    m_senders.clear();
    std::size_t failed = 0;
    for (const qint64 row : conversation.messages) {
        m_rows->reset();
        m_rows->bind(1, row);
        switch (m_rows->step()) {
        case Statement::Step::Row: {
            Message &message = content.addMessage();
            message.row = row;
            readRow(message);
            break;
        }
        case Statement::Step::Done:
            break;
        case Statement::Step::Failed:
            if (failed++ == 0)
                m_database.addLoss(tr("It is damaged: %1.").arg(m_rows->error()));
            break;
        }
    }
    m_rows->reset();
    m_details->reset();
    m_relations.apply(content);
    const MessageFilter &filter = m_source.messageFilter();
    if (filter.since.isValid() || filter.until.isValid()) {
        for (Message &message : content.messages())
            message.hidden = message.hidden || !filter.accepts(message.msgDate());
    }
    content.list();
    nameParticipants();
    return failed == 0 || !content.chats().isEmpty();
}

void MessageReader::readRow(Message &message)
{
    message.fromMe = m_rows->integer(kFromMe) != 0;
    message.dateMs = SmsDatabase::dateMs(m_rows->integer(kDate));
    message.sentDone = !message.fromMe || m_rows->integer(kSentDone) != 0;
    const QByteArrayView service = m_rows->bytes(kService);
    message.normalSms =
        !(service.isEmpty() ? isIMessage(m_conversation->service.toUtf8()) : isIMessage(service));
    message.guidHash = MessageRelations::hashOf(m_rows->bytes(kGuid));
    if (!message.fromMe) {
        message.address = m_handles.address(m_rows->integer(kHandle));
        if (!message.address && !m_conversation->isGroup && !m_conversation->addresses.isEmpty())
            message.address = &m_conversation->addresses.first();
        if (m_conversation->isGroup && message.address)
            m_senders.insert(message.address);
    }
    const QString subject = StoredText::cleaned(MessageBody::textAt(m_source, *m_rows, kSubject));
    if (!subject.isEmpty())
        m_content->extrasOf(message).subject = subject;

    const Details details =
        m_rows->integer(kHasDetails) != 0 ? readDetails(message.row) : Details();
    MessageBody body;
    EditHistory history;
    if (!details.isReaction() && !details.isEvent()) {
        body = MessageBody::read(m_source, *m_rows, kBody, kText);
        const QByteArrayView summary = m_rows->bytes(kSummary);
        if (!summary.isEmpty())
            history = EditHistory::read(summary, !body.text.isEmpty());
        if (!body.text.isEmpty()) {
            history.isDamaged = false; // nothing of it is shown
        } else if (!history.lastText.isEmpty()) {
            body.text = history.lastText;
            body.isUnreadable = false;
        }
    }
    const bool isSpoken = details.isAudio || !body.transcription.isEmpty();
    MessageParts(m_source, *m_content)
        .set(message,
             body.text,
             m_attachments.of(message.row),
             { body.places, body.transcription, isSpoken, !isSpoken && !details.isBalloon() });
    setSpecialText(message, details, body.transcription);
    if (body.isUnreadable) {
        append(message, MessageWords::unreadable(), u'\n');
        MessageBody::reportUnreadable(m_source, u"attributedBody"_s);
    }
    tellLostText(message, details, history);
    mark(message, details, history);
}

MessageReader::Details MessageReader::readDetails(qint64 row)
{
    Details details;
    m_details->reset();
    m_details->bind(1, row);
    if (m_details->step() != Statement::Step::Row)
        return details;
    details.itemType = m_details->integer(kItemType);
    details.groupAction = m_details->integer(kGroupAction);
    details.groupTitle =
        StoredText::cleaned(MessageBody::textAt(m_source, *m_details, kGroupTitle));
    details.otherHandle = m_details->integer(kOtherHandle);
    details.shareStatus = m_details->integer(kShareStatus);
    details.associatedType = m_details->integer(kAssociatedType);
    details.associatedGuid = m_details->text(kAssociatedGuid);
    details.associatedEmoji =
        StoredText::cleaned(MessageBody::textAt(m_source, *m_details, kAssociatedEmoji));
    details.bundle = m_details->text(kBundle);
    details.payload = m_details->bytes(kPayload).toByteArray();
    details.edited = m_details->integer(kDateEdited) != 0;
    details.retracted = m_details->integer(kDateRetracted) != 0;
    details.originator = m_details->bytes(kOriginator).toByteArray();
    details.originatorPart = m_details->text(kOriginatorPart);
    details.isAudio = m_details->integer(kIsAudio) != 0;
    details.effect = m_details->text(kEffect);
    details.isScheduled = m_details->integer(kScheduleType) == kScheduled;
    details.isExpired = m_details->integer(kExpireState) != 0;
    return details;
}

void MessageReader::setSpecialText(Message &message,
                                   const Details &details,
                                   const QString &transcription)
{
    if (details.isReaction()) {
        addReaction(message, details);
        return;
    }
    if (details.isEvent()) {
        message.text = eventLine(message, details);
        message.sentDone = true;
        return;
    }
    if (details.isBalloon())
        showBalloon(message, details);
    else if (isBlank(message) && (details.isAudio || !transcription.isEmpty()))
        message.text =
            StoredText::cleaned(MessageWords::voiceMessage(details.isExpired, transcription));
    if (!details.originator.isEmpty())
        m_relations.addReply(message, details.originator, details.originatorPart);
}

void MessageReader::addReaction(Message &message, const Details &details)
{
    MessageRelations::Reaction reaction { &message,
                                          details.associatedType,
                                          details.associatedGuid,
                                          details.associatedEmoji,
                                          nameOf(message),
                                          message.address ? m_people.number(*message.address) : -1,
                                          {} };
    if (details.associatedType == MessageRelations::kVote)
        reaction.vote = Poll::readVote(Balloon::read(details.bundle, details.payload).address);
    m_relations.addReaction(reaction);
}

void MessageReader::showBalloon(Message &message, const Details &details)
{
    const Balloon balloon = Balloon::read(details.bundle, details.payload);
    if (!balloon.poll.options.isEmpty()) {
        append(message, MessageWords::poll(balloon.poll), u'\n');
        if (message.pieces().isEmpty())
            m_content->extrasOf(message).parts = { MessageWords::pollTitle(balloon.poll) };
        m_relations.addPoll(message, balloon.poll, details.associatedGuid);
    } else if (isBlank(message)) {
        message.text = MessageWords::balloon(balloon);
    } else if (balloon.kind == Balloon::Kind::Link && !balloon.title.isEmpty()
               && message.text != balloon.title) {
        append(message, MessageWords::linkTitle(balloon.title), u' ');
    }
}

QString MessageReader::eventLine(const Message &message, const Details &details) const
{
    MessageWords::Event event;
    event.type = details.itemType;
    event.action = details.groupAction;
    event.shareStatus = details.shareStatus;
    event.title = details.groupTitle;
    event.who = nameOf(message);
    const QString *other = m_handles.address(details.otherHandle);
    event.other = other ? m_people.name(*other) : tr("somebody");
    event.toOneself = other && other == message.address;
    return MessageWords::event(event);
}

// A message that was changed has a text: where there is none, it is lost.
void MessageReader::tellLostText(Message &message,
                                 const Details &details,
                                 const EditHistory &history)
{
    const bool isUnsent = history.unsent || details.retracted;
    const bool isChanged = history.isDamaged || history.edited || details.edited;
    const bool isLost = isBlank(message) && isChanged && !isUnsent && !details.isReaction();
    if (isLost)
        append(message, MessageWords::unreadable(), u'\n');
    if (isLost || (history.isDamaged && !history.lastText.isEmpty()))
        MessageBody::reportUnreadable(m_source, u"message_summary_info"_s);
}

void MessageReader::mark(Message &message, const Details &details, const EditHistory &history)
{
    const bool isDeleted = std::binary_search(
        m_conversation->deleted.cbegin(), m_conversation->deleted.cend(), message.row);
    const bool isReactionRow = details.isReaction();
    if (history.unsent || details.retracted) {
        if (isEmpty(message))
            message.text = MessageWords::unsent();
        else if (history.unsent)
            append(message, MessageWords::unsent(), u'\n');
    }
    const bool isEdited =
        history.edited || (details.edited && !history.unsent && !details.retracted);
    if (isEdited && !isEmpty(message))
        append(message, MessageWords::edited(), u' ');
    if (!details.effect.isEmpty() && !isReactionRow && !isEmpty(message))
        append(message, MessageWords::effect(details.effect), u' ');
    if (details.isScheduled && message.fromMe && !message.sentDone && !isEmpty(message))
        append(message, MessageWords::scheduled(), u' ');
    const auto deletedParts = m_deletedParts.constFind(message.row);
    if (deletedParts != m_deletedParts.cend()) {
        for (const QStringList &texts : *deletedParts) {
            for (const QString &text : texts) {
                if (!isDeleted || !message.text.contains(text)) // it may all be gone
                    append(message, MessageWords::deleted() + u' ' + text, u'\n');
            }
        }
    }
    // Rows without anything are the phone's own notes; it does not show them either.
    if (isEmpty(message) && !isReactionRow)
        message.hidden = true;
    else if (isDeleted && !m_conversation->isDeleted) {
        keepForQuotes(message);
        message.text = message.text.isEmpty() ? MessageWords::deleted()
                                              : MessageWords::deleted() + u' ' + message.text;
    }
}

// Others quote what was written, and not what marks it.
void MessageReader::keepForQuotes(Message &message)
{
    if (message.text.isEmpty() || (message.extras && !message.extras->parts.isEmpty()))
        return;
    m_content->extrasOf(message).parts.append(message.text);
}

void MessageReader::append(Message &message, const QString &text, QChar separator)
{
    keepForQuotes(message);
    if (!message.pieces().isEmpty())
        m_content->addText(message, text);
    else
        message.text = message.text.isEmpty() ? text : message.text + separator + text;
}

QString MessageReader::nameOf(const Message &message) const
{
    if (message.fromMe)
        return tr("You");
    return message.address ? m_people.name(*message.address) : tr("Somebody");
}

// A group is everybody in it and everybody who once wrote; a person with two addresses is one.
void MessageReader::nameParticipants()
{
    const QStringList &addresses = m_conversation->addresses;
    if (!m_conversation->isGroup) {
        if (!addresses.isEmpty())
            m_content->setName(addresses.first(), m_conversation->name);
        return;
    }
    for (const QString &address : addresses)
        m_content->setName(address, m_people.name(address));
    for (const QString *address : std::as_const(m_senders))
        m_content->setName(*address, m_people.name(*address));
}

} // namespace PhoneBackup
