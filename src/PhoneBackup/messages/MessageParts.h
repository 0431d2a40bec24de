#ifndef PHONEBACKUP_MESSAGES_MESSAGEPARTS_H
#define PHONEBACKUP_MESSAGES_MESSAGEPARTS_H

#include "PhoneBackup/messages/MessageAttachments.h"
#include "PhoneBackup/plist/AttributedText.h"

namespace PhoneBackup {

class ConversationContent;
class Message;
class Source;

//! \brief Puts the texts and files that a message consists of into a conversation.
class MessageParts
{
public:
    //! What a message's text says of its files.
    struct Hints
    {
        QList<AttributedText::File> places; //!< Which file stands where.
        QString transcription; //!< What was said in a voice message.
        bool isVoice = false; //!< The message was spoken.
        bool tellsMissing = true; //!< Each place in the text stands for a file.
    };

    MessageParts(Source &source, ConversationContent &content)
        : m_source(source)
        , m_content(content)
    {
    }

    /*!
        Gives the empty \a message its \a text and its \a attachments, in the order in which they
        stand in the text; files that have no place there come last. A place without a file becomes
        a word, unless hints say that it stands for something else.
    */
    void set(Message &message,
             const QString &text,
             QList<MessageAttachment> attachments,
             const Hints &hints);

    //! Adds \a text behind what the message has; nothing when it is blank.
    void addText(Message &message, const QString &text);

    //! Adds a file, and a line for one that the page does not show by itself.
    void addFile(Message &message, const MessageAttachment &attachment, const Hints &hints);

private:
    Source &m_source;
    ConversationContent &m_content;
};

} // namespace PhoneBackup

#endif
