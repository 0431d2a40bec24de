#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPREADER_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPREADER_H

#include "PhoneBackup/whatsapp/WhatsappChatList.h"
#include "PhoneBackup/whatsapp/WhatsappInfos.h"
#include "PhoneBackup/whatsapp/WhatsappMedia.h"
#include "PhoneBackup/whatsapp/WhatsappRelations.h"

#include <QDateTime>

#include <optional>

namespace PhoneBackup {

class WhatsappContent;
class WhatsappMessage;

//! A file that was sent in a message.
struct WhatsappSentFile
{
    qint64 storedType = 0;
    QDateTime date;
    WhatsappMediaItem item;
};

/*!
    \brief Reads the messages of one chat: what they are, their texts and files.

    \par Cost
    One look-up a message by its number; others for those that have a file, an author that was not
    met before, reactions, or a type that is more than a text. A row on a damaged page costs itself
    alone.
*/
class WhatsappReader
{
public:
    //! \a facts are borrowed: they need to be there when messages are read.
    WhatsappReader(Source &source,
                   WhatsappDatabase &database,
                   const WhatsappNames &names,
                   WhatsappMedia &media,
                   const WhatsappChatList::Facts &facts);
    ~WhatsappReader();

    //! Fills the empty \a content. \return false when there are messages and none could be read.
    bool read(const WhatsappChat &chat, WhatsappContent &content);

    //! What was sent in \a message; the item's row is 0 when it has no file.
    WhatsappSentFile file(qint64 message);

private:
    struct Author
    {
        Jid jid;
        QString name; // empty when nobody tells one
    };
    struct Parent;

    void prepare();
    bool step(Statement &statement);
    bool readRow(const WhatsappChat &chat, WhatsappMessage &message);
    void setCreation(const WhatsappChat &chat, WhatsappMessage &message) const;
    void readReactions(const WhatsappChat &chat, WhatsappMessage &message);
    bool setContent(const WhatsappChat &chat, WhatsappMessage &message);
    void setEvent(const WhatsappChat &chat, WhatsappMessage &message, bool isNotice);
    bool isSentDone() const;
    QString documentName(const QString &text) const;
    QString caption(const QString &text) const;
    QString linkText();
    Author author();
    const Author &member(qint64 row);
    QString person(const Jid &jid) const;
    bool isOwner(const Jid &jid) const;
    QString nameOf(const Jid &jid) const;
    QString withNames(const QString &text) const;
    Parent parent(qint64 row);

    Source &m_source;
    WhatsappDatabase &m_database;
    const WhatsappNames &m_names;
    WhatsappMedia &m_media;
    const WhatsappChatList::Facts &m_facts;
    bool m_prepared = false;
    std::unique_ptr<Statement> m_rows;
    std::unique_ptr<Statement> m_files;
    std::unique_ptr<Statement> m_members;
    std::unique_ptr<Statement> m_parents;
    std::unique_ptr<Statement> m_links;
    std::optional<RowsOfMessages> m_linkRows;
    std::optional<WhatsappInfos> m_infos;
    QHash<qint64, Author> m_authors; // by the row of the member
    WhatsappRelations m_relations; // of the chat that is being read
    bool m_tellsCreation = false; // a message of it says who made the group
    // Of the message that is being read.
    qint64 m_row = 0;
    WhatsappMediaItem m_item;
};

} // namespace PhoneBackup

#endif
