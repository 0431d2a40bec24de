#include "PhoneItems/contacts/ContactData.h"

#include "PhoneBackup/contacts/ContactOrder.h"
#include "PhoneBackup/contacts/ContactReader.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/contacts/ContactDetails.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

ContactData::ContactData(Source &source)
    : ItemData(ContactReader::kContacts)
    , m_book(source.addressBook())
    , m_details(std::make_unique<ContactDetails>())
{
    if (m_book.database())
        m_reader = std::make_unique<ContactReader>(source, m_book);
    tellLosses(source); // the reader's first look, at labels, has met some
    m_order = contactOrder(m_book.people(), phoneLocale(source));
    for (int i = 0; i < int(m_order.size()); ++i)
        m_items.emplace_back(*this, i);
}

ContactData::~ContactData() = default;

void ContactData::tellLosses(Source &source) const
{
    const QString name = AddressBook::place();
    if (!m_book.loss().isEmpty()) {
        source.addProblem({ ContactReader::kContacts,
                            name,
                            m_book.loss() + tr("Contacts may be missing."),
                            true });
    }
    if (m_book.unknownValueCount() > 0) {
        source.addProblem({ ContactReader::kContacts,
                            name + ": ABMultiValue.property"_L1,
                            tr("Entries of a kind that is not known were left out: %1.")
                                .arg(m_book.unknownValueCount()),
                            true });
    }
}

const AddressBook::Person &ContactData::person(int index) const
{
    return m_book.people()[std::size_t(m_order[std::size_t(index)])];
}

ContactDetails *ContactData::details(int index) const
{
    if (m_current != index)
        m_current = m_reader->read(person(index), *m_details) ? index : -1;
    return m_current == index ? m_details.get() : nullptr;
}

} // namespace PhoneBackup
