#ifndef SAMPLE_MESSAGEDATABASE_H
#define SAMPLE_MESSAGEDATABASE_H

#include "sample/Database.h"
#include "sample/TypedStream.h"

#include <QDateTime>

#include <map>
#include <optional>

namespace Sample {

//! In which columns a message's text stands.
enum class TextStore { Plain, Attributed, Both };

//! A row of the table of messages; what is left as it is was not used by that message.
struct MessageRow
{
    QString guid;
    QString text; //!< Null: the message has none.
    QList<TextRun> runs;
    TextStore store = TextStore::Both;
    QString subject;
    qint64 handle = 0;
    QString service;
    QDateTime date;
    bool fromMe = false;

    int error = 0;
    bool sent = true; //!< With fromMe; an incoming message was received.
    bool delivered = true;
    bool read = true;
    bool downgraded = false;

    int itemType = 0;
    int groupAction = 0;
    qint64 otherHandle = 0;
    QString groupTitle;

    QString associatedGuid;
    int associatedType = 0;
    QString associatedEmoji;
    QString threadOriginator;

    QString balloon;
    QByteArray payload;
    QByteArray summary;
    QDateTime edited;
    QDateTime retracted;

    QString roomName;
    bool isAudio = false;
    bool isExpired = false; //!< The sound was removed after it was played.
    bool hasAttachments = false;
};

//! A conversation on one service.
struct ChatRow
{
    QString identifier; //!< The address, or "chat" and a number.
    QString service;
    bool isGroup = false;
    QString displayName;
    QString groupId;
    QList<qint64> handles;
};

//! A file sent in a message.
struct AttachmentRow
{
    QString guid;
    QString path; //!< On the phone; null: never fetched.
    QString name;
    QString mimeType;
    QString uti;
    qint64 sizeBytes = 0;
    bool isHidden = false;
};

/*!
    \brief Writes the phone's database of messages.

    \par Order
    Constructor, any rows, finish().
    \par Releases
    A column that the release lacks stays away, and with it what it would say.
*/
class MessageDatabase
{
public:
    MessageDatabase(const QString &path, int iosRelease);

    int iosRelease() const { return m_iosRelease; }

    //! The number of the row of \a address on \a service, which is made when it is not there.
    qint64 addHandle(const QString &address, const QString &service);
    qint64 addChat(const ChatRow &chat);
    qint64 addMessage(const MessageRow &message);
    void addToChat(qint64 chat, qint64 message, const QDateTime &date);
    //! As addToChat() for a message that can still be brought back. From iOS 16 on only.
    void addDeletedToChat(qint64 chat, qint64 message, const QDateTime &deleted);
    void addAttachment(qint64 message, const AttachmentRow &attachment, const QDateTime &date);

    bool finish();
    QString error() const { return m_database.error(); }

private:
    void prepareMessages();
    //! Runs one of few statements, which stays prepared.
    void run(const char *sql, const QList<QVariant> &values);
    QVariant stamp(const QDateTime &moment) const;

    const int m_iosRelease;
    Database m_database;
    std::map<const char *, Statement> m_statements;
    std::optional<Statement> m_insertMessage;
    std::optional<Statement> m_insertJoin;
    QList<QVariant> m_values;
    std::map<std::pair<QString, QString>, qint64> m_handles;
    qint64 m_chats = 0;
    qint64 m_messages = 0;
    qint64 m_attachments = 0;
};

} // namespace Sample

#endif
