#include "PhoneBackup/whatsapp/WhatsappDatabase.h"

#include "PhoneBackup/source/Table.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

std::unique_ptr<WhatsappDatabase> WhatsappDatabase::open(
    Source &source, const WhatsappHome &home, const QString &name, const Notice &loss, int dataType)
{
    std::optional<RowDatabase> database =
        RowDatabase::open(source, dataType, home.domain, home.folder + name, loss);
    return database ? std::make_unique<WhatsappDatabase>(std::move(*database)) : nullptr;
}

WhatsappDatabase::WhatsappDatabase(RowDatabase &&database)
    : RowDatabase(std::move(database))
{
}

RowsOfMessages::RowsOfMessages(RowDatabase &database, const QString &table, const QString &column)
{
    Table rows(database, table);
    if (!rows.hasColumn(column))
        return;
    const Table::Column message = rows.column(column);
    rows.forEach([this, message](const Table::Row &row) {
        if (row.integer(message) != 0)
            m_links.push_back({ row.integer(message), row.id() });
    });
    std::sort(m_links.begin(), m_links.end(), [](const Link &a, const Link &b) {
        return a.message != b.message ? a.message < b.message : a.row < b.row;
    });
}

// The first link of the message, or where it would stand.
std::vector<RowsOfMessages::Link>::const_iterator RowsOfMessages::find(qint64 message) const
{
    const auto before = [](const Link &link, qint64 wanted) { return link.message < wanted; };
    return std::lower_bound(m_links.cbegin(), m_links.cend(), message, before);
}

qint64 RowsOfMessages::first(qint64 message) const
{
    const auto found = find(message);
    return found != m_links.cend() && found->message == message ? found->row : 0;
}

QList<qint64> RowsOfMessages::of(qint64 message) const
{
    QList<qint64> rows;
    for (auto link = find(message); link != m_links.cend() && link->message == message; ++link)
        rows.append(link->row);
    return rows;
}

} // namespace PhoneBackup
