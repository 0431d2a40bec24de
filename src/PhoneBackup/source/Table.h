#ifndef PHONEBACKUP_SOURCE_TABLE_H
#define PHONEBACKUP_SOURCE_TABLE_H

#include "PhoneBackup/source/RowDatabase.h"

#include <array>
#include <functional>
#include <memory>

namespace PhoneBackup {

/*!
    \brief One table of a database, whose columns are bound by name before rows are read.

    \code
    Table calls(database, u"ZCALLRECORD"_s);
    const auto [date, address] = calls.columns(u"ZDATE"_s, u"ZADDRESS"_s);
    calls.forEach([&](const Table::Row &row) { add(row.id(), row.number(date), row.text(address));
   }); \endcode A column that the table does not have reads as null. Access to a bound column costs
   no look-up. The database must outlive the table.
*/
class Table
{
public:
    //! A bound column; only for rows of the table that gave it.
    class Column
    {
        friend class Table;
        int m_place = 0;
    };

    //! The current row; its values convert as those of Statement.
    class Row
    {
    public:
        //! The number of the row, which is its integer primary key when it has one.
        qint64 id() const { return m_id; }

        qint64 integer(Column column) const { return m_statement->integer(column.m_place); }
        std::optional<double> number(Column column) const
        {
            return m_statement->number(column.m_place);
        }
        QString text(Column column) const { return m_statement->text(column.m_place); }

        //! Valid until the next row.
        QByteArrayView bytes(Column column) const { return m_statement->bytes(column.m_place); }

        bool isNull(Column column) const { return m_statement->isNull(column.m_place); }

    private:
        friend class Table;
        Row(const Statement *statement, qint64 id)
            : m_statement(statement)
            , m_id(id)
        {
        }

        const Statement *m_statement;
        qint64 m_id;
    };

    class Lookup;

    enum class Order {
        ByRow, //!< By the numbers of the rows; behind damaged pages in any order. None comes twice.
        Any, //!< As is fastest. Rows of a damaged table may come twice.
    };

    Table(RowDatabase &database, const QString &name);

    bool exists() const { return m_database->hasTable(m_name); }

    //! The same for a table that every database of the kind has: without it, something is lost.
    bool isThere() const;

    bool hasColumn(const QString &name) const { return m_database->hasColumn(m_name, name); }

    //! Binds the column \a name.
    Column column(const QString &name) { return expression(sql(name)); }

    //! Binds the columns \a names, to be taken apart: `const auto [a, b] = table.columns(…)`.
    template <class... Names>
    std::array<Column, sizeof...(Names)> columns(const Names &...names)
    {
        return { column(names)... };
    }

    //! Binds what SQLite works out from \a sql for each row.
    Column expression(const QString &sql);

    //! How \a name is called in an expression or a condition: "NULL" when the table does not have
    //! it.
    QString sql(const QString &name) const { return m_database->column(m_name, name); }

    /*!
        Calls \a row for each row of the table, with \a condition (SQL) for those that meet it. What
        lies behind damaged pages is looked for, and what is lost is told. \return whether all rows
        were read; also when there is no such table.
    */
    bool forEach(const std::function<void(const Row &)> &row,
                 const QString &condition = {},
                 Order order = Order::ByRow) const;

    bool forEach(const std::function<void(const Row &)> &row, Order order) const
    {
        return forEach(row, {}, order);
    }

    //! For reading single rows of the columns bound so far.
    Lookup lookup() const;

private:
    RowDatabase *m_database;
    QString m_name;
    QStringList m_columns;
};

//! Reads rows of a table by their numbers.
class Table::Lookup
{
public:
    /*!
        Row \a id, valid until the next call; null when the table has none, and when it cannot be
        read: then hasFailed(), and the loss is told.
    */
    const Row *find(qint64 id);

    bool hasFailed() const { return m_failed; }

private:
    friend class Table;
    Lookup(RowDatabase &database, std::unique_ptr<Statement> statement);

    RowDatabase *m_database;
    std::unique_ptr<Statement> m_statement;
    Row m_row;
    bool m_failed = false;
};

} // namespace PhoneBackup

#endif
