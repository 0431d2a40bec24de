#ifndef PHONEITEMS_MESSAGES_MESSAGEDATA_H
#define PHONEITEMS_MESSAGES_MESSAGEDATA_H

#include "PhoneBackup/messages/Conversation.h"
#include "PhoneItems/messages/MessageItem.h"
#include "PhoneItems/shared/ItemData.h"
#include "message/BkSMSData.h"

#include <memory>
#include <vector>

namespace PhoneBackup {

class ConversationContent;
class MessageSource;
class Source;

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
    explicit MessageData(Source &source);
    ~MessageData() override;

    const Conversation &conversation(int index) const
    {
        return m_conversations[std::size_t(index)];
    }

    //! The messages of a conversation, valid until those of the next are asked for; null when none
    //! could be read.
    ConversationContent *content(int index) const;

    //! How many messages there are that the filter accepts.
    qint64 messageCount() const;

    //! Whether the filter accepts the date of the message with this ROWID.
    bool isWanted(qint64 message) const;

    //! Where they come from, null when there is no database.
    MessageSource *messages() const { return m_messages.get(); }

private:
    void readConversations();
    QStringList namesOf(const Conversation &conversation) const;
    bool hasWanted(const Conversation &conversation) const;

    Source &m_source;
    std::unique_ptr<MessageSource> m_messages;
    std::unique_ptr<ConversationContent> m_content;
    std::vector<Conversation> m_conversations;
    mutable int m_current = -1;
};

} // namespace PhoneBackup

#endif
