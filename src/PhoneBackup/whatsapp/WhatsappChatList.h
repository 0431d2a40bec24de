#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPCHATLIST_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPCHATLIST_H

#include "PhoneBackup/whatsapp/WhatsappChat.h"

#include <QHash>

namespace PhoneBackup {

class RowsOfMessages;
class Source;
class WhatsappDatabase;
class WhatsappNames;

/*!
    \brief Finds out which chats there are and which messages belong to each.

    Status posts are no chats; a message whose chat is gone belongs to none. Who the phone's owner
    is, the messages tell, too: the names learn it.
    \par Memory
    8 bytes a message that the filter accepts, and three times as much while it works.
*/
class WhatsappChatList
{
public:
    WhatsappChatList(Source &source,
                     WhatsappDatabase &database,
                     WhatsappNames &names,
                     const RowsOfMessages &media);
    ~WhatsappChatList();

    //! The chats with messages that the filter accepts, in no order.
    std::vector<WhatsappChat> take();

    //! Whether the state of sent messages is kept up at all; known once they were taken.
    bool keepsStatus() const { return m_keepsStatus; }

private:
    struct Entry
    {
        qint64 sort;
        qint64 dateMs;
        qint64 row;
        bool hasMedia;
    };
    struct Session;

    void readSessions();
    void readCreators();
    void readMembers();
    void readMessages();
    static void setKind(Session &session, qint64 storedType);
    Session *sessionOf(qint64 row, QByteArrayView jid);
    void findPartner(Session &session);
    bool isWanted(const Session &session) const;
    static void sortEntries(std::vector<Entry> &entries, WhatsappChat &chat);

    Source &m_source;
    WhatsappDatabase &m_database;
    WhatsappNames &m_names;
    const RowsOfMessages &m_media;
    std::vector<Session> m_sessions;
    QHash<qint64, int> m_bySessionRow;
    QHash<qint64, int> m_byGroupRow;
    bool m_sessionsAreComplete = false;
    bool m_keepsStatus = false;
};

} // namespace PhoneBackup

#endif
