#ifndef PHONEBACKUP_CONTACTS_CONTACTS_H
#define PHONEBACKUP_CONTACTS_CONTACTS_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Reads data type 8, the address book.
void readContacts(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
