#ifndef ARCHIVE_CHATS_MESSAGECHATS_H
#define ARCHIVE_CHATS_MESSAGECHATS_H

#include "Archive/chats/ChatPages.h"
#include "Archive/media/Persons.h"
#include "Archive/records/RecordTaker.h"
#include "PhoneBackup/messages/Message.h"

namespace PhoneBackup {
struct MessageExtras;
struct Reaction;
} // namespace PhoneBackup

namespace Archive {

//! Makes conversations of the phone's own messages.
class MessageChats final : public TakerOf<MessageChats>
{
public:
    //! All are borrowed.
    MessageChats(ChatPages &pages, Persons &persons);

    void take(const ConversationOf &conversation);
    void take(const MessageOf &message);

private:
    QString nameOf(const PhoneBackup::Message &message) const;
    void number(const PhoneBackup::MessageList &list);
    void addParts(Bubble &bubble, const PhoneBackup::MessageExtras &extras) const;
    void addBalloon(Bubble &bubble, const MessageOf &of) const;
    void addReactions(Bubble &bubble, const MessageOf &of) const;
    void addHistory(Bubble &bubble, const PhoneBackup::MessageExtras &extras) const;
    void addQuote(Bubble &bubble, const MessageOf &of) const;
    void addMarks(Bubble &bubble, const MessageOf &of) const;

    ChatPages &m_pages;
    Persons &m_persons;
    const PhoneBackup::People *m_people = nullptr;
    const PhoneBackup::Conversation *m_conversation = nullptr;
    const PhoneBackup::MessageList *m_list = nullptr; // that is numbered
    std::vector<qint64> m_numbers; // by place in the list, -1 for what is no message of its own
};

} // namespace Archive

#endif
