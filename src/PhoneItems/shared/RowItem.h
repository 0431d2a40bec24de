#ifndef PHONEITEMS_SHARED_ROWITEM_H
#define PHONEITEMS_SHARED_ROWITEM_H

#include "backup/BkAbstractItem.h"

namespace PhoneItems {

class TableData;

//! A row of a table; it knows its number only and asks the table for the rest.
class RowItem : public BkAbstractItem
{
public:
    RowItem(const TableData &data, int index);
    ~RowItem() override;

    const TableData &data() const { return m_data; }

    //! The cell of column \a index.
    QString value(int index) const override;
    bool flag(int index) const override;
    qint64 id() const override;
    QDateTime date() const override;

private:
    const TableData &m_data;
    int m_index;
};

} // namespace PhoneItems

#endif
