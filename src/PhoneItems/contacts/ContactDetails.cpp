#include "PhoneItems/contacts/ContactDetails.h"

namespace PhoneBackup {

void ContactDetails::clear()
{
    m_fields = {};
    m_readPhoto = {};
    m_list.clear();
    m_properties.clear();
}

} // namespace PhoneBackup
