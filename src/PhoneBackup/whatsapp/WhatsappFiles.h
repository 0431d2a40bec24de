#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPFILES_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPFILES_H

#include "PhoneItems/DataTypes.h"

#include <QDateTime>

namespace PhoneBackup {

//! Reads data type 12: the files sent in WhatsApp's chats, in a group for each chat.
void readWhatsappFiles(Source &source, DataSets &sets);

/*!
    The name of the copy of a file that a message of the app's type \a storedType sent at \a date:
   the \a title of a document, of others the date and the kind. Empty for what is a file only by the
   way.
*/
QString whatsappFileName(qint64 storedType,
                         const QString &title,
                         const QDateTime &date,
                         const QString &extension);

} // namespace PhoneBackup

#endif
