#ifndef PHONEBACKUP_MESSAGES_MESSAGEPARTS_H
#define PHONEBACKUP_MESSAGES_MESSAGEPARTS_H

#include "PhoneBackup/messages/MessageBody.h"
#include "PhoneBackup/messages/MessagePart.h"

#include <vector>

namespace PhoneBackup {

class MessageAttachments;
class MessageList;
struct Message;

//! \brief Puts the texts and files that a message consists of into its record.
class MessageParts
{
public:
    //! What a message's text says of its files.
    struct Hints
    {
        bool isVoice = false; //!< The message was spoken.
        bool tellsMissing = true; //!< Each place in the text stands for a file.
    };

    MessageParts(MessageAttachments &attachments, MessageList &list)
        : m_attachments(attachments)
        , m_list(list)
    {
    }

    /*!
        Gives the empty \a message its \a body and its \a files, in the order in which they stand in
        the text; files that have no place there come last. A place without a file becomes a part
        of its own, unless hints say that it stands for something else.
    */
    void set(Message &message,
             const MessageBody &body,
             QList<MessageAttachment> files,
             const Hints &hints);

    //! Adds \a text behind what the message has; nothing when it is blank.
    void addText(Message &message, const QString &text);

    void addFile(Message &message, const MessageAttachment &file, const Hints &hints);

private:
    void setParts(Message &message,
                  const MessageBody &body,
                  QList<MessageAttachment> &files,
                  const Hints &hints);

    std::vector<MessagePart> &partsOf(Message &message);

    MessageAttachments &m_attachments;
    MessageList &m_list;
};

} // namespace PhoneBackup

#endif
