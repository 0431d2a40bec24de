#ifndef PHONEITEMS_MESSAGES_MESSAGEDATA_H
#define PHONEITEMS_MESSAGES_MESSAGEDATA_H

#include "PhoneBackup/messages/Conversation.h"
#include "PhoneItems/messages/MessageItem.h"
#include "PhoneItems/shared/ItemData.h"
#include "message/BkSMSData.h"

#include <memory>
#include <vector>

namespace PhoneBackup {
class MessageSource;
class Source;
} // namespace PhoneBackup

namespace PhoneItems {

class ConversationContent;

/*!
    \brief Data type 6: the conversations of the phone's own messages; all of them are selected.

    \par Memory
    A light object a conversation, 8 bytes a message, and the one conversation whose content was
    asked for last.
    \par Owner
    The source is borrowed and must outlive the set.
*/
class MessageData final : public ItemData<MessageItem, BkSMSData>
{
public:
    explicit MessageData(PhoneBackup::Source &source);
    ~MessageData() override;

    const PhoneBackup::Conversation &conversation(int index) const
    {
        return m_conversations[std::size_t(index)];
    }

    //! What the conversation goes by.
    const QString &name(int index) const { return m_names[std::size_t(index)]; }

    //! The messages of a conversation, valid until those of the next are asked for; null when none
    //! could be read.
    ConversationContent *content(int index) const;

    //! How many messages there are that the filter accepts.
    qint64 messageCount() const;

    //! Whether the filter accepts the date of the message with this ROWID.
    bool isWanted(qint64 message) const;

    //! Where they come from, null when there is no database.
    PhoneBackup::MessageSource *messages() const { return m_messages.get(); }

private:
    void readConversations();
    bool read(const PhoneBackup::Conversation &conversation, const QString &name) const;
    QStringList namesOf(const PhoneBackup::Conversation &conversation) const;
    bool hasWanted(const PhoneBackup::Conversation &conversation) const;

    PhoneBackup::Source &m_source;
    std::unique_ptr<PhoneBackup::MessageSource> m_messages;
    std::unique_ptr<ConversationContent> m_content;
    std::vector<PhoneBackup::Conversation> m_conversations;
    std::vector<QString> m_names; // of the conversations
    mutable int m_current = -1;
};

} // namespace PhoneItems

#endif
