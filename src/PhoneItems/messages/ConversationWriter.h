#ifndef PHONEITEMS_MESSAGES_CONVERSATIONWRITER_H
#define PHONEITEMS_MESSAGES_CONVERSATIONWRITER_H

#include "PhoneItems/messages/MessageChat.h"

#include <QString>

namespace PhoneBackup {
class People;
class Source;
struct Conversation;
struct MessageExtras;
struct MessagePart;
} // namespace PhoneBackup

namespace PhoneItems {

class ConversationContent;

//! Makes what is shown of a conversation from the records that its content holds.
class ConversationWriter
{
public:
    //! \a name is that of the conversation.
    ConversationWriter(PhoneBackup::Source &source,
                       const PhoneBackup::People &people,
                       const PhoneBackup::Conversation &conversation,
                       const QString &name,
                       ConversationContent &content);

    //! Fills the content with all messages, and lists those that the filter accepts.
    void write();

private:
    void writeMessage(MessageChat &chat);
    void writeParts(MessageChat &chat, const PhoneBackup::MessageExtras &extras);
    void addPart(MessageChat &chat, const QString &text);
    void addFile(MessageChat &chat,
                 const PhoneBackup::MessagePart &part,
                 const PhoneBackup::MessageExtras &extras);
    void writeBalloon(MessageChat &chat, const PhoneBackup::MessageExtras &extras);
    QString eventLine(const MessageChat &chat) const;
    void mark(MessageChat &chat, const PhoneBackup::MessageExtras &extras);
    void hideOrMarkDeleted(MessageChat &chat);
    void relate();
    QString reactionLine(const MessageChat &chat, const QString &quoted) const;
    QString quote(qsizetype target, int part) const;
    void keepForQuotes(MessageChat &chat);
    void append(MessageChat &chat, const QString &text, QChar separator);
    QString nameOf(const PhoneBackup::Message &message) const;
    void nameParticipants();

    PhoneBackup::Source &m_source;
    const PhoneBackup::People &m_people;
    const PhoneBackup::Conversation &m_conversation;
    QString m_name;
    ConversationContent &m_content;
};

} // namespace PhoneItems

#endif
