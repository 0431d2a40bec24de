#ifndef SAMPLE_MESSAGESCRIPT_H
#define SAMPLE_MESSAGESCRIPT_H

#include "sample/MessageDatabase.h"

namespace Sample {

class BackupWriter;
class Random;

//! A file to be sent in a message.
struct SentFile
{
    enum class Where {
        InBackup,
        Missing, //!< The database names a file that the backup does not hold.
        NeverFetched, //!< The phone never had more than the name.
    };

    QString name;
    QString mimeType;
    QString uti;
    QByteArray content;
    Where where = Where::InBackup;
    bool isHidden = false;
};

/*!
    \brief Plays one conversation after the other into the database, like a script for a stage.

    Everybody is a handle, the owner of the phone is 0. Each line takes the clock a little further.
    \par Releases
    What an old release does not know is left out, or said as its people had to say it.
*/
class MessageScript
{
public:
    MessageScript(MessageDatabase &database, BackupWriter &writer, Random &random);

    //! What follows goes into \a chat, on \a service, from \a start on.
    void enter(qint64 chat, const QString &service, const QDateTime &start);
    void wait(int minutes);
    QDateTime now() const { return m_now; }

    //! What follows is in no conversation, or among the recently deleted.
    void leaveChat() { m_chat = 0; }
    void startDeleting(const QDateTime &deleted) { m_deleted = deleted; }
    void stopDeleting() { m_deleted = QDateTime(); }

    //! A line with what \a handle says now; for put() with more in it.
    MessageRow line(qint64 handle, const QString &text) const;
    //! \return the message's identifier.
    QString put(MessageRow row, const QList<SentFile> &files = {});

    QString say(qint64 handle, const QString &text, TextStore store = TextStore::Both);
    QString reply(qint64 handle, const QString &to, const QString &text);
    //! The files stand where \a text has its U+FFFC.
    QString send(qint64 handle, const QString &text, const QList<SentFile> &files);
    //! \a kind counts from 0: love, like, dislike, laugh, emphasis, question, emoji.
    void react(qint64 handle, int kind, const QString &to, const QString &emoji = {});
    void withdraw(qint64 handle, int kind, const QString &to);
    //! Says \a texts, each in place of the one before.
    QString edit(qint64 handle, const QStringList &texts);
    QString unsend(qint64 handle);
    void event(qint64 handle, int itemType, int action, qint64 other, const QString &title = {});

private:
    void addReaction(qint64 handle, int type, const QString &to, const QString &emoji);
    AttachmentRow store(const SentFile &file);

    MessageDatabase &m_database;
    BackupWriter &m_writer;
    Random &m_random;
    qint64 m_chat = 0;
    QString m_service;
    QDateTime m_now;
    QDateTime m_deleted;
};

} // namespace Sample

#endif
