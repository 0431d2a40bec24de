#ifndef PHONEBACKUP_MESSAGES_CURRENTMESSAGES_H
#define PHONEBACKUP_MESSAGES_CURRENTMESSAGES_H

#include "PhoneBackup/messages/Handles.h"
#include "PhoneBackup/messages/MessageList.h"
#include "PhoneBackup/messages/MessageReader.h"
#include "PhoneBackup/messages/MessageSource.h"
#include "PhoneBackup/messages/People.h"
#include "PhoneBackup/messages/SmsDatabase.h"

namespace PhoneBackup {

//! The message database as it is since system version 6.
class CurrentMessages final : public MessageSource
{
public:
    CurrentMessages(Source &source, std::unique_ptr<SmsDatabase> database);
    ~CurrentMessages() override;

    std::vector<Conversation> takeConversations() override;
    bool read(const Conversation &conversation, MessageList &list) override;
    const People &people() const override { return m_people; }
    QDateTime dateOf(qint64 row) override;
    QList<MessageAttachment> attachmentsOf(qint64 row) override;
    bool isExpired(qint64 row) override;
    QList<qint64> attachmentRows() override;
    MessageAttachment attachment(qint64 row) override;

private:
    std::unique_ptr<SmsDatabase> m_database;
    Handles m_handles;
    People m_people;
    MessageAttachments m_attachments;
    MessageReader m_reader;
};

} // namespace PhoneBackup

#endif
