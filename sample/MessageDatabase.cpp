#include "sample/MessageDatabase.h"

#include "sample/MessageSchema.h"
#include "sample/People.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFirstWithNanoseconds = 11;
constexpr int kStyleOne = 45;
constexpr int kStyleGroup = 43;
constexpr int kComplete = 5;
constexpr int kGone = 3; // of a sound
constexpr qint64 kUnixMsOf2001 = 978307200000;

//! A column with the release that brought it.
struct Column
{
    const char *name;
    int iosRelease;
};

// In the order in which addMessage() gives the values.
constexpr Column kColumns[] = {
    { "guid", 6 },
    { "text", 6 },
    { "attributedBody", 6 },
    { "subject", 6 },
    { "handle_id", 6 },
    { "service", 6 },
    { "account", 6 },
    { "date", 6 },
    { "date_read", 6 },
    { "date_delivered", 6 },
    { "is_from_me", 6 },
    { "is_sent", 6 },
    { "is_delivered", 6 },
    { "is_read", 6 },
    { "error", 6 },
    { "was_downgraded", 6 },
    { "cache_has_attachments", 6 },
    { "cache_roomnames", 6 },
    { "is_audio_message", 8 },
    { "is_expirable", 8 },
    { "expire_state", 8 },
    { "item_type", 8 },
    { "group_action_type", 8 },
    { "other_handle", 8 },
    { "group_title", 8 },
    { "associated_message_guid", 10 },
    { "associated_message_type", 10 },
    { "balloon_bundle_id", 10 },
    { "payload_data", 10 },
    { "message_summary_info", 10 },
    { "destination_caller_id", 11 },
    { "thread_originator_guid", 14 },
    { "thread_originator_part", 14 },
    { "date_edited", 16 },
    { "date_retracted", 16 },
    { "associated_message_emoji", 18 },
};

QVariant orNull(const QString &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

QVariant orNull(const QByteArray &bytes)
{
    return bytes.isNull() ? QVariant() : QVariant(bytes);
}

QString chatGuid(const ChatRow &chat)
{
    return u"%1;%2;%3"_s.arg(chat.service, chat.isGroup ? u"+"_s : u"-"_s, chat.identifier);
}

} // namespace

MessageDatabase::MessageDatabase(const QString &path, int iosRelease)
    : m_iosRelease(iosRelease)
    , m_database(path, messageTables(iosRelease).constData())
{
    prepareMessages();
    m_insertJoin = m_database.prepare(iosRelease < kFirstWithNanoseconds
                                          ? "INSERT INTO chat_message_join VALUES (?1,?2)"
                                          : "INSERT INTO chat_message_join VALUES (?1,?2,?3)");
}

void MessageDatabase::prepareMessages()
{
    QByteArray names = "ROWID,version,is_finished";
    QByteArray places = "?,10,1";
    for (const Column &column : kColumns) {
        if (column.iosRelease > m_iosRelease)
            continue;
        names.append(',').append(column.name);
        places.append(",?");
    }
    const QByteArray sql = "INSERT INTO message(" + names + ") VALUES (" + places + ')';
    m_insertMessage = m_database.prepare(sql.constData());
}

void MessageDatabase::run(const char *sql, const QList<QVariant> &values)
{
    auto found = m_statements.find(sql);
    if (found == m_statements.end())
        found = m_statements.emplace(sql, m_database.prepare(sql)).first;
    found->second.run(values);
}

// The integers count seconds up to iOS 10 and nanoseconds since; 0 is no date.
QVariant MessageDatabase::stamp(const QDateTime &moment) const
{
    if (!moment.isValid())
        return 0;
    const qint64 ms = moment.toMSecsSinceEpoch() - kUnixMsOf2001;
    return m_iosRelease < kFirstWithNanoseconds ? ms / 1000 : ms * 1000000;
}

qint64 MessageDatabase::addHandle(const QString &address, const QString &service)
{
    qint64 &handle = m_handles[{ address, service }];
    if (handle != 0)
        return handle;
    handle = static_cast<qint64>(m_handles.size());
    run("INSERT INTO handle(ROWID,id,country,service,uncanonicalized_id) "
        "VALUES (?,?,'us',?,NULL)",
        { handle, address, service });
    return handle;
}

qint64 MessageDatabase::addChat(const ChatRow &chat)
{
    run("INSERT INTO chat(ROWID,guid,style,state,chat_identifier,service_name,room_name,"
        "account_login) VALUES (?,?,?,3,?,?,?,?)",
        { ++m_chats,
          chatGuid(chat),
          chat.isGroup ? kStyleGroup : kStyleOne,
          chat.identifier,
          chat.service,
          chat.isGroup ? QVariant(chat.identifier) : QVariant(),
          u"P:"_s + ownersNumber() });
    if (m_iosRelease >= 8) {
        run("UPDATE chat SET display_name=?, group_id=? WHERE ROWID=?",
            { chat.displayName, orNull(chat.groupId), m_chats });
    }
    for (const qint64 handle : chat.handles)
        run("INSERT INTO chat_handle_join VALUES (?,?)", { m_chats, handle });
    return m_chats;
}

qint64 MessageDatabase::addMessage(const MessageRow &message)
{
    const bool attributed = message.store != TextStore::Plain && !message.text.isNull();
    const bool plain = message.store != TextStore::Attributed && !message.text.isNull();
    const bool isReply = !message.threadOriginator.isNull();
    const QVariant date = stamp(message.date);
    const bool arrived = message.delivered || !message.fromMe;

    m_values.clear();
    m_values.append(++m_messages);
    const Column *column = kColumns;
    const auto add = [this, &column](const QVariant &value) {
        if ((column++)->iosRelease <= m_iosRelease)
            m_values.append(value);
    };
    add(message.guid);
    add(plain ? QVariant(message.text) : QVariant());
    add(attributed ? QVariant(attributedBody(message.text, message.runs)) : QVariant());
    add(orNull(message.subject));
    add(message.handle);
    add(orNull(message.service));
    add(u"P:"_s + ownersNumber());
    add(date);
    add(message.read && arrived && !message.fromMe ? date : QVariant(0));
    add(message.fromMe && message.delivered ? date : QVariant(0));
    add(message.fromMe);
    add(message.fromMe && message.sent);
    add(message.fromMe && message.delivered);
    add(message.read);
    add(message.error);
    add(message.downgraded);
    add(message.hasAttachments);
    add(orNull(message.roomName));
    add(message.isAudio);
    add(message.isExpired);
    add(message.isExpired ? kGone : 0);
    add(message.itemType);
    add(message.groupAction);
    add(message.otherHandle);
    add(orNull(message.groupTitle));
    add(orNull(message.associatedGuid));
    add(message.associatedType);
    add(orNull(message.balloon));
    add(orNull(message.payload));
    add(orNull(message.summary));
    add(ownersNumber());
    add(orNull(message.threadOriginator));
    add(isReply ? QVariant(u"0:0:1"_s) : QVariant());
    add(stamp(message.edited));
    add(stamp(message.retracted));
    add(orNull(message.associatedEmoji));
    m_insertMessage->run(m_values);
    return m_messages;
}

void MessageDatabase::addToChat(qint64 chat, qint64 message, const QDateTime &date)
{
    if (m_iosRelease < kFirstWithNanoseconds)
        m_insertJoin->run({ chat, message });
    else
        m_insertJoin->run({ chat, message, stamp(date) });
}

void MessageDatabase::addDeletedToChat(qint64 chat, qint64 message, const QDateTime &deleted)
{
    run("INSERT INTO chat_recoverable_message_join(chat_id,message_id,delete_date) "
        "VALUES (?,?,?)",
        { chat, message, stamp(deleted) });
}

void MessageDatabase::addAttachment(qint64 message,
                                    const AttachmentRow &attachment,
                                    const QDateTime &date)
{
    // This table counts seconds in every release.
    const qint64 seconds = (date.toMSecsSinceEpoch() - kUnixMsOf2001) / 1000;
    run("INSERT INTO attachment(ROWID,guid,created_date,filename,uti,mime_type,"
        "transfer_state) VALUES (?,?,?,?,?,?,?)",
        { ++m_attachments,
          attachment.guid,
          seconds,
          orNull(attachment.path),
          orNull(attachment.uti),
          orNull(attachment.mimeType),
          attachment.path.isNull() ? 0 : kComplete });
    if (m_iosRelease >= 8) {
        run("UPDATE attachment SET transfer_name=?, total_bytes=? WHERE ROWID=?",
            { orNull(attachment.name), attachment.sizeBytes, m_attachments });
    }
    if (m_iosRelease >= 10) {
        run("UPDATE attachment SET hide_attachment=? WHERE ROWID=?",
            { attachment.isHidden, m_attachments });
    }
    if (m_iosRelease >= 11) {
        run("UPDATE attachment SET original_guid=guid WHERE ROWID=?", { m_attachments });
    }
    run("INSERT INTO message_attachment_join VALUES (?,?)", { message, m_attachments });
}

bool MessageDatabase::finish()
{
    m_database.execute(messageIndexesAndTriggers(m_iosRelease).constData());
    return m_database.finish();
}

} // namespace Sample
