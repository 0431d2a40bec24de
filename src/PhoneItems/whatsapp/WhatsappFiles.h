#ifndef PHONEITEMS_WHATSAPP_WHATSAPPFILES_H
#define PHONEITEMS_WHATSAPP_WHATSAPPFILES_H

#include "PhoneBackup/whatsapp/WhatsappMessage.h"
#include "PhoneItems/DataTypes.h"

#include <QDateTime>

namespace PhoneItems {

//! Reads data type 12: the files sent in WhatsApp's chats, in a group for each chat.
void readWhatsappFiles(PhoneBackup::Source &source, DataSets &sets);

/*!
    The name of the copy of a file that a message of \a kind sent at \a date: the \a title of a
    document, of others the date and the kind. Empty for what is a file only by the way.
*/
QString whatsappFileName(PhoneBackup::WhatsappMessage::Kind kind,
                         const QString &title,
                         const QDateTime &date,
                         const QString &extension);

} // namespace PhoneItems

#endif
