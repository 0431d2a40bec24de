#include "PhoneBackup/messages/People.h"

#include "PhoneBackup/source/AddressBook.h"

#include <QSet>

namespace PhoneBackup {

People::People(const AddressBook &addressBook)
    : m_addressBook(addressBook)
{
}

int People::number(const QString &address)
{
    const auto known = m_known.constFind(address);
    if (known != m_known.constEnd())
        return *known;
    const int person = m_addressBook.person(address);
    int number = 2 * person; // even: of the address book
    if (person == AddressBook::kNobody)
        number = 2 * stranger(PhoneAddress(address)) + 1;
    m_known.insert(address, number);
    return number;
}

// The stranger at \a address: the one with the address that matches best. Numbers of different
// countries are not of one person, however well a local number matches both; a local number that
// matches two people equally well is of neither.
int People::stranger(const PhoneAddress &address)
{
    const auto [first, last] = m_buckets.equal_range(address.bucket());
    QSet<int> others;
    for (auto it = first; it != last; ++it) {
        if (PhoneAddress::areApart(address, it->address))
            others.insert(it->person);
    }
    int best = 0;
    int person = -1;
    bool isClear = false;
    for (auto it = first; it != last; ++it) {
        const int match = PhoneAddress::match(address, it->address);
        if (match == 0 || match < best || others.contains(it->person))
            continue;
        isClear = match > best || (isClear && it->person == person);
        best = match;
        person = it->person;
    }
    if (!isClear)
        person = m_strangers++;
    m_buckets.insert(address.bucket(), { address, person });
    return person;
}

void People::join(const QString &address, const QString &other)
{
    if (m_addressBook.person(other) == AddressBook::kNobody)
        m_known.insert(other, number(address));
    else if (m_addressBook.person(address) == AddressBook::kNobody)
        m_known.insert(address, number(other));
}

QString People::name(const QString &address) const
{
    QString name = m_addressBook.name(address);
    const int known = name.isEmpty() ? m_known.value(address, 1) : 1;
    if (known % 2 == 0)
        name = m_addressBook.personName(known / 2);
    return name.isEmpty() ? address : name;
}

} // namespace PhoneBackup
