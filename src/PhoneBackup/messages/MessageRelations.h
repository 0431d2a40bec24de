#ifndef PHONEBACKUP_MESSAGES_MESSAGERELATIONS_H
#define PHONEBACKUP_MESSAGES_MESSAGERELATIONS_H

#include "PhoneBackup/messages/Poll.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <optional>
#include <vector>

namespace PhoneBackup {

class ConversationContent;
class Message;

/*!
    \brief What the messages of one conversation have to do with each other: reactions, answers,
    and polls with their votes.

    They name the other message by its identifier, of which a hash is kept.
*/
class MessageRelations
{
public:
    //! A reaction, or one that was taken back.
    struct Reaction
    {
        Message *message;
        qint64 type;
        QString target; //!< As the row names it.
        QString emoji;
        QString who;
        int person; //!< The same for all addresses of who it is from.
        std::optional<QStringList> vote; //!< What it chose, see Poll::readVote().
    };

    static constexpr qint64 kVote = 4000; //!< The type of a vote on a poll.

    //! Whether a row of this \a type is a reaction or a vote, and no message of its own.
    static bool isReaction(qint64 type);

    static quint64 hashOf(QByteArrayView guid);

    void clear();

    void addReaction(const Reaction &reaction);

    //! \a part names the part of the answered message, in the form "part:location:length".
    void addReply(Message &message, QByteArrayView target, const QString &part);

    /*!
        A message that shows a \a poll. \a target is what its row names: nothing, itself, or the
        poll to which it added an option.
    */
    void addPoll(Message &message, const Poll &poll, const QString &target);

    /*!
        Gives each poll its last options and hides the messages that added them. Writes the lines
        of reactions, and hides those that a later one of the same person took the place of, or
        took back; then puts above each answer what it answers.
    */
    void apply(ConversationContent &content);

private:
    struct Known
    {
        Message *message;
        quint64 target;
        int part;
        qint64 type;
        QString emoji;
        QString who;
        int person;
        std::optional<QStringList> vote;
    };
    struct KnownPoll
    {
        Message *message;
        quint64 target;
        Poll poll;
        QHash<QString, qsizetype> places; //!< Of the options; there may be many, and many votes.
    };
    struct Reply
    {
        Message *message;
        quint64 target;
        int part;
    };

    void joinPolls();
    QString lineOf(const Known &reaction, const QString &quoted) const;
    void findTargets(ConversationContent &content);
    void hideSuperseded();
    QString quote(quint64 target, int part) const;

    std::vector<Known> m_reactions;
    std::vector<Reply> m_replies;
    std::vector<KnownPoll> m_polls;
    QHash<quint64, std::size_t> m_pollOf; // by what names it: its place in m_polls
    QHash<quint64, const Message *> m_targets;
};

} // namespace PhoneBackup

#endif
