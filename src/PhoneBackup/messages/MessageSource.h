#ifndef PHONEBACKUP_MESSAGES_MESSAGESOURCE_H
#define PHONEBACKUP_MESSAGES_MESSAGESOURCE_H

#include "PhoneBackup/messages/Conversation.h"
#include "PhoneBackup/messages/MessageAttachments.h"

#include <QDateTime>

#include <memory>
#include <vector>

namespace PhoneBackup {

class MessageList;
class People;
class Source;

/*!
    \brief Where conversations come from: one class for each kind of message database.
*/
class MessageSource
{
public:
    MessageSource() = default;
    virtual ~MessageSource();

    MessageSource(const MessageSource &) = delete;
    MessageSource &operator=(const MessageSource &) = delete;

    //! The message database of \a source, null when it has none that can be opened.
    static std::unique_ptr<MessageSource> open(Source &source);

    //! All conversations with messages, the one with the newest message first. Asked once.
    virtual std::vector<Conversation> takeConversations() = 0;

    /*!
        Fills the empty \a list. \a conversation must stay where it is as long as the list is used.
        \return false when something of it could not be read.
    */
    virtual bool read(const Conversation &conversation, MessageList &list) = 0;

    //! Who is at an address.
    virtual const People &people() const = 0;

    //! When the message \a row was sent; invalid when that is not known.
    virtual QDateTime dateOf(qint64 row) = 0;

    //! The files sent in the message \a row.
    virtual QList<MessageAttachment> attachmentsOf(qint64 row) = 0;

    //! Whether the message \a row was a spoken one whose sound the phone has deleted since.
    virtual bool isExpired(qint64 row);

    //! The ROWIDs of all attachments, whether a message has them or not; and one of them.
    virtual QList<qint64> attachmentRows();
    virtual MessageAttachment attachment(qint64 row);
};

} // namespace PhoneBackup

#endif
