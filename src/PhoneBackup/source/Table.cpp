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
    column.m_place = int(m_columns.size());
    m_columns.append(sql);
    return column;
}

bool Table::forEach(const std::function<void(const Row &)> &row,
                    const QString &condition,
                    Order order) const
{
    if (!exists())
        return true;
    const QString from = condition.isEmpty() ? m_name : m_name + " WHERE "_L1 + condition;
    SeenRows seen;
    const bool inAnyOrder = order == Order::Any;
    return m_database->readTable(
        m_columns.join(u", "_s),
        from,
        [&](const Statement &statement, qint64 id) {
            if (inAnyOrder || seen.add(id))
                row(Row(&statement, id));
        },
        inAnyOrder ? RowDatabase::Order::Any : RowDatabase::Order::ByRow);
}

Table::Lookup Table::lookup() const
{
    const QString what = m_columns.isEmpty() ? u"1"_s : m_columns.join(u", "_s);
    return Lookup(
        *m_database,
        exists() ? m_database->prepare(u"SELECT %1 FROM %2 WHERE ROWID = ?1"_s.arg(what, m_name))
                 : nullptr);
}

Table::Lookup::Lookup(RowDatabase &database, std::unique_ptr<Statement> statement)
    : m_database(&database)
    , m_statement(std::move(statement))
    , m_row(m_statement.get(), 0)
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
    m_row.m_id = id;
    return step == Statement::Step::Row ? &m_row : nullptr;
}

} // namespace PhoneBackup
