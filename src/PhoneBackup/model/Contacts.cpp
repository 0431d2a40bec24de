#include "model/Contacts.h"

#include "model/ContactData.h"
#include "model/ContactReader.h"

namespace PhoneBackup {

void readContacts(Source &source, DataSets &sets)
{
    sets[ContactReader::kContacts] = std::make_unique<ContactData>(source);
}

} // namespace PhoneBackup
