#include "PhoneBackup/whatsapp/WhatsappDatabase.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

std::unique_ptr<WhatsappDatabase> WhatsappDatabase::open(Source &source,
                                                         const WhatsappPlace &place,
                                                         const QString &name,
                                                         const QString &loss,
                                                         int dataType)
{
    std::optional<RowDatabase> database =
        RowDatabase::open(source, dataType, place.domain, place.folder + name, loss);
    return database ? std::make_unique<WhatsappDatabase>(std::move(*database)) : nullptr;
}

WhatsappDatabase::WhatsappDatabase(RowDatabase &&database)
    : RowDatabase(std::move(database))
{
}

std::unique_ptr<Statement> WhatsappDatabase::prepareRow(const QStringList &columns,
                                                        const QString &table)
{
    if (!hasColumn(table, u"Z_PK"_s))
        return nullptr;
    QStringList wanted;
    for (const QString &name : columns)
        wanted.append(column(table, name));
    return prepare(u"SELECT %1 FROM %2 WHERE Z_PK = ?1"_s.arg(wanted.join(u", "_s), table));
}

RowsOfMessages::RowsOfMessages(RowDatabase &database, const QString &table, const QString &column)
{
    if (!database.hasColumn(table, column))
        return;
    database.query(column + u", ROWID"_s, table, [this](const Statement &row) {
        if (row.integer(0) != 0)
            m_links.push_back({ row.integer(0), row.integer(1) });
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
