#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPPACKED_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPPACKED_H

#include "PhoneBackup/whatsapp/WhatsappDetails.h"

#include <QByteArrayView>

namespace PhoneBackup {

/*!
    The packed values in columns of WhatsApp's messages. People are given by their identifiers; who
    they are is still to be found.

    \par Bytes
    Untrusted. What is damaged or not known is left out. Time is linear.
*/
namespace WhatsappPacked {

//! Puts into \a details what the \a metadata of a media row tells.
void readMetadata(QByteArrayView metadata, WhatsappDetails &details);

//! Whether \a info, of a row of receipts, may hold reactions or a poll.
bool hasMore(QByteArrayView info);

//! The reactions in \a info as they are stored; there may be several of one person, and withdrawn
//! ones, which have no emoji.
std::vector<WhatsappReaction> reactions(QByteArrayView info);

//! How often a channel's readers chose which emoji.
std::vector<WhatsappReactionCount> reactionCounts(QByteArrayView info);

//! The poll in \a info; none when there is none.
std::optional<WhatsappPoll> poll(QByteArrayView info);

} // namespace WhatsappPacked

} // namespace PhoneBackup

#endif
