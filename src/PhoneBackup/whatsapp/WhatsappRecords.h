#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPRECORDS_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPRECORDS_H

#include "PhoneBackup/source/Jid.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringList>

#include <vector>

namespace PhoneBackup {

//! What a message answers.
struct WhatsappQuote
{
    QByteArray id; //!< Of the message that it answers; empty: it answers none.
    QString text; //!< What that message said when it was answered; empty when not known.
};

//! A reaction to a message.
struct WhatsappReaction
{
    bool byOwner = false;
    Jid who; //!< Of kind None where the app does not say; not used when it is the owner's.
    QString emoji; //!< Empty: withdrawn.
    QDateTime date; //!< UTC; may be invalid.
};

/*!
    The packed values in columns of WhatsApp's messages.

    \par Bytes
    Untrusted. What is damaged or not known is left out. Time is linear.
*/
namespace WhatsappRecords {

//! The answered message in the \a metadata of a media row.
WhatsappQuote quote(QByteArrayView metadata);

//! Whether \a info, of a row of receipts, may hold reactions or a poll.
bool hasMore(QByteArrayView info);

//! The reactions in \a info as they are stored; there may be several of one person.
std::vector<WhatsappReaction> reactions(QByteArrayView info);

//! How often a channel's readers chose which emoji, "👍 12".
QStringList reactionCounts(QByteArrayView info);

//! The question of a poll in \a info; empty when there is none.
QString pollQuestion(QByteArrayView info);

//! The answers to choose from of a poll in \a info, in their order.
QStringList pollOptions(QByteArrayView info);

} // namespace WhatsappRecords

} // namespace PhoneBackup

#endif
