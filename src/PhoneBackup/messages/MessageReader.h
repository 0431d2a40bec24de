#ifndef PHONEBACKUP_MESSAGES_MESSAGEREADER_H
#define PHONEBACKUP_MESSAGES_MESSAGEREADER_H

#include "PhoneBackup/messages/Conversation.h"
#include "PhoneBackup/messages/MessageRelations.h"
#include "PhoneItems/messages/ConversationContent.h"

#include <QHash>
#include <QMap>
#include <QSet>

#include <memory>

namespace PhoneBackup {

struct EditHistory;
class Handles;
class MessageAttachments;
class People;
class SmsDatabase;
class Source;
class Statement;

/*!
    \brief Reads the messages of one conversation: their texts, files and marks.

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
        Fills the empty \a content. The conversation must stay where it is as long as the content
        is used. \return false when there are messages and none could be read.
    */
    bool read(const Conversation &conversation, ConversationContent &content);

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
    Details readDetails(qint64 row);
    void setSpecialText(Message &message, const Details &details, const QString &transcription);
    void addReaction(Message &message, const Details &details);
    void showBalloon(Message &message, const Details &details);
    QString eventLine(const Message &message, const Details &details) const;
    void tellLostText(Message &message, const Details &details, const EditHistory &history);
    void mark(Message &message, const Details &details, const EditHistory &history);
    void keepForQuotes(Message &message);
    void append(Message &message, const QString &text, QChar separator);
    QString nameOf(const Message &message) const;
    void nameParticipants();

    Source &m_source;
    SmsDatabase &m_database;
    const Handles &m_handles;
    People &m_people;
    MessageAttachments &m_attachments;
    std::unique_ptr<Statement> m_rows;
    std::unique_ptr<Statement> m_details;
    std::unique_ptr<Statement> m_dates;
    QHash<qint64, QMap<qint64, QStringList>> m_deletedParts; // by message, then number of the part
    bool m_prepared = false;

    // Of the conversation that is being read.
    const Conversation *m_conversation = nullptr;
    ConversationContent *m_content = nullptr;
    MessageRelations m_relations;
    QSet<const QString *> m_senders;
};

} // namespace PhoneBackup

#endif
