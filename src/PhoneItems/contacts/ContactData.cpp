#include "PhoneItems/contacts/ContactData.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/contacts/ContactOrder.h"
#include "PhoneBackup/contacts/ContactReader.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/contacts/ContactDetails.h"

namespace PhoneItems {

using namespace PhoneBackup;

using namespace Qt::StringLiterals;

ContactData::ContactData(Source &source)
    : ItemData(DataType::Contacts)
    , m_book(source.addressBook())
    , m_details(std::make_unique<ContactDetails>())
{
    if (m_book.database())
        m_reader = std::make_unique<ContactReader>(source, m_book);
    reportContactLosses(source); // the reader's first look, at labels, has met some
    m_order = contactOrder(m_book.people(), phoneLocale(source));
    for (int i = 0; i < int(m_order.size()); ++i)
        m_items.emplace_back(*this, i);
}

ContactData::~ContactData() = default;

const AddressBook::Person &ContactData::person(int index) const
{
    return m_book.people()[std::size_t(m_order[std::size_t(index)])];
}

ContactDetails *ContactData::details(int index) const
{
    if (m_current != index) {
        m_current = -1;
        Contact contact;
        if (m_reader->read(person(index), contact)) {
            m_details->show(contact, [this, index] { return m_reader->photo(person(index)); });
            m_current = index;
        }
    }
    return m_current == index ? m_details.get() : nullptr;
}

void readContacts(Source &source, DataSets &sets)
{
    sets[DataType::Contacts] = std::make_unique<ContactData>(source);
}

} // namespace PhoneItems
