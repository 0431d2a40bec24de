#include "PhoneItems/shared/RowItem.h"

#include "PhoneItems/shared/TableData.h"

namespace PhoneItems {

RowItem::RowItem(const TableData &data, int index)
    : m_data(data)
    , m_index(index)
{
}

RowItem::~RowItem() = default;

QString RowItem::value(int index) const
{
    return m_data.value(m_index, index);
}

bool RowItem::flag(int index) const
{
    return index == 0 && m_data.rows().isDeleted(m_index);
}

qint64 RowItem::id() const
{
    return m_data.rows().id(m_index);
}

QDateTime RowItem::date() const
{
    return m_data.rows().date(m_index);
}

} // namespace PhoneItems
