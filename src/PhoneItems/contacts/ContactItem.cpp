#include "PhoneItems/contacts/ContactItem.h"

#include "PhoneItems/contacts/ContactData.h"
#include "PhoneItems/contacts/ContactDetails.h"

namespace PhoneItems {

ContactItem::ContactItem(const ContactData &data, int index)
    : m_data(data)
    , m_index(index)
{
}

QString ContactItem::value(int index) const
{
    return index == 0 ? m_data.person(m_index).name : QString();
}

bool ContactItem::flag(int /*index*/) const
{
    return false; // a contact that was deleted is gone from the address book
}

qint64 ContactItem::id() const
{
    return m_data.person(m_index).cards.front();
}

QString ContactItem::source() const
{
    return PhoneBackup::AddressBook::place();
}

BkContactPrivate *ContactItem::detailContent() const
{
    return m_data.details(m_index);
}

} // namespace PhoneItems
