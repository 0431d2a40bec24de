#ifndef PHONEITEMS_WHATSAPP_WHATSAPPWORDS_H
#define PHONEITEMS_WHATSAPP_WHATSAPPWORDS_H

#include "PhoneBackup/whatsapp/WhatsappChat.h"
#include "PhoneBackup/whatsapp/WhatsappMessage.h"
#include "message/BkWhatsappType.h"

/*!
    The words for what WhatsApp's messages hold besides their text, in the user's language.
*/
namespace PhoneItems::WhatsappWords {

//! What a person is called, the phone's owner like others.
QString name(const PhoneBackup::WhatsappPerson &person);

//! What a chat is called.
QString title(const PhoneBackup::WhatsappChat &chat);

//! Text of what happened to a chat.
QString event(const PhoneBackup::WhatsappEvent &event);

//! A word for a picture, video or audio message that has no text; empty for other type codes.
QString mediaKind(int code);

//! What an answered message said when it was answered, else a word for what it was.
QString quoted(const PhoneBackup::WhatsappQuote &quote);

//! The text of a message, which is no event.
QString text(const PhoneBackup::WhatsappMessage &message);

//! The line that tells how often a channel's readers chose which emoji.
QString reactionCounts(const std::vector<PhoneBackup::WhatsappReactionCount> &counts);

//! The line below a film of which only a small picture is there.
QString previewOfVideo();

//! Who reacted: "You" for the owner.
QString reactor(const PhoneBackup::WhatsappPerson &person, bool inGroup);

} // namespace PhoneItems::WhatsappWords

#endif
