#include "PhoneBackup/contacts/Contacts.h"

#include "PhoneBackup/contacts/ContactReader.h"
#include "PhoneItems/contacts/ContactData.h"

namespace PhoneBackup {

void readContacts(Source &source, DataSets &sets)
{
    sets[ContactReader::kContacts] = std::make_unique<ContactData>(source);
}

} // namespace PhoneBackup
