#ifndef PHONEITEMS_CONTACTS_CONTACTDATA_H
#define PHONEITEMS_CONTACTS_CONTACTDATA_H

#include "PhoneBackup/source/AddressBook.h"
#include "PhoneItems/DataTypes.h"
#include "PhoneItems/contacts/ContactItem.h"
#include "PhoneItems/shared/ItemData.h"
#include "contact/BkContactData.h"

#include <memory>
#include <vector>

namespace PhoneBackup {
class ContactReader;
class Source;
} // namespace PhoneBackup

namespace PhoneItems {

class ContactDetails;

/*!
    \brief Data type 8: the people of the address book, by name as the phone lists them; all of them
    are selected.

    \par Memory
    A light object a contact, and the details of the one that was asked for last.
    \par Owner
    The source is borrowed and must outlive the set.
*/
class ContactData final : public ItemData<ContactItem, BkContactData>
{
public:
    explicit ContactData(PhoneBackup::Source &source);
    ~ContactData() override;

    const PhoneBackup::AddressBook::Person &person(int index) const;

    //! What is known of a contact, valid until another's is asked for; null when that cannot be
    //! read.
    ContactDetails *details(int index) const;

private:
    const PhoneBackup::AddressBook &m_book;
    std::unique_ptr<PhoneBackup::ContactReader> m_reader; // none without a database
    std::unique_ptr<ContactDetails> m_details;
    std::vector<int> m_order; // numbers of people
    mutable int m_current = -1;
};

//! Puts the address book into \a sets.
void readContacts(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
