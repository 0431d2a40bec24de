#ifndef PHONEBACKUP_MESSAGES_MESSAGELIST_H
#define PHONEBACKUP_MESSAGES_MESSAGELIST_H

#include "PhoneBackup/messages/Message.h"
#include "PhoneBackup/messages/MessageExtras.h"

#include <deque>

namespace PhoneBackup {

/*!
    \brief The messages of one conversation, and all that they consist of.

    Messages name each other by their place. Addresses belong to the reader.
*/
class MessageList
{
public:
    Message &add() { return m_messages.emplace_back(); }

    //! What few have, made when it is first asked for.
    MessageExtras &extrasOf(Message &message)
    {
        if (!message.extras)
            message.extras = &m_extras.emplace_back();
        return *message.extras;
    }

    const std::deque<Message> &messages() const { return m_messages; }

    //! Puts them in order, the oldest first and those without a date before it, and finds out what
    //! they have to do with each other. The last thing to do.
    void complete();

    //! Releases everything.
    void clear()
    {
        m_messages.clear();
        m_extras.clear();
    }

private:
    std::deque<Message> m_messages;
    std::deque<MessageExtras> m_extras;
};

} // namespace PhoneBackup

#endif
