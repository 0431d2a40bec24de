#include "PhoneBackup/source/ObjectStore.h"

#include "PhoneBackup/source/RowDatabase.h"

#include <QStringList>

namespace PhoneBackup::ObjectStore {

using namespace Qt::StringLiterals;

QHash<qint64, QString> entityNames(RowDatabase &store)
{
    QHash<qint64, QString> names;
    const QString table = u"Z_PRIMARYKEY"_s;
    if (store.hasColumn(table, u"Z_ENT"_s) && store.hasColumn(table, u"Z_NAME"_s)) {
        store.query(u"Z_ENT, Z_NAME"_s, table, [&names](const Statement &row) {
            names.insert(row.integer(0), row.text(1));
        });
    }
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
