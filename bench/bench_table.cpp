// What reading a table by names costs against reading it by positions, both to the same values:
// bench_table BACKUP DOMAIN PATH TABLE COLUMN...
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

constexpr int kRounds = 7;

qint64 byPosition(const Database &database, const QString &table, const QStringList &columns)
{
    const QString sql = u"SELECT %1, ROWID FROM %2 ORDER BY ROWID"_s.arg(columns.join(u','), table);
    Result<Statement> statement = database.prepare(sql);
    qint64 sum = 0;
    while (statement && statement.value().step() == Statement::Step::Row) {
        for (int column = 0; column < columns.size(); ++column)
            sum += statement.value().bytes(column).size();
        sum += statement.value().integer(int(columns.size()));
    }
    return sum;
}

qint64 byName(RowDatabase &database, const QString &name, const QStringList &columns)
{
    Table table(database, name);
    std::vector<Table::Column> bound;
    for (const QString &column : columns)
        bound.push_back(table.column(column));
    qint64 sum = 0;
    table.forEach([&](const Table::Row &row) {
        for (const Table::Column column : bound)
            sum += row.bytes(column).size();
        sum += row.id();
    });
    return sum;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    QStringList arguments = app.arguments().mid(1);
    if (arguments.size() < 5) {
        std::fputs("Usage: bench_table BACKUP DOMAIN PATH TABLE COLUMN...\n", stderr);
        return EXIT_FAILURE;
    }
    auto files = BackupFiles::open(arguments.takeFirst(), {});
    if (!files)
        return EXIT_FAILURE;
    Source source(files.take(), {});
    const QByteArray domain = arguments.takeFirst().toUtf8();
    const QString path = arguments.takeFirst();
    const QString table = arguments.takeFirst();
    Result<Database> plain = source.files().openDatabase(domain, path);
    auto named = RowDatabase::open(source, 0, domain, path, RowDatabase::Consequence::filesStay());
    if (!plain || !named)
        return EXIT_FAILURE;
    qint64 best[] { std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::max() };
    for (int round = 0; round < kRounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        const qint64 positions = byPosition(plain.value(), table, arguments);
        best[0] = std::min(best[0], timer.nsecsElapsed());
        timer.start();
        const qint64 names = byName(*named, table, arguments);
        best[1] = std::min(best[1], timer.nsecsElapsed());
        if (positions != names)
            return EXIT_FAILURE;
    }
    std::printf("by position %.1f ms, by name %.1f ms: %.2f times\n",
                double(best[0]) / 1e6,
                double(best[1]) / 1e6,
                double(best[1]) / double(best[0]));
    return EXIT_SUCCESS;
}
