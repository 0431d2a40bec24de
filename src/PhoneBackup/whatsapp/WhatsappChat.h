#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPCHAT_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPCHAT_H

#include "PhoneBackup/source/Jid.h"
#include "PhoneBackup/source/PhoneTime.h"

#include <QDateTime>

#include <vector>

namespace PhoneBackup {

class WhatsappStore;

//! One chat as the phone lists it.
struct WhatsappChat
{
    WhatsappStore *store = nullptr; //!< Where its messages are.
    qint64 row = 0;
    Jid jid;
    bool isPrivate = false; //!< With one person.
    bool isList = false; //!< To all people of a broadcast list.
    bool isRemoved = false; //!< Deleted on the phone.
    QString name;
    QString contact; //!< Name of the person it is with.
    QString number; //!< Phone number of the person it is with.
    Jid creator; //!< Who made the group; of kind None when not known.
    QDateTime creationDate; //!< When; may be invalid.
    qint64 lastDateMs = PhoneTime::kNoMs; //!< Since 1970, UTC.
    std::vector<qint64> messages; //!< Rows, in the order of display.
    std::vector<qint64> withMedia; //!< Those of them that have a media row.
};

} // namespace PhoneBackup

#endif
