#ifndef SAMPLE_WHATSAPPDATABASE_H
#define SAMPLE_WHATSAPPDATABASE_H

#include "sample/Database.h"

#include <QDateTime>
#include <QHash>

namespace Sample {

//! The tables of ChatStorage.sqlite.
QByteArray whatsappTables();

//! A chat; what is left as it is was not used by it.
struct WhatsappChatRow
{
    QString jid;
    QString name;
    bool isRemoved = false;
    bool isArchived = false;
    QString creator = {}; //!< Identifier of who made the group.
    QDateTime created = {};
};

//! The file, place or card of a message.
struct WhatsappMediaRow
{
    QString path; //!< Null: never downloaded.
    QString title;
    double latitude = 0; //!< Of a picture its width.
    double longitude = 0;
    QString cardName;
    QString cardText; //!< Of a file its MIME type.
    QString preview = {}; //!< Path of its small picture.
    QByteArray metadata = {}; //!< What it answers, packed: quoteOf().
};

//! A message; what is left as it is was not used by it.
struct WhatsappRow
{
    qint64 chat = 0;
    QDateTime date;
    QString text; //!< Null: the message has none.
    int type = 0;
    int eventCode = 0;
    bool fromMe = false;
    int status = 8;
    int error = 0;
    qint64 member = 0;
    qint64 media = 0;
    qint64 parent = 0;
};

/*!
    \brief Writes WhatsApp's database of chats.

    \par Order
    Constructor, any rows, finish().
*/
class WhatsappDatabase
{
public:
    explicit WhatsappDatabase(const QString &path);

    qint64 addChat(const WhatsappChatRow &chat);
    qint64 addMember(qint64 chat, const QString &jid);
    void addChosenName(const QString &jid, const QString &name);
    qint64 addMedia(const WhatsappMediaRow &media);
    qint64 addMessage(const WhatsappRow &message);

    //! Adds somebody's reaction to \a message; an empty \a jid is the owner's. Once a message.
    void
    addReaction(qint64 message, const QString &jid, const QString &emoji, const QDateTime &date);

    //! Adds the answers to choose from of the poll \a message.
    void addOptions(qint64 message, const QStringList &options);

    //! What a media row holds of \a message, from \a jid, which it answers.
    static QByteArray quoteOf(qint64 message, const QString &jid, const QString &text);

    //! Completes the list of chats and closes. \return false when anything failed.
    bool finish();
    QString error() const { return m_database.error(); }

private:
    void addInfo(qint64 message, const QByteArray &info);

    struct Chat
    {
        QString jid;
        qint64 messages = 0;
        QDateTime last;
    };

    Database m_database;
    Statement m_insertMessage;
    Statement m_insertMedia;
    QList<Chat> m_chats; // the first one is number 1
    qint64 m_members = 0;
    qint64 m_names = 0;
    qint64 m_media = 0;
    qint64 m_messages = 0;
    qint64 m_infos = 0;
    QList<QVariant> m_values;
};

} // namespace Sample

#endif
