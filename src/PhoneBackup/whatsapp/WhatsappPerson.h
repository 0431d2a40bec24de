#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPPERSON_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPPERSON_H

#include "PhoneBackup/source/Jid.h"

namespace PhoneBackup {

//! Somebody in WhatsApp, as far as the backup tells who that is.
struct WhatsappPerson
{
    enum class Who : quint8 {
        Nobody, //!< The app names nobody.
        Owner, //!< The phone's owner.
        Other, //!< Somebody else; all that follows may be empty.
    };

    Who who = Who::Nobody;
    Jid jid;
    QString name; //!< By the phone's contacts, the app's own ones or the person's own choice.
    QString number; //!< With "+".

    bool isOwner() const { return who == Who::Owner; }

    //! The name, else the number; empty when neither is known.
    const QString &nameOrNumber() const { return name.isEmpty() ? number : name; }
};

} // namespace PhoneBackup

#endif
