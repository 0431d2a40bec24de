#include "PhoneBackup/messages/MessageReader.h"

#include "PhoneBackup/messages/Handles.h"
#include "PhoneBackup/messages/MessageAttachments.h"
#include "PhoneBackup/messages/MessageBody.h"
#include "PhoneBackup/messages/MessageList.h"
#include "PhoneBackup/messages/MessageParts.h"
#include "PhoneBackup/messages/People.h"
#include "PhoneBackup/messages/SmsDatabase.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/Table.h"

#include <algorithm>
#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kScheduled = 2; // of message.schedule_type

enum Column { // of the query for every message
    kText,
    kBody,
    kDate,
    kFromMe,
    kHandle,
    kService,
    kSubject,
    kGuid,
    kDelivered,
    kRead,
    kDelivery,
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
    kDatePlayed,
};

bool isShown(const MessagePart &part)
{
    switch (part.kind) {
    case MessagePart::Kind::Text:
        return !QStringView(part.text).trimmed().isEmpty();
    case MessagePart::Kind::File:
        return part.file->isForPeople;
    case MessagePart::Kind::LostFile:
        break;
    }
    return true;
}

// Nothing written and no file.
bool isBlank(const Message &message)
{
    return message.text.isEmpty()
        && (!message.extras
            || std::none_of(
                message.extras->parts.cbegin(), message.extras->parts.cend(), &isShown));
}

} // namespace

struct MessageReader::Details
{
    qint64 itemType = 0;
    qint64 groupAction = 0;
    QString groupTitle;
    qint64 otherHandle = 0;
    qint64 shareStatus = 0;
    std::optional<Reaction> reaction;
    QString associatedGuid;
    QString associatedEmoji;
    QString bundle;
    QByteArray payload;
    qint64 edited = 0;
    qint64 retracted = 0;
    QString originator;
    QString originatorPart;
    bool isAudio = false;
    QString effect;
    bool isScheduled = false;
    bool isExpired = false;
    qint64 played = 0;

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
    QString isSent = u"TRUE"_s;
    if (m_database.hasColumn(table, u"is_sent"_s)) {
        isSent = u"is_sent IS TRUE OR %1 IS TRUE OR %2 IS TRUE"_s.arg(column(u"is_delivered"_s),
                                                                      column(u"date_delivered"_s));
    }
    const QString delivery = u"CASE WHEN %1 IS TRUE THEN %2 WHEN %3 THEN %4 ELSE %5 END"_s.arg(
        column(u"error"_s),
        QString::number(int(Delivery::Failed)),
        isSent,
        QString::number(int(Delivery::Sent)),
        QString::number(int(Delivery::Waiting)));
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
                                 u"guid"_s,
                                 u"date_delivered"_s,
                                 u"date_read"_s });
    main.append({ delivery, column(u"message_summary_info"_s), hasDetails.join(u" OR "_s) });
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
                                                                   u"expire_state"_s,
                                                                   u"date_played"_s })
                                                             .join(u", "_s)));
    readDeletedParts();
}

// Each chat of a message has a row for a part of it.
void MessageReader::readDeletedParts()
{
    Table table(m_database, u"recoverable_message_part"_s);
    if (!table.hasColumn(u"message_id"_s))
        return;
    const Table::Column ofMessage = table.column(u"message_id"_s);
    const Table::Column number = table.column(u"part_index"_s);
    const Table::Column text = table.column(u"part_text"_s);
    const Table::Column date = table.column(u"delete_date"_s);
    table.forEach([&](const Table::Row &row) {
        const QByteArrayView bytes = row.bytes(text);
        const QByteArrayView body = bytes.first(std::min(bytes.size(), MessageBody::kMaxTextBytes));
        const auto part = AttributedText::decode(body);
        DeletedPart deleted { row.integer(number),
                              StoredText::cleaned(
                                  part ? part->text
                                       : AttributedText::salvage(body).value_or(QString())),
                              SmsDatabase::dateMs(row.integer(date)) };
        std::vector<DeletedPart> &parts = m_deletedParts[row.integer(ofMessage)];
        const auto isSame = [&](const DeletedPart &other) {
            return other.number == deleted.number && other.text == deleted.text;
        };
        const bool hasFile = part && !part->files.isEmpty();
        if ((!deleted.text.isEmpty() || hasFile)
            && std::none_of(parts.cbegin(), parts.cend(), isSame))
            parts.push_back(std::move(deleted));
    });
    for (std::vector<DeletedPart> &parts : m_deletedParts) {
        std::stable_sort(parts.begin(), parts.end(), [](const auto &a, const auto &b) {
            return a.number < b.number;
        });
    }
}

QDateTime MessageReader::dateOf(qint64 row)
{
    if (!m_dates) {
        m_dates = m_database.prepare(u"SELECT %1 FROM message WHERE ROWID = ?1"_s.arg(
            m_database.column(u"message"_s, u"date"_s)));
    }
    if (!m_dates)
        return {};
    m_dates->reset();
    m_dates->bind(1, row);
    return m_dates->step() == Statement::Step::Row
        ? PhoneTime::ofMs(SmsDatabase::dateMs(m_dates->integer(0)))
        : QDateTime();
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

bool MessageReader::read(const Conversation &conversation, MessageList &list)
{
    if (!m_prepared)
        prepare();
    if (!m_rows || !m_details)
        return false;
    m_conversation = &conversation;
    m_list = &list;
    bool isWhole = true;
    for (const qint64 row : conversation.messages) {
        m_rows->reset();
        m_rows->bind(1, row);
        switch (m_rows->step()) {
        case Statement::Step::Row: {
            Message &message = list.add();
            message.row = row;
            readRow(message);
            break;
        }
        case Statement::Step::Done:
            break;
        case Statement::Step::Failed:
            if (std::exchange(isWhole, false))
                m_database.addFailure(*m_rows);
            break;
        }
    }
    m_rows->reset();
    m_details->reset();
    list.complete();
    return isWhole;
}

MessageExtras &MessageReader::extrasOf(Message &message)
{
    return m_list->extrasOf(message);
}

void MessageReader::readRow(Message &message)
{
    message.isFromMe = m_rows->integer(kFromMe) != 0;
    message.dateMs = SmsDatabase::dateMs(m_rows->integer(kDate));
    message.deliveredMs = SmsDatabase::dateMs(m_rows->integer(kDelivered));
    message.readMs = SmsDatabase::dateMs(m_rows->integer(kRead));
    if (message.isFromMe)
        message.delivery = Delivery(m_rows->integer(kDelivery));
    const QByteArrayView service = m_rows->bytes(kService);
    message.service = messageService(service);
    if (message.service == MessageService::Other)
        extrasOf(message).serviceName = QString::fromUtf8(service);
    const QByteArrayView guid = m_rows->bytes(kGuid);
    bool isUuid = false;
    message.id = MessageId::of(guid, &isUuid);
    if (!isUuid)
        extrasOf(message).guid = QString::fromUtf8(guid);
    if (!message.isFromMe) {
        message.sender = m_handles.address(m_rows->integer(kHandle));
        if (!message.sender && !m_conversation->isGroup && !m_conversation->addresses.isEmpty())
            message.sender = &m_conversation->addresses.first();
    }
    if (const Conversation::Deleted *deleted = m_conversation->deletion(message.row)) {
        message.isDeleted = true;
        if (deleted->dateMs != PhoneTime::kNoMs)
            extrasOf(message).deletedMs = deleted->dateMs;
    }
    const QString subject = StoredText::cleaned(MessageBody::textAt(m_source, *m_rows, kSubject));
    if (!subject.isEmpty())
        extrasOf(message).subject = subject;
    Details details = m_rows->integer(kHasDetails) != 0 ? readDetails(message.row) : Details();
    readTexts(message, details);
    const auto deletedParts = m_deletedParts.constFind(message.row);
    if (deletedParts != m_deletedParts.cend())
        extrasOf(message).deletedParts = *deletedParts;
}

void MessageReader::readTexts(Message &message, Details &details)
{
    MessageBody body;
    EditHistory history;
    if (!details.reaction && !details.isEvent()) {
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
    const bool isVoice = details.isAudio || !body.transcription.isEmpty();
    MessageParts(m_attachments, *m_list)
        .set(message,
             body,
             m_attachments.of(message.row),
             { isVoice, !isVoice && !details.isBalloon() });
    if (isVoice) {
        MessageExtras &extras = extrasOf(message);
        extras.isVoice = true;
        extras.isExpired = details.isExpired;
        extras.playedMs = SmsDatabase::dateMs(details.played);
        extras.transcription = StoredText::cleaned(body.transcription);
    }
    if (body.isUnreadable) {
        extrasOf(message).isTextLost = true;
        MessageBody::reportUnreadable(m_source, u"attributedBody"_s);
    }
    keepDetails(message, details);
    keepChanges(message, details, history);
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
    details.associatedGuid = m_details->text(kAssociatedGuid);
    details.reaction = Reaction::read(m_details->integer(kAssociatedType), details.associatedGuid);
    details.associatedEmoji =
        StoredText::cleaned(MessageBody::textAt(m_source, *m_details, kAssociatedEmoji));
    details.bundle = m_details->text(kBundle);
    details.payload = m_details->bytes(kPayload).toByteArray();
    details.edited = m_details->integer(kDateEdited);
    details.retracted = m_details->integer(kDateRetracted);
    details.originator = m_details->text(kOriginator);
    details.originatorPart = m_details->text(kOriginatorPart);
    details.isAudio = m_details->integer(kIsAudio) != 0;
    details.effect = m_details->text(kEffect);
    details.isScheduled = m_details->integer(kScheduleType) == kScheduled;
    details.isExpired = m_details->integer(kExpireState) != 0;
    details.played = m_details->integer(kDatePlayed);
    return details;
}

void MessageReader::keepDetails(Message &message, Details &details)
{
    if (!details.effect.isEmpty())
        extrasOf(message).effect = details.effect;
    if (details.isScheduled)
        extrasOf(message).isScheduled = true;
    if (details.reaction)
        return keepReaction(message, *details.reaction, details);
    if (details.isEvent())
        return keepEvent(message, details);
    if (details.isBalloon())
        keepBalloon(message, details);
    if (!details.originator.isEmpty()) {
        // "part:location:length", of which the first says it.
        const int part = details.originatorPart.section(u':', 0, 0).toInt();
        extrasOf(message).answer =
            std::make_unique<Answer>(Answer { details.originator, part, Reaction::kNone });
    }
}

void MessageReader::keepReaction(Message &message, Reaction &reaction, const Details &details)
{
    reaction.emoji = details.associatedEmoji;
    if (message.sender)
        reaction.person = m_people.number(*message.sender);
    if (reaction.kind == Reaction::Kind::Vote)
        reaction.vote = Poll::readVote(Balloon::read(details.bundle, details.payload).address);
    extrasOf(message).reaction = std::make_unique<Reaction>(std::move(reaction));
}

void MessageReader::keepEvent(Message &message, const Details &details)
{
    auto event = std::make_unique<GroupEvent>();
    event->type = details.itemType;
    event->title = details.groupTitle;
    event->other = m_handles.address(details.otherHandle);
    event->kind = GroupEvent::kindOf(details.itemType,
                                     details.groupAction,
                                     details.shareStatus,
                                     !details.groupTitle.isEmpty(),
                                     event->other && event->other == message.sender);
    extrasOf(message).event = std::move(event);
}

void MessageReader::keepBalloon(Message &message, const Details &details)
{
    MessageExtras &extras = extrasOf(message);
    extras.balloon = std::make_unique<Balloon>(Balloon::read(details.bundle, details.payload));
    extras.balloon->poll.updatedGuid = Reaction::guidIn(details.associatedGuid);
    // The picture is named by its place among the files that belong to the balloon.
    int number = 0;
    for (const MessagePart &part : extras.parts) {
        if (part.kind == MessagePart::Kind::File && part.file->isOfBalloon()
            && number++ == extras.balloon->picture)
            extras.balloon->pictureFile = part.file->file;
    }
}

// A message that was changed has a text: where there is none, it is lost.
void MessageReader::keepChanges(Message &message, const Details &details, EditHistory &history)
{
    const bool isRetracted = details.retracted != 0;
    const bool isEdited = details.edited != 0;
    const bool isUnsent = history.isUnsent() || isRetracted;
    const bool isChanged = history.isDamaged || history.isEdited || isEdited;
    const bool saysSomething = !isBlank(message)
        || (message.extras
            && (message.extras->reaction || message.extras->event || message.extras->balloon
                || message.extras->isVoice || message.extras->isTextLost));
    const bool isLost = !saysSomething && isChanged && !isUnsent;
    if (isLost || (history.isDamaged && !history.lastText.isEmpty()))
        MessageBody::reportUnreadable(m_source, u"message_summary_info"_s);
    if (!isLost && !isUnsent && !isChanged && history.isEmpty())
        return;
    MessageExtras &extras = extrasOf(message);
    extras.isTextLost = extras.isTextLost || isLost;
    extras.isUnsent = isUnsent;
    extras.isEdited = history.isEdited || (isEdited && !isUnsent);
    extras.editedMs = SmsDatabase::dateMs(details.edited);
    extras.unsentMs = SmsDatabase::dateMs(details.retracted);
    if (!history.isEmpty())
        extras.history = std::make_unique<EditHistory>(std::move(history));
}

} // namespace PhoneBackup
