#ifndef PHONEBACKUP_MESSAGES_MESSAGERELATIONS_H
#define PHONEBACKUP_MESSAGES_MESSAGERELATIONS_H

#include "PhoneBackup/messages/MessageId.h"

#include <QHash>

#include <deque>
#include <vector>

namespace PhoneBackup {

struct Message;
struct MessageExtras;

/*!
    \brief Finds out what the messages of one conversation have to do with each other: reactions,
    answers, and polls with their votes. They name the other message by its GUID.
*/
class MessageRelations
{
public:
    //! \a messages are in their order, the oldest first; \a extras are those that they have.
    MessageRelations(std::deque<Message> &messages, std::deque<MessageExtras> &extras);

    //! Writes what it finds into the extras of the messages.
    void resolve();

private:
    void collect();
    void joinPolls();
    void findTargets();
    void supersede();
    void countVote(qsizetype place);
    qsizetype target(const QString &guid) const;

    std::deque<Message> &m_messages;
    std::deque<MessageExtras> &m_extras;
    std::vector<qsizetype> m_reactions; // places of messages
    std::vector<qsizetype> m_answers;
    std::vector<qsizetype> m_polls;
    QHash<MessageId, qsizetype> m_pollOf; // by what names it: the place of the poll as it is last
    QHash<MessageId, qsizetype> m_targets;
    QHash<qsizetype, QHash<QString, qsizetype>> m_options; // of polls that somebody voted on
};

} // namespace PhoneBackup

#endif
