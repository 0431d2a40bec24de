#ifndef PHONEITEMS_SHARED_TABLEDATA_H
#define PHONEITEMS_SHARED_TABLEDATA_H

#include "PhoneItems/shared/ItemData.h"
#include "PhoneItems/shared/RowItem.h"
#include "PhoneItems/shared/RowStore.h"

namespace PhoneItems {

/*!
    \brief A data set of rows and named columns: what calls, notes, calendar and reminders are.

    The reader of a data type makes it, adds its rows, and sorts them unless they come in their
    order.
*/
class TableData final : public ItemData<RowItem>
{
public:
    //! \a columns are the headers, translated.
    TableData(int dataType, const QStringList &columns);
    ~TableData() override;

    //! Adds a row, whose cells stand in the order of the columns; missing ones are empty.
    void add(const Row &row);
    void sortNewestFirst() { m_rows.sortNewestFirst(); } //!< \see RowStore

    const RowStore &rows() const { return m_rows; }

    int column() const override;
    QString columnName(int col) const override;
    QString value(int row, int col) const override;

private:
    QStringList m_columns;
    RowStore m_rows;
};

} // namespace PhoneItems

#endif
