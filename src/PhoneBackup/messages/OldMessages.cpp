#include "PhoneBackup/messages/OldMessages.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/messages/AttachmentFiles.h"
#include "PhoneBackup/messages/MessageBody.h"
#include "PhoneBackup/messages/MessageList.h"
#include "PhoneBackup/messages/MessageParts.h"
#include "PhoneBackup/plist/PropertyList.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/Table.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kParts = "Library/SMS/Parts/";

// What the columns of a text message say together.
enum Flags : qint64 {
    kReceived = 2,
    kSent = 3,
    kFailed = 33,
    kFailedToo = 35,
    kDeleted = 129,
    kInvalidRecipient = 131,
};

// Bits of an iMessage.
constexpr qint64 kFromMe = 0x4;
constexpr qint64 kDelivered = 0x1000;
constexpr qint64 kWasSent = 0x8000;

enum Column {
    kRow,
    kText,
    kSubject,
    kAddress,
    kDate,
    kFlags,
    kGroup,
    kRecipients,
    kIsMadrid,
    kMadridHandle,
    kMadridRoom,
    kMadridFlags,
    kMadridError,
    kMadridBody,
    kMadridGuid,
    kMadridDelivered,
    kMadridRead,
};

bool isMadrid(const Statement &row)
{
    return row.integer(kIsMadrid) != 0;
}

qint64 dateMs(const Statement &row)
{
    const qint64 date = row.integer(kDate);
    if (isMadrid(row))
        return SmsDatabase::dateMs(date);
    return date > 0 && date < PhoneTime::kYear2200 ? date * 1000 : PhoneTime::kNoMs;
}

bool isKnown(const Statement &row, qint64 flags)
{
    return isMadrid(row) || flags == kReceived || flags == kSent || flags == kFailed
        || flags == kFailedToo || flags == kDeleted || flags == kInvalidRecipient;
}

QStringList texts(const QVariant &list)
{
    QStringList result;
    for (const QVariant &entry : list.toList()) {
        const QString text = entry.toString().trimmed();
        if (!text.isEmpty())
            result.append(text);
    }
    return result;
}

} // namespace

bool OldMessages::recognises(const SmsDatabase &database)
{
    const QString table = u"message"_s;
    return !database.hasTable(u"chat_message_join"_s)
        && (database.hasColumn(table, u"address"_s)
            || database.hasColumn(table, u"madrid_handle"_s));
}

OldMessages::OldMessages(Source &source, std::unique_ptr<SmsDatabase> database)
    : m_source(source)
    , m_database(std::move(database))
    , m_handles(*m_database)
    , m_people(source.addressBook())
    , m_attachments(source, *m_database)
    , m_hasFlags(m_database->hasColumn(u"message"_s, u"flags"_s))
{
    QStringList wanted { u"ROWID"_s };
    for (const QString &name : { u"text"_s,
                                 u"subject"_s,
                                 u"address"_s,
                                 u"date"_s,
                                 u"flags"_s,
                                 u"group_id"_s,
                                 u"recipients"_s,
                                 u"is_madrid"_s,
                                 u"madrid_handle"_s,
                                 u"madrid_roomname"_s,
                                 u"madrid_flags"_s,
                                 u"madrid_error"_s,
                                 u"madrid_attributedBody"_s,
                                 u"madrid_guid"_s,
                                 u"madrid_date_delivered"_s,
                                 u"madrid_date_read"_s })
        wanted.append(m_database->column(u"message"_s, name));
    m_rows =
        m_database->prepare(u"SELECT %1 FROM message WHERE ROWID = ?1"_s.arg(wanted.join(u", "_s)));
    readMembers();
    readRooms();
    readParts();
    findFiles();
}

OldMessages::~OldMessages() = default;

void OldMessages::readMembers()
{
    Table table(*m_database, u"group_member"_s);
    const auto [group, member] = table.columns(u"group_id"_s, u"address"_s);
    table.forEach([this, group = group, member = member](const Table::Row &row) {
        const QString address = row.text(member).trimmed();
        QStringList &members = m_members[row.integer(group)];
        if (!address.isEmpty() && !members.contains(address))
            members.append(address);
    });
}

void OldMessages::readRooms()
{
    Table table(*m_database, u"madrid_chat"_s);
    const auto [name, participants] = table.columns(u"room_name"_s, u"participants"_s);
    table.forEach([this, name = name, participants = participants](const Table::Row &row) {
        const PropertyList list = PropertyList::parse(row.bytes(participants).toByteArray());
        m_rooms.insert(row.text(name).trimmed(), texts(list.toVariant()));
    });
}

void OldMessages::readParts()
{
    Table table(*m_database, u"msg_pieces"_s);
    if (!table.hasColumn(u"message_id"_s))
        return;
    const auto [message, number, type] =
        table.columns(u"message_id"_s, u"part_id"_s, u"content_type"_s);
    table.forEach([this, message = message, number = number, type = type](const Table::Row &row) {
        m_parts.push_back({ row.integer(message),
                            row.integer(number),
                            row.id(),
                            row.text(type).trimmed().toLower() });
    });
    const auto key = [](const Part &part) {
        return std::tuple(part.message, part.number, part.row);
    };
    std::sort(m_parts.begin(), m_parts.end(), [key](const Part &a, const Part &b) {
        return key(a) < key(b);
    });
    m_partTexts = m_database->prepare(
        u"SELECT %1 FROM msg_pieces WHERE ROWID = ?1"_s.arg(table.sql(u"data"_s)));
}

void OldMessages::findFiles()
{
    const FileIndex &index = m_source.index();
    const FileIndex::Range range = index.walk(AttachmentFiles::kDomain, kParts);
    for (FileIndex::Row row = range.first; row < range.last; ++row) {
        if (index.kind(row) == FileIndex::Kind::File)
            m_files.insert(PathParts::stem(index.path(row)).toByteArray(), row);
    }
}

std::vector<Conversation> OldMessages::takeConversations()
{
    std::vector<qint64> rows;
    const Table table(*m_database, u"message"_s);
    table.forEach([&rows](const Table::Row &row) { rows.push_back(row.id()); });
    std::sort(rows.begin(), rows.end());
    for (const qint64 row : rows) {
        if (!step(row) || !isKnown(*m_rows, flags()))
            continue;
        Conversation &conversation = m_conversations[std::size_t(conversationOf(*m_rows))];
        const QString sender =
            isMadrid(*m_rows) ? m_rows->text(kMadridHandle).trimmed() : QString();
        if (!sender.isEmpty() && !conversation.addresses.contains(sender))
            conversation.addresses.append(sender); // no list of a room need name everybody
        conversation.messages.push_back(row);
        if (!isMadrid(*m_rows) && flags() == kDeleted)
            conversation.deleted.push_back({ row });
        conversation.lastDateMs = std::max(conversation.lastDateMs, dateMs(*m_rows));
    }
    for (Conversation &conversation : m_conversations) {
        conversation.isDeleted = conversation.deleted.size() == conversation.messages.size();
        for (const QString &address : std::as_const(conversation.addresses)) {
            conversation.names.append(m_people.name(address));
            if (!conversation.isGroup)
                break;
        }
    }
    std::stable_sort(m_conversations.begin(),
                     m_conversations.end(),
                     [](const auto &a, const auto &b) { return a.lastDateMs > b.lastDateMs; });
    return std::move(m_conversations);
}

int OldMessages::conversationOf(const Statement &row)
{
    if (isMadrid(row)) {
        const QString room = row.text(kMadridRoom).trimmed();
        if (!room.isEmpty())
            return conversationWith(m_rooms.value(room), u"room "_s + room);
        return conversationWith({ row.text(kMadridHandle).trimmed() }, {});
    }
    const qint64 group = row.integer(kGroup);
    QStringList members = group > 0 ? m_members.value(group) : QStringList();
    if (members.isEmpty())
        members = texts(PropertyList::parse(row.bytes(kRecipients).toByteArray()).toVariant());
    const QString address = row.text(kAddress).trimmed();
    if (members.isEmpty() && !address.isEmpty())
        members.append(address);
    return conversationWith(members, u"group %1"_s.arg(group));
}

int OldMessages::conversationWith(const QStringList &addresses, const QString &group)
{
    const bool isPerson = addresses.size() == 1 && !addresses.constFirst().isEmpty();
    int *known = nullptr;
    if (isPerson) {
        auto it = m_ofPerson.find(m_people.number(addresses.constFirst()));
        if (it == m_ofPerson.end())
            it = m_ofPerson.insert(m_people.number(addresses.constFirst()), -1);
        known = &*it;
    } else {
        auto it = m_ofGroup.find(group);
        if (it == m_ofGroup.end())
            it = m_ofGroup.insert(group, -1);
        known = &*it;
    }
    if (*known < 0) {
        *known = int(m_conversations.size());
        Conversation &added = m_conversations.emplace_back();
        added.isGroup = !isPerson;
    }
    Conversation &conversation = m_conversations[std::size_t(*known)];
    for (const QString &address : addresses) {
        if (!address.isEmpty() && !conversation.addresses.contains(address))
            conversation.addresses.append(address);
    }
    return *known;
}

// The earliest tables may have no such column: then nobody knows more than that it is a message.
qint64 OldMessages::flags() const
{
    return m_hasFlags ? m_rows->integer(kFlags) : qint64(kReceived);
}

bool OldMessages::step(qint64 row)
{
    if (!m_rows)
        return false;
    m_rows->reset();
    m_rows->bind(1, row);
    const Statement::Step step = m_rows->step();
    if (step == Statement::Step::Failed)
        m_database->addFailure(*m_rows);
    return step == Statement::Step::Row;
}

bool OldMessages::read(const Conversation &conversation, MessageList &list)
{
    bool isWhole = true;
    for (const qint64 row : conversation.messages) {
        if (!step(row)) {
            isWhole = false;
            continue;
        }
        Message &message = list.add();
        message.row = row;
        message.isDeleted = conversation.deletion(row) != nullptr;
        readMessage(message, list);
    }
    list.complete();
    return isWhole;
}

void OldMessages::readMessage(Message &message, MessageList &list)
{
    const Statement &row = *m_rows;
    message.dateMs = dateMs(row);
    const QString subject = StoredText::cleaned(MessageBody::textAt(m_source, row, kSubject));
    if (!subject.isEmpty())
        list.extrasOf(message).subject = subject;
    MessageBody body;
    QList<MessageAttachment> attachments;
    MessageParts::Hints hints;
    if (isMadrid(row)) {
        readIMessage(message, list);
        body = MessageBody::read(m_source, row, kMadridBody, kText);
        attachments = m_attachments.of(message.row);
    } else {
        message.service = MessageService::Sms;
        message.isFromMe = flags() != kReceived;
        if (message.isFromMe)
            message.delivery =
                flags() == kSent || flags() == kDeleted ? Delivery::Sent : Delivery::Failed;
        body.text = MessageBody::textAt(m_source, row, kText);
        hints.tellsMissing = partsOf(message.row).isEmpty(); // else its files are parts
    }
    MessageParts parts(m_attachments, list);
    parts.set(message, body, attachments, hints);
    if (body.isUnreadable) {
        list.extrasOf(message).isTextLost = true;
        MessageBody::reportUnreadable(m_source, u"madrid_attributedBody"_s);
    }
    const QString address = row.text(isMadrid(row) ? kMadridHandle : kAddress).trimmed();
    if (!message.isFromMe && !address.isEmpty())
        message.sender = m_handles.intern(address);
    for (const Part &part : partsOf(message.row))
        readPart(part, message, parts);
}

void OldMessages::readIMessage(Message &message, MessageList &list)
{
    const qint64 flags = m_rows->integer(kMadridFlags);
    message.service = MessageService::IMessage;
    message.isFromMe = (flags & kFromMe) != 0;
    if (message.isFromMe) {
        const bool isSent = (flags & (kDelivered | kWasSent)) != 0;
        message.delivery = m_rows->integer(kMadridError) != 0 ? Delivery::Failed
            : isSent                                          ? Delivery::Sent
                                                              : Delivery::Waiting;
    }
    message.deliveredMs = SmsDatabase::dateMs(m_rows->integer(kMadridDelivered));
    message.readMs = SmsDatabase::dateMs(m_rows->integer(kMadridRead));
    const QByteArrayView guid = m_rows->bytes(kMadridGuid);
    bool isUuid = false;
    message.id = MessageId::of(guid, &isUuid);
    if (!isUuid)
        list.extrasOf(message).guid = QString::fromUtf8(guid);
}

void OldMessages::readPart(const Part &part, Message &message, MessageParts &parts)
{
    if (part.type == "application/smil"_L1) // how the others are laid out
        return;
    if (part.type.startsWith("text/plain"_L1)) {
        m_partTexts->reset();
        m_partTexts->bind(1, part.row);
        if (m_partTexts->step() == Statement::Step::Row)
            parts.addText(message, MessageBody::textAt(m_source, *m_partTexts, 0));
        return;
    }
    parts.addFile(message, attachmentOf(part), {});
}

MessageAttachment OldMessages::attachmentOf(const Part &part) const
{
    const QByteArray name =
        QByteArray::number(part.message) + '-' + QByteArray::number(part.number);
    MessageAttachment attachment;
    attachment.row = part.row;
    attachment.mimeType = part.type;
    attachment.kind = MessageAttachment::kindOfType(part.type);
    attachment.file = m_files.value(name, FileIndex::kNone);
    attachment.path = u"Library/SMS/Parts/…/"_s + QString::fromLatin1(name);
    attachment.name = attachment.file == FileIndex::kNone
        ? QString::fromLatin1(name)
        : PathParts::text(PathParts::name(m_source.index().path(attachment.file)));
    return attachment;
}

QList<OldMessages::Part> OldMessages::partsOf(qint64 message) const
{
    const auto before = [](const Part &part, qint64 row) { return part.message < row; };
    auto it = std::lower_bound(m_parts.cbegin(), m_parts.cend(), message, before);
    QList<Part> parts;
    for (; it != m_parts.cend() && it->message == message; ++it)
        parts.append(*it);
    return parts;
}

QDateTime OldMessages::dateOf(qint64 row)
{
    return step(row) ? PhoneTime::ofMs(dateMs(*m_rows)) : QDateTime();
}

QList<MessageAttachment> OldMessages::attachmentsOf(qint64 row)
{
    QList<MessageAttachment> attachments = m_attachments.of(row);
    for (const Part &part : partsOf(row)) {
        if (!part.type.startsWith("text/plain"_L1) && part.type != "application/smil"_L1)
            attachments.append(attachmentOf(part));
    }
    return attachments;
}

} // namespace PhoneBackup
