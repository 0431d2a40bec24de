#ifndef PHONEBACKUP_MODEL_CONTACTS_H
#define PHONEBACKUP_MODEL_CONTACTS_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Reads data type 8, the address book.
void readContacts(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
