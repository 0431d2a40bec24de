#ifndef PHONEITEMS_SHARED_ROWSTORE_H
#define PHONEITEMS_SHARED_ROWSTORE_H

#include "PhoneBackup/source/PackedTexts.h"

#include <QDateTime>
#include <QStringList>

#include <vector>

namespace PhoneItems {

//! A row as a reader found it.
struct Row
{
    QStringList cells;
    QDateTime date; //!< What the row is ordered by; may be invalid.
    qint64 id = -1; //!< Number in its source, -1 for none.
    bool deleted = false;
};

/*!
    \brief Rows of short texts in little memory: the texts packed, and 32 bytes a row. Rows count
    from 0.
*/
class RowStore
{
public:
    void add(const Row &row);

    //! Orders the rows by date, the newest first, those without one last; equal ones stay.
    void sortNewestFirst();

    int count() const { return int(m_records.size()); }

    //! Cell \a column of \a row, empty when the row has fewer. Costs the length of those before.
    QString cell(int row, int column) const { return m_texts.text(record(row).cells, column); }
    bool isDeleted(int row) const { return record(row).deleted; }
    qint64 id(int row) const { return record(row).id; }
    QDateTime date(int row) const;

private:
    struct Record
    {
        qsizetype cells; // in m_texts
        qint64 dateMs;
        qint64 id;
        bool deleted;
    };
    const Record &record(int row) const { return m_records[std::size_t(row)]; }

    PhoneBackup::PackedTexts m_texts;
    std::vector<Record> m_records;
};

} // namespace PhoneItems

#endif
