#include "model/People.h"

#include "model/AddressBook.h"

#include <algorithm>

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
    if (person == AddressBook::kNobody) {
        const PhoneAddress stranger(address);
        const auto [first, last] = m_buckets.equal_range(stranger.bucket());
        int best = 0;
        int index = int(m_strangers.size());
        for (auto it = first; it != last; ++it) {
            const int match = PhoneAddress::match(stranger, m_strangers[std::size_t(*it)]);
            if (match > best || (match == best && match > 0 && *it < index)) {
                best = match;
                index = *it;
            }
        }
        if (best == 0) {
            m_buckets.insert(stranger.bucket(), index);
            m_strangers.push_back(stranger);
        }
        number = 2 * index + 1;
    }
    m_known.insert(address, number);
    return number;
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
