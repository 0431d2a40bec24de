#ifndef PHONEBACKUP_MODEL_WHATSAPPFILES_H
#define PHONEBACKUP_MODEL_WHATSAPPFILES_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Reads data type 12: the files sent in WhatsApp's chats, in a group for each chat.
void readWhatsappFiles(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
