#ifndef PHONEITEMS_WHATSAPP_WHATSAPPRELATIONS_H
#define PHONEITEMS_WHATSAPP_WHATSAPPRELATIONS_H

#include <QByteArrayView>
#include <QDateTime>
#include <QHash>
#include <QString>

#include <vector>

namespace PhoneItems {

class WhatsappContent;
class WhatsappLine;

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
        const WhatsappLine *message;
        bool byOwner;
        QString who; //!< Their name.
        QString emoji;
        QDateTime date; //!< May be invalid.
    };

    static quint64 hashOf(QByteArrayView id);

    //! Adds a reaction. Called in the order of the messages.
    void addReaction(const Reaction &reaction) { m_reactions.push_back(reaction); }

    //! Adds an answer to the message \a id, whose text was \a quotedText.
    void addAnswer(WhatsappLine &message, QByteArrayView id, const QString &quotedText);

    /*!
        Puts above each answer what it answers, and adds a line for each reaction at its time.
        \a nameSenders: whether the lines of others tell who they are from, as in groups.
    */
    void apply(WhatsappContent &content, bool nameSenders);

private:
    struct Answer
    {
        WhatsappLine *message;
        quint64 target;
        QString quotedText; // as the answer has it
    };

    void findTargets(const WhatsappContent &content);
    QString quote(const Answer &answer) const;

    std::vector<Reaction> m_reactions;
    std::vector<Answer> m_answers;
    QHash<quint64, const WhatsappLine *> m_targets;
};

} // namespace PhoneItems

#endif
