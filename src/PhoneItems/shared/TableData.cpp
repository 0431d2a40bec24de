#include "PhoneItems/shared/TableData.h"

namespace PhoneItems {

TableData::TableData(int dataType, const QStringList &columns)
    : ItemData(dataType)
    , m_columns(columns)
{
}

TableData::~TableData() = default;

void TableData::add(const Row &row)
{
    m_items.emplace_back(*this, m_rows.count());
    m_rows.add(row);
}

int TableData::column() const
{
    return int(m_columns.size());
}

QString TableData::columnName(int col) const
{
    return m_columns.value(col);
}

QString TableData::value(int row, int col) const
{
    return m_rows.cell(row, col);
}

} // namespace PhoneItems
