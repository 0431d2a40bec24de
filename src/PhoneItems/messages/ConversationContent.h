#ifndef PHONEITEMS_MESSAGES_CONVERSATIONCONTENT_H
#define PHONEITEMS_MESSAGES_CONVERSATIONCONTENT_H

#include "PhoneBackup/messages/MessageList.h"
#include "PhoneItems/messages/MessageChat.h"
#include "PhoneItems/messages/MessagePiece.h"
#include "message/BkSMSChatGroup.h"

#include <deque>

namespace PhoneItems {

//! The conversation that is open: the records of its messages, and what is shown of them.
class ConversationContent final : public BkSMSChatGroup
{
public:
    const QList<BkSMSChat *> &chats() const override { return m_chats; }
    const QMap<QString, QString> &addrIds() const override { return m_names; }

    //! Releases everything.
    void clear();

    //! The records; what is shown refers to them.
    PhoneBackup::MessageList &records() { return m_records; }

    MessageChat &add(const PhoneBackup::Message &record) { return m_all.emplace_back(record); }

    //! All messages in the order in which they were added, hidden ones among them.
    std::deque<MessageChat> &all() { return m_all; }

    //! What few have, made with the text of the record when it is first asked for.
    MessageChat::Extras &extrasOf(MessageChat &chat);
    void addText(MessageChat &chat, const QString &text);
    void addFile(MessageChat &chat,
                 const PhoneBackup::MessageAttachment &attachment,
                 PhoneBackup::BackupFiles &files);
    void setName(const QString &address, const QString &name) { m_names.insert(address, name); }

    //! Lists the messages that are not hidden.
    void list();

private:
    PhoneBackup::MessageList m_records;
    std::deque<MessageChat> m_all;
    std::deque<MessageChat::Extras> m_extras;
    std::deque<MessagePiece> m_pieces;
    const MessagePiece *m_lastRead = nullptr; // the one that holds a file
    QList<BkSMSChat *> m_chats;
    QMap<QString, QString> m_names;
};

} // namespace PhoneItems

#endif
