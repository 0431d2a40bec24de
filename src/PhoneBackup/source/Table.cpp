#include "PhoneBackup/source/Table.h"

#include "PhoneBackup/source/SeenRows.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

Table::Table(RowDatabase &database, const QString &name)
    : m_database(&database)
    , m_name(name)
{
}

bool Table::isThere() const
{
    return exists() || m_database->prepare(u"SELECT 1 FROM "_s + m_name) != nullptr; // says why
}

Table::Column Table::expression(const QString &sql)
{
    Column column;
    column.place = int(m_columns.size());
    m_columns.append(sql);
    return column;
}

// The number of the row stands behind all columns, where new ones do not move it.
QString Table::select() const
{
    return (m_columns + QStringList(u"ROWID"_s)).join(u", "_s);
}

bool Table::forEach(const std::function<void(const Row &)> &row,
                    const QString &condition,
                    Order order) const
{
    if (!exists())
        return true;
    const QString from = condition.isEmpty() ? m_name : m_name + " WHERE "_L1 + condition;
    const int idPlace = int(m_columns.size());
    if (order == Order::Any) {
        return m_database->query(
            select(),
            from,
            [&](const Statement &statement) { row(Row(&statement, idPlace)); },
            RowDatabase::Order::Any);
    }
    SeenRows seen;
    return m_database->query(select(), from, [&](const Statement &statement) {
        const Row current(&statement, idPlace);
        if (seen.add(current.id()))
            row(current);
    });
}

Table::Lookup Table::lookup() const
{
    return Lookup(*m_database,
                  exists() ? m_database->prepare(
                      u"SELECT %1 FROM %2 WHERE ROWID = ?1"_s.arg(select(), m_name))
                           : nullptr,
                  int(m_columns.size()));
}

Table::Lookup::Lookup(RowDatabase &database, std::unique_ptr<Statement> statement, int idPlace)
    : m_database(&database)
    , m_statement(std::move(statement))
    , m_row(m_statement.get(), idPlace)
{
}

const Table::Row *Table::Lookup::find(qint64 id)
{
    m_failed = false;
    if (!m_statement)
        return nullptr;
    m_statement->reset();
    m_statement->bind(1, id);
    const Statement::Step step = m_statement->step();
    m_failed = step == Statement::Step::Failed;
    if (m_failed)
        m_database->addFailure(*m_statement);
    return step == Statement::Step::Row ? &m_row : nullptr;
}

} // namespace PhoneBackup
