#ifndef PHONEITEMS_WHATSAPP_WHATSAPPWORDS_H
#define PHONEITEMS_WHATSAPP_WHATSAPPWORDS_H

#include <QString>

namespace PhoneBackup {

struct WhatsappMediaItem;

/*!
    The words for what WhatsApp's messages hold besides their text, in the user's language.
*/
namespace WhatsappWords {

//! What happened, and to whom.
struct Event
{
    qint64 code = 0; //!< As it is stored.
    QString who; //!< Who did it; empty when not known.
    bool byOwner = false; //!< The phone's owner did it.
    QString text; //!< What the row says to a person, identifiers replaced by names.
    QString stored; //!< What the row holds: text or data.
};

//! Text of what happened in a group.
QString groupEvent(const Event &event);

//! Text of the app's own notices.
QString notice(const Event &event);

//! \a text when a person can read it; empty for what is data to the app.
QString readable(const QString &text);

//! A word for a picture, video or audio message that has no text; empty for other type codes.
QString mediaKind(int code);

//! The people of one or several contact cards with their numbers, a line each.
QString contactCards(const WhatsappMediaItem &item);

//! A place: its name, address and coordinates with a link to a map. \a comment stands above.
QString location(const WhatsappMediaItem &item, const QString &comment);

} // namespace WhatsappWords

} // namespace PhoneBackup

#endif
