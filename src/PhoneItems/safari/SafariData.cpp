#include "PhoneItems/safari/SafariData.h"

#include "PhoneBackup/base/DataType.h"

namespace PhoneItems {

SafariData::SafariData()
    : ItemData(PhoneBackup::DataType::Safari)
{
}

SafariData::~SafariData() = default;

void SafariData::add(const Row &link, const QString &group)
{
    const auto known = m_groupNumbers.constFind(group);
    const int number = known != m_groupNumbers.constEnd()
        ? *known
        : *m_groupNumbers.insert(group, int(m_groups.size()));
    if (number == m_groups.size())
        m_groups.append(group);
    m_items.emplace_back(*this, m_links.count());
    m_links.add(link);
    m_groupOf.push_back(number);
}

QString SafariData::group(int index) const
{
    return m_groups.at(m_groupOf[std::size_t(index)]);
}

} // namespace PhoneItems
