#ifndef PHONEBACKUP_MODEL_MESSAGERELATIONS_H
#define PHONEBACKUP_MODEL_MESSAGERELATIONS_H

#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <vector>

namespace PhoneBackup {

class ConversationContent;
class Message;

/*!
    \brief What the messages of one conversation have to do with each other: reactions and answers.

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
    };

    static quint64 hashOf(QByteArrayView guid);

    void clear();

    void addReaction(const Reaction &reaction);

    //! \a part names the part of the answered message, in the form "part:location:length".
    void addReply(Message &message, QByteArrayView target, const QString &part);

    /*!
        Writes the lines of reactions, and hides those that a later one of the same person took the
        place of, or took back; then puts above each answer what it answers.
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
    };
    struct Reply
    {
        Message *message;
        quint64 target;
        int part;
    };

    void findTargets(ConversationContent &content);
    void hideSuperseded();
    QString quote(quint64 target, int part) const;

    std::vector<Known> m_reactions;
    std::vector<Reply> m_replies;
    QHash<quint64, const Message *> m_targets;
};

} // namespace PhoneBackup

#endif
