#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPCHAT_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPCHAT_H

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/whatsapp/WhatsappPerson.h"

#include <QDateTime>

#include <vector>

namespace PhoneBackup {

class WhatsappStore;

//! One chat as the phone lists it.
struct WhatsappChat
{
    enum class Kind : quint8 {
        Person, //!< With one person, or with the app itself.
        Group, //!< Channels, too, and what is not known yet: the identifier tells.
        List, //!< To all people of a broadcast list.
    };

    WhatsappStore *store = nullptr; //!< Where its messages are; that knows its edition, too.
    qint64 row = 0;
    Jid jid; //!< Stays the same from backup to backup.
    Kind kind = Kind::Group;
    bool isRemoved = false; //!< Deleted on the phone.
    bool isArchived = false;
    bool isHidden = false;
    QString name; //!< As the phone shows it; empty for none and for a number that people have.
    WhatsappPerson partner; //!< Who it is with, of a chat with one person.
    Jid creator; //!< Who made the group; of kind None when not known.
    QDateTime creationDate; //!< When; may be invalid.
    qint64 lastDateMs = PhoneTime::kNoMs; //!< Since 1970, UTC.
    std::vector<qint64> messages; //!< Rows, in the order of display.
    std::vector<qint64> withMedia; //!< Those of them that have a media row.

    bool isWithPerson() const { return kind == Kind::Person; }
};

//! Somebody who is or was in a group.
struct WhatsappMember
{
    WhatsappPerson person;
    bool isAdmin = false;
    bool hasLeft = false;
};

} // namespace PhoneBackup

#endif
