#ifndef PHONEITEMS_MESSAGES_CONVERSATIONCONTENT_H
#define PHONEITEMS_MESSAGES_CONVERSATIONCONTENT_H

#include "PhoneItems/messages/Message.h"
#include "PhoneItems/messages/MessagePiece.h"
#include "message/BkSMSChatGroup.h"

#include <deque>

namespace PhoneBackup {

//! The messages of the conversation that is open, and everything that they consist of.
class ConversationContent final : public BkSMSChatGroup
{
public:
    const QList<BkSMSChat *> &chats() const override { return m_chats; }
    const QMap<QString, QString> &addrIds() const override { return m_names; }

    //! Releases everything.
    void clear();

    Message &addMessage();
    Message::Extras &extrasOf(Message &message);
    void addText(Message &message, const QString &text);
    void addFile(Message &message,
                 const QString &type,
                 BackupFiles &files,
                 FileIndex::Row row,
                 const QString &name,
                 bool neverDownloaded);
    void setName(const QString &address, const QString &name) { m_names.insert(address, name); }

    //! All messages in the order in which they were added, hidden ones among them.
    std::deque<Message> &messages() { return m_messages; }

    //! Lists the messages that are not hidden, oldest first. Those without a date come first.
    void list();

private:
    std::deque<Message> m_messages;
    std::deque<Message::Extras> m_extras;
    std::deque<MessagePiece> m_pieces;
    const MessagePiece *m_lastRead = nullptr; // the one that holds a file
    QList<BkSMSChat *> m_chats;
    QMap<QString, QString> m_names;
};

} // namespace PhoneBackup

#endif
