#ifndef PHONEBACKUP_MESSAGES_MESSAGEATTACHMENTS_H
#define PHONEBACKUP_MESSAGES_MESSAGEATTACHMENTS_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QList>
#include <QString>

#include <memory>
#include <vector>

namespace PhoneBackup {

class Source;
class SmsDatabase;
class Statement;

//! A file that was sent in a message, as the message database tells of it.
struct MessageAttachment
{
    enum class Kind { Picture, Video, Audio, Contact, Location, Other };

    //! The kind of a file that has the type \a mimeType and no name.
    static Kind kindOfType(const QString &mimeType);

    qint64 row = 0;
    QString guid;
    QString path; //!< On the phone; empty when it was never downloaded.
    QString name; //!< What it was called when it was sent, else the last part of its path.
    QString mimeType; //!< In lower case; as the sender said, which may be wrong.
    qint64 created = 0; //!< Seconds since 2001, 0 for none.
    bool isForPeople = true; //!< false: part of a link's or an app's balloon, or hidden.
    Kind kind = Kind::Other;
    FileIndex::Row file = FileIndex::kNone; //!< The file or folder; kNone when it is missing.
};

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
