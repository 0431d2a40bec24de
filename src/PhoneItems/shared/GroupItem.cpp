#include "PhoneItems/shared/GroupItem.h"

namespace PhoneItems {

GroupItem::GroupItem(const QString &name, qint64 number)
    : m_name(name)
    , m_number(number)
{
}

GroupItem::~GroupItem() = default;

QString GroupItem::value(int index) const
{
    return index == 0 ? m_name : QString();
}

bool GroupItem::flag(int /*index*/) const
{
    return false;
}

qint64 GroupItem::id() const
{
    return m_number;
}

} // namespace PhoneItems
