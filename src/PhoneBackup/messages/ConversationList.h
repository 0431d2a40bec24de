#ifndef PHONEBACKUP_MESSAGES_CONVERSATIONLIST_H
#define PHONEBACKUP_MESSAGES_CONVERSATIONLIST_H

#include "PhoneBackup/messages/Conversation.h"
#include "PhoneBackup/source/RowSet.h"

#include <QHash>
#include <QSet>

#include <memory>
#include <vector>

namespace PhoneBackup {

class Handles;
class People;
class SmsDatabase;
class Statement;

/*!
    \brief Finds out which conversations there are and which messages belong to each.

    Chats with one person or group on several services are one conversation. Every message is in
    one: what no chat claims goes to the group or person that it names, else into a conversation of
    its own.
    \par Memory
    About 8 bytes a message, and as much again while it works.
*/
class ConversationList
{
public:
    ConversationList(SmsDatabase &database, Handles &handles, People &people);

    //! The conversations that have messages, the one with the newest message first.
    std::vector<Conversation> take();

private:
    struct Chat;

    void tellMissingTables() const;
    void readChats();
    void readParticipants(std::vector<Chat> &chats) const;
    QSet<int> ownersOf(const std::vector<Chat> &chats) const;
    void place(const Chat &chat);
    int findOrAddGroup(const Chat &chat);
    int findOrAddPerson(const QString &address);
    int addConversation();
    void nameConversations();

    void readMessages();
    void readLinks();
    void readDeleted();
    void placeOrphans();
    int placeOf(const QString &room, const QString *address);
    void sortMessages();
    void findDates();
    qint64 dateOf(qint64 message);

    Conversation &at(int index) { return m_conversations[std::size_t(index)]; }

    SmsDatabase &m_database;
    Handles &m_handles;
    People &m_people;
    std::vector<Conversation> m_conversations;
    QHash<qint64, int> m_ofChat;
    QHash<QString, int> m_ofGroup; // by what identifies a group
    QHash<int, int> m_ofPerson;
    std::vector<bool> m_undated; // of each conversation: some link does not tell the date
    int m_nowhere = -1; // the conversation of messages that name none

    RowSet m_rows;
    std::vector<bool> m_linked; // of each row
    QHash<qint64, qint64> m_deletedElsewhere; // when messages of chats that are gone were deleted
    std::unique_ptr<Statement> m_dateQuery;
};

} // namespace PhoneBackup

#endif
