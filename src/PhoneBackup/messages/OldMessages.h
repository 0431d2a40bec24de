#ifndef PHONEBACKUP_MESSAGES_OLDMESSAGES_H
#define PHONEBACKUP_MESSAGES_OLDMESSAGES_H

#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/messages/Handles.h"
#include "PhoneBackup/messages/MessageSource.h"
#include "PhoneBackup/messages/People.h"
#include "PhoneBackup/messages/SmsDatabase.h"

#include <QHash>

namespace PhoneBackup {

class MessageParts;
struct Message;

/*!
    \brief The message database before system version 6: texts and picture messages, and the first
    iMessages beside them in the same table.
*/
class OldMessages final : public MessageSource
{
public:
    static bool recognises(const SmsDatabase &database);

    OldMessages(Source &source, std::unique_ptr<SmsDatabase> database);
    ~OldMessages() override;

    std::vector<Conversation> takeConversations() override;
    bool read(const Conversation &conversation, MessageList &list) override;
    const People &people() const override { return m_people; }
    QDateTime dateOf(qint64 row) override;
    QList<MessageAttachment> attachmentsOf(qint64 row) override;

private:
    //! A part of a picture message, in the order of its messages.
    struct Part
    {
        qint64 message;
        qint64 number;
        qint64 row;
        QString type;
    };

    void readMembers();
    void readRooms();
    void readParts();
    void findFiles();
    int conversationOf(const Statement &row);
    int conversationWith(const QStringList &addresses, const QString &group);
    bool step(qint64 row);
    qint64 flags() const;
    void readMessage(Message &message, MessageList &list);
    void readIMessage(Message &message, MessageList &list);
    void readPart(const Part &part, Message &message, MessageParts &parts);
    MessageAttachment attachmentOf(const Part &part) const;
    QList<Part> partsOf(qint64 message) const;

    Source &m_source;
    std::unique_ptr<SmsDatabase> m_database;
    Handles m_handles;
    People m_people;
    MessageAttachments m_attachments; // of iMessages
    bool m_hasFlags;
    std::unique_ptr<Statement> m_rows;
    std::unique_ptr<Statement> m_partTexts;
    QHash<qint64, QStringList> m_members; // of a group by its number
    QHash<QString, QStringList> m_rooms; // addresses in a room of iMessage
    std::vector<Part> m_parts;
    QHash<QByteArray, FileIndex::Row> m_files; // by "message-part"
    std::vector<Conversation> m_conversations;
    QHash<QString, int> m_ofGroup;
    QHash<int, int> m_ofPerson;
};

} // namespace PhoneBackup

#endif
