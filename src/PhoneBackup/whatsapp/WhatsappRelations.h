#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPRELATIONS_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPRELATIONS_H

#include <QByteArrayView>
#include <QDateTime>
#include <QHash>
#include <QString>

#include <vector>

namespace PhoneBackup {

class WhatsappContent;
class WhatsappMessage;
struct WhatsappQuote;

/*!
    \brief What the messages of one chat have to do with each other: reactions and answers.

    Of the identifiers by which answers name a message, hashes are kept.
*/
class WhatsappRelations
{
public:
    //! Somebody's reaction to a message.
    struct Reaction
    {
        const WhatsappMessage *message;
        bool byOwner;
        QString person; //!< Equal for the same person, under whichever identifier.
        QString who; //!< Their name.
        QString emoji; //!< Empty: withdrawn.
        QDateTime date;
    };

    static quint64 hashOf(QByteArrayView id);

    void clear();

    //! Adds the reactions to one message; the last one of each person counts. Called in the order
    //! of the messages.
    void addReactions(std::vector<Reaction> reactions);

    void addAnswer(WhatsappMessage &message, const WhatsappQuote &quote);

    /*!
        Puts above each answer what it answers, and adds a line for each reaction at its time.
        \a nameSenders: whether the lines of others tell who they are from, as in groups.
    */
    void apply(WhatsappContent &content, bool nameSenders);

private:
    struct Answer
    {
        WhatsappMessage *message;
        quint64 target;
        QString quotedText; // as the answer has it
    };

    void findTargets(const WhatsappContent &content);
    QString quote(const Answer &answer) const;

    std::vector<Reaction> m_reactions;
    std::vector<Answer> m_answers;
    QHash<quint64, const WhatsappMessage *> m_targets;
};

} // namespace PhoneBackup

#endif
