#ifndef PHONEBACKUP_MESSAGES_MESSAGEREADER_H
#define PHONEBACKUP_MESSAGES_MESSAGEREADER_H

#include "PhoneBackup/messages/Conversation.h"
#include "PhoneBackup/messages/Message.h"
#include "PhoneBackup/messages/MessageExtras.h"

#include <QHash>

#include <memory>
#include <vector>

namespace PhoneBackup {

class Handles;
class MessageAttachments;
class MessageList;
class People;
class SmsDatabase;
class Source;
class Statement;
struct MessageBody;

/*!
    \brief Reads the messages of one conversation: their texts, files and what became of them.

    \par Cost
    One look-up per message by its number; a second one for those that are more than a text. A row
    on a damaged page costs itself alone.
*/
class MessageReader
{
public:
    MessageReader(Source &source,
                  SmsDatabase &database,
                  const Handles &handles,
                  People &people,
                  MessageAttachments &attachments);
    ~MessageReader();

    /*!
        Fills the empty \a list. The conversation must stay where it is as long as the list is used.
        \return false when a message could not be read.
    */
    bool read(const Conversation &conversation, MessageList &list);

    //! When the message with the ROWID \a row was sent; invalid when that is not known.
    QDateTime dateOf(qint64 row);

    //! Whether the message \a row was a spoken one whose sound the phone has deleted since.
    bool isExpired(qint64 row);

private:
    //! What few rows have, from a query of its own.
    struct Details;

    void prepare();
    void readDeletedParts();
    void readRow(Message &message);
    void readTexts(Message &message, Details &details);
    Details readDetails(qint64 row);
    void keepDetails(Message &message, Details &details);
    void keepReaction(Message &message, Reaction &reaction, const Details &details);
    void keepEvent(Message &message, const Details &details);
    void keepBalloon(Message &message, const Details &details);
    void keepChanges(Message &message, const Details &details, EditHistory &history);
    MessageExtras &extrasOf(Message &message);

    Source &m_source;
    SmsDatabase &m_database;
    const Handles &m_handles;
    People &m_people;
    MessageAttachments &m_attachments;
    std::unique_ptr<Statement> m_rows;
    std::unique_ptr<Statement> m_details;
    std::unique_ptr<Statement> m_dates;
    QHash<qint64, std::vector<DeletedPart>> m_deletedParts; // by message
    bool m_prepared = false;

    // Of the conversation that is being read.
    const Conversation *m_conversation = nullptr;
    MessageList *m_list = nullptr;
};

} // namespace PhoneBackup

#endif
