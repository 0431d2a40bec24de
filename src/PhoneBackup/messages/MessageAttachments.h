#ifndef PHONEBACKUP_MESSAGES_MESSAGEATTACHMENTS_H
#define PHONEBACKUP_MESSAGES_MESSAGEATTACHMENTS_H

#include "PhoneBackup/messages/MessageAttachment.h"

#include <QList>

#include <memory>
#include <vector>

namespace PhoneBackup {

class Source;
class SmsDatabase;
class Statement;

/*!
    \brief Which files were sent in which messages.

    Before system version 6 only iMessages have such rows, in a table of another name that holds the
    links as well.

    \par Cost
    The links are read at once, 16 bytes each; an attachment when it is asked for.
*/
class MessageAttachments
{
public:
    MessageAttachments(Source &source, SmsDatabase &database);
    ~MessageAttachments();

    //! The attachments of \a message in their order; a link to a missing one is left out.
    QList<MessageAttachment> of(qint64 message);

    //! The ROWIDs of all attachments.
    QList<qint64> rows();

    //! The attachment \a row; its row is 0 when there is none.
    MessageAttachment read(qint64 row);

    /*!
        Adds what only the content of a file tells: how long a recording plays, who is on a contact
        card, where a place is. \a isSpoken: its message was.
    */
    void readContent(MessageAttachment &attachment, bool isSpoken);

private:
    //! A row of the table that links the two.
    struct Link
    {
        qint64 message;
        qint64 attachment;
    };

    void readLinks(const QString &table, const QString &message, const QString &attachment);
    MessageAttachment::Kind kindOf(const MessageAttachment &attachment, const QString &uti) const;

    Source &m_source;
    SmsDatabase &m_database;
    QString m_table;
    std::vector<Link> m_links; // by message, then in their order
    std::unique_ptr<Statement> m_query;
};

} // namespace PhoneBackup

#endif
