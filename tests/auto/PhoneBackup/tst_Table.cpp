#include "BackupFixture.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

#include <QSet>
#include <QtTest>

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kPageSize = 4096;
constexpr int kRows = 200;

QByteArray image()
{
    QByteArray sql = "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, size REAL, long TEXT);";
    for (int i = 1; i <= kRows; ++i) {
        const QByteArray number = QByteArray::number(i);
        sql += "INSERT INTO t VALUES(" + number + ", 'No. " + number + "', " + number + ".5, '"
            + QByteArray(400, '.') + "');";
    }
    return BackupFixture::database(sql.constData());
}

struct Reading
{
    explicit Reading(const QByteArray &bytes)
    {
        fixture.writer.addFile(u"HomeDomain"_s, u"a.db"_s, bytes);
        if (!fixture.finish())
            return;
        auto files = BackupFiles::open(fixture.root(), {});
        if (!files)
            return;
        source.emplace(files.take(), KeepGoing());
        database =
            RowDatabase::open(*source, 6, "HomeDomain", u"a.db"_s, Notice(u"Some are lost."_s));
    }

    BackupFixture fixture;
    std::optional<Source> source;
    std::optional<RowDatabase> database;
};

} // namespace

class tst_Table : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bindsColumnsByName();
    void readsEachRowOnce_data();
    void readsEachRowOnce();
    void looksRowsUp();
};

void tst_Table::bindsColumnsByName()
{
    Reading reading(image());
    QVERIFY(reading.database);
    QCOMPARE(reading.database->tableNames(), QStringList(u"t"_s));
    Table table(*reading.database, u"T"_s);
    QVERIFY(table.exists());
    const auto [size, missing, name] = table.columns(u"SIZE"_s, u"colour"_s, u"name"_s);
    const Table::Column twice = table.expression(u"2 * id"_s);
    QStringList rows;
    const auto add = [&, size = size, missing = missing, name = name](const Table::Row &row) {
        rows.append(row.text(name) + u' ' + QString::number(row.number(size).value_or(-1))
                    + (row.isNull(missing) && row.text(missing).isEmpty() ? u" null "_s : u" "_s)
                    + QString::number(row.integer(twice)) + u' ' + QString::number(row.id()));
    };
    QVERIFY(table.forEach(add, u"id IN (3, 2)"_s));
    QCOMPARE(rows, QStringList({ u"No. 2 2.5 null 4 2"_s, u"No. 3 3.5 null 6 3"_s }));

    rows.clear();
    Table none(*reading.database, u"none"_s);
    none.column(u"a"_s);
    QVERIFY(!none.exists() && none.forEach(add) && rows.isEmpty());
    QVERIFY(reading.source->problems().isEmpty() && reading.database->isComplete());
}

void tst_Table::readsEachRowOnce_data()
{
    QTest::addColumn<QList<qsizetype>>("emptied");
    QTest::addColumn<QList<qsizetype>>("copied"); // from, to
    QTest::addColumn<bool>("isTold");
    QTest::addRow("whole") << QList<qsizetype>() << QList<qsizetype>() << false;
    QTest::addRow("a page is lost") << QList<qsizetype> { 5 } << QList<qsizetype>() << true;
    QTest::addRow("two are lost") << QList<qsizetype> { 5, 12 } << QList<qsizetype>() << true;
    QTest::addRow("a page stands twice")
        << QList<qsizetype>() << QList<qsizetype> { 4, 9 } << false;
    QTest::addRow("and one is lost") << QList<qsizetype> { 5 } << QList<qsizetype> { 4, 9 } << true;
}

void tst_Table::readsEachRowOnce()
{
    QFETCH(const QList<qsizetype>, emptied);
    QFETCH(const QList<qsizetype>, copied);
    QFETCH(const bool, isTold);
    const QByteArray good = image();
    QByteArray bytes = good;
    for (const qsizetype page : emptied)
        bytes.replace(page * kPageSize, kPageSize, QByteArray(kPageSize, '\0'));
    if (!copied.isEmpty()) {
        bytes.replace(
            copied.last() * kPageSize, kPageSize, good.mid(copied.first() * kPageSize, kPageSize));
    }
    Reading reading(bytes);
    QVERIFY(reading.database);
    Table table(*reading.database, u"t"_s);
    const Table::Column name = table.column(u"name"_s);
    QSet<qint64> rows;
    int count = 0;
    const bool isRead = table.forEach([&](const Table::Row &row) {
        QCOMPARE(row.text(name), u"No. %1"_s.arg(row.id()));
        rows.insert(row.id());
        ++count;
    });
    QCOMPARE(isRead, !isTold);
    QCOMPARE(count, int(rows.size()));
    constexpr int kMostOfAPage = 10;
    const int lost = int(emptied.size() + copied.size() / 2);
    QVERIFY(count >= kRows - lost * kMostOfAPage && (count < kRows) == (lost > 0));
    QCOMPARE(reading.source->problems().size(), isTold ? 1 : 0);
    QCOMPARE(reading.database->isComplete(), !isTold);
    if (isTold) {
        const Problem &problem = reading.source->problems().first();
        QVERIFY(problem.loss && problem.what.code() == "source.damaged");
    }
}

void tst_Table::looksRowsUp()
{
    QByteArray bytes = image();
    bytes.replace(5 * kPageSize, kPageSize, QByteArray(kPageSize, '\0'));
    Reading reading(bytes);
    QVERIFY(reading.database);
    Table table(*reading.database, u"t"_s);
    const Table::Column name = table.column(u"name"_s);
    Table::Lookup lookup = table.lookup();
    int failed = 0;
    for (int id = kRows; id > 0; --id) {
        const Table::Row *row = lookup.find(id);
        QCOMPARE(row == nullptr, lookup.hasFailed());
        QVERIFY(!row || (row->id() == id && row->text(name) == u"No. %1"_s.arg(id)));
        failed += row ? 0 : 1;
    }
    QVERIFY(failed > 1 && failed <= 10);
    QVERIFY(!reading.database->isComplete());
    QVERIFY(!lookup.find(kRows + 1) && !lookup.hasFailed());
    QVERIFY(!Table(*reading.database, u"none"_s).lookup().find(1));
}

QTEST_GUILESS_MAIN(tst_Table)
#include "tst_Table.moc"
