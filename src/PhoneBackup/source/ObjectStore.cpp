#include "PhoneBackup/source/ObjectStore.h"

#include "PhoneBackup/source/Table.h"

#include <QStringList>

namespace PhoneBackup::ObjectStore {

using namespace Qt::StringLiterals;

QHash<qint64, QString> entityNames(RowDatabase &store)
{
    QHash<qint64, QString> names;
    Table table(store, u"Z_PRIMARYKEY"_s);
    if (!table.hasColumn(u"Z_ENT"_s) || !table.hasColumn(u"Z_NAME"_s))
        return names;
    const auto [number, name] = table.columns(u"Z_ENT"_s, u"Z_NAME"_s);
    table.forEach([&, number = number, name = name](const Table::Row &row) {
        names.insert(row.integer(number), row.text(name));
    });
    return names;
}

QString attribute(const RowDatabase &store, const QString &table, const QString &name)
{
    constexpr int kHighestNumber = 19;
    QStringList candidates;
    for (int number = kHighestNumber; number >= 0; --number) {
        const QString column = number == 0 ? name : name + QString::number(number);
        if (store.hasColumn(table, column))
            candidates.append(column);
    }
    if (candidates.isEmpty())
        return u"NULL"_s;
    return candidates.size() == 1 ? candidates.first()
                                  : u"coalesce("_s + candidates.join(u", "_s) + u')';
}

} // namespace PhoneBackup::ObjectStore
