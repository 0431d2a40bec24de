#ifndef TESTS_PHONEBACKUP_MESSAGEFIXTURE_H
#define TESTS_PHONEBACKUP_MESSAGEFIXTURE_H

#include "BackupFixture.h"
#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSItem.h"
#include "message/BkSMSPiece.h"
#include "sample/MessageSchema.h"

//! A backup with a message database, and what the reader makes of it as lines of text.
class MessageFixture : public BackupFixture
{
public:
    static constexpr int kMessages = 6;
    static constexpr int kFiles = 7;

    //! Adds the tables of a release filled by \a sql.
    void addMessages(const QByteArray &sql, int iosRelease = 18)
    {
        addDatabase(database((Sample::messageTables(iosRelease) + sql).constData()));
    }

    void addDatabase(const QByteArray &image)
    {
        writer.addFile(QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db"), image);
    }

    //! Every conversation as "name|phone|email", with "|deleted" behind those that are.
    QStringList conversations()
    {
        QStringList lines;
        const BkData *data = set();
        for (int i = 0; data && i < data->count(1); ++i) {
            const BkAbstractItem *item = data->at(i, true);
            lines.append(item->value(0) + QLatin1Char('|') + item->value(1) + QLatin1Char('|')
                         + item->value(2)
                         + (item->flag(0) ? QStringLiteral("|deleted") : QString()));
        }
        return lines;
    }

    /*!
        The messages of a conversation: "> " before the owner's, else "address: ", then the text
        with "subject / " before it and "{type name}" for each file.
    */
    QStringList messages(int conversation = 0)
    {
        const BkSMSChatGroup *group = content(conversation);
        if (!group)
            return { QStringLiteral("not read") };
        QStringList lines;
        for (const BkSMSChat *chat : group->chats()) {
            QString line =
                chat->isFromMe() ? QStringLiteral("> ") : chat->addr() + QStringLiteral(": ");
            if (!chat->subject().isEmpty())
                line += chat->subject() + QStringLiteral(" / ");
            line += chat->content();
            for (const BkSMSPiece *piece : chat->pieces()) {
                line += piece->pieceType() == QLatin1String("text/plain")
                    ? QLatin1Char('+') + QString::fromUtf8(piece->pieceData())
                    : QStringLiteral("{%1 %2}").arg(piece->pieceType(), piece->pieceLocation());
            }
            lines.append(line.replace(QLatin1Char('\n'), QLatin1Char('|')));
        }
        return lines;
    }

    BkSMSChatGroup *content(int conversation = 0)
    {
        const BkData *data = set();
        auto *item = data ? dynamic_cast<BkSMSItem *>(data->at(conversation, true)) : nullptr;
        return item ? item->detailContent() : nullptr;
    }

    BkData *set(int code = kMessages)
    {
        if (!m_opened)
            m_opened = open();
        return m_opened ? m_opened->getBkData(code) : nullptr;
    }

private:
    PhoneItems::Backup *m_opened = nullptr;
};

//! Rows for the tables of the message database.
namespace MessageRows {

// A conversation with Ann, on the address book too, whose messages the rows below add.
inline const QByteArray kAnn =
    "INSERT INTO handle(ROWID, id, service) VALUES (1, '+15550100123', 'iMessage');"
    "INSERT INTO chat(ROWID, guid, style, chat_identifier, service_name) VALUES"
    " (1, 'iMessage;-;+15550100123', 45, '+15550100123', 'iMessage');"
    "INSERT INTO chat_handle_join VALUES (1, 1);";

inline const QByteArray kGroup =
    "INSERT INTO handle(ROWID, id, service) VALUES (1, '+15550100123', 'iMessage'),"
    " (2, 'bob@example.org', 'iMessage'), (3, '+15550100999', 'iMessage');"
    "INSERT INTO chat(ROWID, guid, style, chat_identifier, room_name, service_name,"
    " last_addressed_handle) VALUES (1, 'iMessage;+;chat1', 43, 'chat1', 'chat1', 'iMessage',"
    " '+15550100999');"
    "INSERT INTO chat_handle_join VALUES (1, 1), (1, 2), (1, 3);";

inline QByteArray hex(const QByteArray &bytes)
{
    return "x'" + bytes.toHex() + '\'';
}

// A message with further columns, and its link to chat 1.
inline QByteArray message(int row,
                          const QByteArray &text,
                          const QByteArray &columns = {},
                          const QByteArray &values = {},
                          const QByteArray &handle = "1")
{
    const QByteArray number = QByteArray::number(row);
    return "INSERT INTO message(ROWID, guid, date, service, is_sent, handle_id, is_from_me, text"
        + (columns.isEmpty() ? QByteArray() : ", " + columns) + ") VALUES (" + number + ", 'guid-"
        + number + "', " + QByteArray::number(700000000 + row) + "000000000, 'iMessage', 1, "
        + handle + ", " + (handle == "0" ? "1" : "0") + ", " + text
        + (values.isEmpty() ? QByteArray() : ", " + values)
        + ");INSERT INTO chat_message_join(chat_id, message_id) VALUES (1, " + number + ");";
}

inline QByteArray
attachment(int row, int ofMessage, const QByteArray &path, const QByteArray &more = {})
{
    const QByteArray number = QByteArray::number(row);
    return "INSERT INTO attachment(ROWID, guid, original_guid, filename) VALUES (" + number
        + ", 'file-" + number + "', 'file-" + number + "', " + path
        + ");INSERT INTO message_attachment_join VALUES (" + QByteArray::number(ofMessage) + ", "
        + number + ");"
        + (more.isEmpty() ? QByteArray()
                          : "UPDATE attachment SET " + more + " WHERE ROWID = " + number + ';');
}

inline QByteArray addressBook()
{
    return BackupFixture::database(
        "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT, Last TEXT);"
        "CREATE TABLE ABMultiValue (record_id INTEGER, property INTEGER, label INTEGER, value "
        "TEXT);"
        "INSERT INTO ABPerson VALUES (1, 'Ann', NULL), (2, 'Bob', NULL);"
        "INSERT INTO ABMultiValue VALUES (1, 3, NULL, '(555) 010-0123'),"
        " (1, 4, NULL, 'ann@example.org'), (2, 4, NULL, 'bob@example.org');");
}

} // namespace MessageRows

#endif
