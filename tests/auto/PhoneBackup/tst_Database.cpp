#include "PhoneBackup/base/PrivateFolder.h"
#include "PhoneBackup/sqlite/Database.h"
#include "PhoneItems/words/Words.h"
#include "sample/Database.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using PhoneBackup::Database;
using PhoneBackup::DatabaseFiles;
using PhoneBackup::Fault;
using PhoneBackup::PrivateFolder;
using PhoneBackup::Result;
using PhoneBackup::Statement;

namespace {

// What a query gives, columns parted by "|"; "failed" where stepping failed.
QStringList rows(const Database &database, const QString &sql)
{
    QStringList lines;
    Result<Statement> statement = database.prepare(sql);
    if (!statement)
        return { u"not prepared"_s };
    for (;;) {
        switch (statement.value().step()) {
        case Statement::Step::Row:
            lines.append(statement.value().text(0));
            break;
        case Statement::Step::Failed:
            lines.append(u"failed"_s);
            return lines;
        case Statement::Step::Done:
            return lines;
        }
    }
}

QByteArray bigDatabase(int count)
{
    Sample::Database database({}, "CREATE TABLE t (v TEXT)");
    Sample::Statement insert = database.prepare("INSERT INTO t VALUES (?)");
    for (int i = 0; i < count; ++i)
        insert.run({ QString::number(i).rightJustified(200, u'0') });
    return database.image();
}

// A database in the middle of a transaction: its file and its journal, which takes the change back.
void interruptedTransaction(const QString &folder, QByteArray &file, QByteArray &journal)
{
    const QString path = folder + u"/live.db"_s;
    sqlite3 *database = nullptr;
    QCOMPARE(sqlite3_open(path.toUtf8().constData(), &database), SQLITE_OK);
    // A cache of one page makes the change reach the file before it is committed.
    QCOMPARE(
        sqlite3_exec(database,
                     "PRAGMA journal_mode=DELETE; PRAGMA cache_size=1;"
                     "CREATE TABLE t (v TEXT); INSERT INTO t VALUES ('before');"
                     "BEGIN; UPDATE t SET v = 'half';"
                     "CREATE TABLE u AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
                     "FROM n WHERE i < 500) SELECT i, randomblob(900) FROM n;",
                     nullptr,
                     nullptr,
                     nullptr),
        SQLITE_OK);
    sqlite3_db_cacheflush(database);
    file = Files::read(path);
    journal = Files::read(path + u"-journal"_s);
    sqlite3_close(database);
}

} // namespace

class tst_Database : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsWithoutATrace();
    void opensPathsWithSpecialCharacters_data();
    void opensPathsWithSpecialCharacters();
    void seesRowsThatAreOnlyInTheLog();
    void readsTheFileWhenTheLogIsDamaged();
    void takesAHalfTransactionBack();
    void doesNotFollowJournalsToOtherFiles();
    void givesTypedValues();
    void failsAtADamagedPageInsteadOfEnding();
    void readsWhatIsLeftOfATruncatedDatabase();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
    void knowsTablesAndColumns();
    void readsOnlyOrdinaryTables_data();
    void readsOnlyOrdinaryTables();
    void endsQueriesThatHaveNoEnd();
    void refusesHugeValues();
    void refusesToWrite();

private:
    QString write(const QByteArray &content, const QString &name = u"a.db"_s)
    {
        const QString path = m_dir->filePath(name);
        return Files::write(path, content) ? path : QString();
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_Database::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void tst_Database::readsWithoutATrace()
{
    const QString path = write(bigDatabase(100));
    const QStringList before = Files::tree(m_dir->path());
    PrivateFolder folder;
    {
        const Result<Database> database = Database::open({ u"a.db"_s, path, {}, {} }, folder);
        QVERIFY(database);
        QCOMPARE(rows(database.value(), u"SELECT v FROM t"_s).size(), 100);
        QCOMPARE(Files::tree(m_dir->path()), before); // the header says log: none is made
    }
    QCOMPARE(Files::tree(m_dir->path()), before);
    QCOMPARE(Files::read(path), bigDatabase(100));
}

void tst_Database::opensPathsWithSpecialCharacters_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : { "a b.db", "100%25.db", "what?mode=rwc.db", "a#b.db", "\xC3\xA4.db" })
        QTest::newRow(name) << QString::fromUtf8(name);
}

void tst_Database::opensPathsWithSpecialCharacters()
{
    QFETCH(QString, name);
    PrivateFolder folder;
    const QString path = write(bigDatabase(3), name);
    const Result<Database> database = Database::open({ name, path, {}, {} }, folder);
    QVERIFY(database);
    QCOMPARE(rows(database.value(), u"SELECT v FROM t"_s).size(), 3);
    QCOMPARE(Files::tree(m_dir->path()), QStringList(name));
}

void tst_Database::seesRowsThatAreOnlyInTheLog()
{
    Sample::Database live({}, "CREATE TABLE t (v TEXT); INSERT INTO t VALUES ('old')");
    const QByteArray before = live.image();
    live.execute("INSERT INTO t VALUES ('new')");
    const QByteArray log = Sample::writeAheadLog(before, live.image());
    const DatabaseFiles files { u"a.db"_s, write(before), write(log, u"elsewhere"_s), {} };

    QString copy;
    {
        PrivateFolder folder;
        const Result<Database> database = Database::open(files, folder);
        QVERIFY(database);
        QVERIFY(!database.value().isDamaged());
        QCOMPARE(rows(database.value(), u"SELECT v FROM t"_s), QStringList({ u"old"_s, u"new"_s }));
        const Result<QString> place = folder.newSubFolder();
        copy = QFileInfo(place.value()).path();
        QCOMPARE(QFileInfo(copy).permissions() & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }
    QVERIFY(!QFileInfo::exists(copy));
    QCOMPARE(Files::read(files.path), before);
    QCOMPARE(Files::read(files.walPath), log);
    QCOMPARE(Files::tree(m_dir->path()), QStringList({ u"a.db"_s, u"elsewhere"_s }));
}

void tst_Database::readsTheFileWhenTheLogIsDamaged()
{
    Sample::Database live({}, "CREATE TABLE t (v TEXT); INSERT INTO t VALUES ('old')");
    const QByteArray before = live.image();
    live.execute("INSERT INTO t VALUES ('new')");
    QByteArray log = Sample::writeAheadLog(before, live.image());
    PrivateFolder folder;
    for (qsizetype i = 0; i < log.size(); i += 97) {
        QByteArray damaged = log;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x5A);
        const Result<Database> database =
            Database::open({ u"a.db"_s, write(before), write(damaged, u"log"_s), {} }, folder);
        QVERIFY(database);
        QVERIFY(rows(database.value(), u"SELECT v FROM t"_s).contains(u"old"_s));
    }
    const Result<Database> database =
        Database::open({ u"a.db"_s, write(before), write("garbage", u"log"_s), {} }, folder);
    QCOMPARE(rows(database.value(), u"SELECT v FROM t"_s), QStringList(u"old"_s));
}

void tst_Database::takesAHalfTransactionBack()
{
    QByteArray file;
    QByteArray journal;
    QTemporaryDir other;
    interruptedTransaction(other.path(), file, journal);
    QVERIFY(file.contains("half")); // otherwise this test would show nothing
    PrivateFolder folder;
    const Result<Database> database =
        Database::open({ u"a.db"_s, write(file), {}, write(journal, u"journal"_s) }, folder);
    QVERIFY(database);
    QCOMPARE(rows(database.value(), u"SELECT v FROM t"_s), QStringList(u"before"_s));
    QVERIFY(!database.value().hasTable(u"u"_s));
    QCOMPARE(Files::read(m_dir->filePath(u"a.db"_s)), file);
}

void tst_Database::doesNotFollowJournalsToOtherFiles()
{
    // A journal may name a further one, which SQLite reads and removes when it is done with it.
    const QString victim = write("precious", u"victim"_s);
    QByteArray file;
    QByteArray journal;
    QTemporaryDir other;
    interruptedTransaction(other.path(), file, journal);
    const QByteArray name = QFile::encodeName(victim);
    quint32 sum = 0;
    for (const char c : name)
        sum += static_cast<quint32>(static_cast<signed char>(c));
    const auto number = [](quint32 value) {
        QByteArray bytes(4, '\0');
        for (int i = 0; i < 4; ++i)
            bytes[i] = static_cast<char>(value >> (24 - 8 * i));
        return bytes;
    };
    journal += number(0x40000000 / 4096 + 1) + name + number(quint32(name.size())) + number(sum)
        + QByteArray::fromHex("d9d505f920a163d7");
    PrivateFolder folder;
    const Result<Database> database =
        Database::open({ u"a.db"_s, write(file), {}, write(journal, u"journal"_s) }, folder);
    QVERIFY(database);
    QCOMPARE(Files::read(victim), QByteArray("precious"));
}

void tst_Database::givesTypedValues()
{
    Sample::Database writer({}, "CREATE TABLE t (a, b, c, d, e, f)");
    writer.prepare("INSERT INTO t VALUES (?, ?, ?, ?, ?, CAST(x'61FF62' AS TEXT))")
        .run({ Q_INT64_C(9000000000), 1.5, u"7.25"_s, QByteArray("x\0y", 3), QVariant() });
    PrivateFolder folder;
    const Result<Database> database =
        Database::open({ u"a.db"_s, write(writer.image()), {}, {} }, folder);
    Result<Statement> statement = database.value().prepare(u"SELECT a, b, c, d, e, f FROM t"_s);
    QVERIFY(statement);
    Statement &row = statement.value();
    QCOMPARE(row.step(), Statement::Step::Row);
    QCOMPARE(row.integer(0), Q_INT64_C(9000000000));
    QCOMPARE(row.number(1), std::optional(1.5));
    QCOMPARE(row.number(2), std::optional(7.25));
    QCOMPARE(row.bytes(3), QByteArrayView("x\0y", 3));
    QVERIFY(!row.number(4).has_value());
    QVERIFY(row.bytes(4).isNull());
    QVERIFY(!row.number(5).has_value());
    QCOMPARE(row.text(5), u"a\uFFFDb"_s);
    QCOMPARE(row.step(), Statement::Step::Done);
}

void tst_Database::failsAtADamagedPageInsteadOfEnding()
{
    QByteArray content = bigDatabase(2000);
    const qsizetype page = 4096;
    const qsizetype middle = content.size() / page / 2 * page;
    content.replace(middle, page, QByteArray(page, '\xEE'));
    PrivateFolder folder;
    const Result<Database> database = Database::open({ u"a.db"_s, write(content), {}, {} }, folder);
    QVERIFY(database);
    const QStringList found = rows(database.value(), u"SELECT v FROM t"_s);
    QCOMPARE(found.last(), u"failed"_s);
    QVERIFY(found.size() > 500 && found.size() < 1999);
}

void tst_Database::readsWhatIsLeftOfATruncatedDatabase()
{
    const QByteArray content = bigDatabase(2000);
    PrivateFolder folder;
    const Result<Database> database =
        Database::open({ u"a.db"_s, write(content.first(content.size() / 2)), {}, {} }, folder);
    QVERIFY(database);
    QVERIFY(database.value().isDamaged());
    QVERIFY(rows(database.value(), u"SELECT v FROM t"_s).size() > 500);
}

void tst_Database::saysWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("garbage") << QByteArray(10'000, 'x');
    QTest::newRow("header only") << bigDatabase(1).first(100);
    QTest::newRow("header cut off") << bigDatabase(1).first(50);
}

void tst_Database::saysWhatIsWrong()
{
    QFETCH(QByteArray, content);
    PrivateFolder folder;
    const Result<Database> database =
        Database::open({ u"HomeDomain/a.db"_s, write(content), {}, {} }, folder);
    if (!database) {
        QCOMPARE(database.error().fault, Fault::Corrupt);
        QVERIFY(PhoneItems::words(database.error().what).contains(u"HomeDomain/a.db"_s));
    } else {
        QVERIFY(!database.value().hasTable(u"t"_s)); // SQLite takes some stumps for empty databases
    }
    const Result<Database> missing =
        Database::open({ u"b.db"_s, m_dir->filePath(u"b.db"_s), {}, {} }, folder);
    QCOMPARE(missing.error().fault, Fault::Io);
    QVERIFY(!QFileInfo::exists(m_dir->filePath(u"b.db"_s)));
}

void tst_Database::knowsTablesAndColumns()
{
    Sample::Database writer({},
                            "CREATE TABLE ZASSET (Z_PK INTEGER PRIMARY KEY, ZKIND INTEGER);"
                            "CREATE TABLE \"odd 'name\" (a)");
    PrivateFolder folder;
    const Result<Database> opened =
        Database::open({ u"a.db"_s, write(writer.image()), {}, {} }, folder);
    const Database &database = opened.value();
    QVERIFY(database.hasTable(u"zasset"_s));
    QVERIFY(!database.hasTable(u"ZASSE_"_s));
    QCOMPARE(database.columns(u"ZASSET"_s), QStringList({ u"Z_PK"_s, u"ZKIND"_s }));
    QCOMPARE(database.columns(u"odd 'name"_s), QStringList(u"a"_s));
}

void tst_Database::readsOnlyOrdinaryTables_data()
{
    QTest::addColumn<QByteArray>("definition");
    QTest::addColumn<bool>("isRead");

    QTest::newRow("ROWID is the number")
        << QByteArray("CREATE TABLE t (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, a)") << true;
    QTest::newRow("ROWID is a text") << QByteArray("CREATE TABLE t (a, \"rowid\" TEXT)") << false;
    QTest::newRow("ROWID is half of a key")
        << QByteArray("CREATE TABLE t (a, ROWID INTEGER, PRIMARY KEY (ROWID, a))") << false;
    QTest::newRow("no row has a number")
        << QByteArray("CREATE TABLE t (a, ROWID INTEGER PRIMARY KEY) WITHOUT ROWID") << false;
    // A view may run for ever.
    QTest::newRow("view") << QByteArray("CREATE VIEW t AS SELECT 1 AS a, 1 AS ROWID") << false;
    QTest::newRow("view that claims to be a table")
        << QByteArray("CREATE VIEW t AS SELECT 1 AS a, 1 AS ROWID; PRAGMA writable_schema=1;"
                      "UPDATE sqlite_master SET type = 'table' WHERE name = 't'")
        << false;
    QTest::newRow("virtual table") << QByteArray("CREATE VIRTUAL TABLE t USING fts4(a)") << false;
}

void tst_Database::readsOnlyOrdinaryTables()
{
    QFETCH(QByteArray, definition);
    QFETCH(bool, isRead);
    Sample::Database writer({}, definition.constData());
    QCOMPARE(writer.error(), QString());
    PrivateFolder folder;
    const Result<Database> opened =
        Database::open({ u"a.db"_s, write(writer.image()), {}, {} }, folder);
    const Database &database = opened.value();
    QCOMPARE(database.hasTable(u"T"_s), isRead);
    QCOMPARE(database.refusesTable(u"T"_s), !isRead);
    QCOMPARE(database.columns(u"t"_s).isEmpty(), !isRead);
    for (const QString &sql : { u"SELECT a FROM t ORDER BY ROWID"_s, u"SELECT NULL FROM t"_s })
        QCOMPARE(bool(database.prepare(sql)), isRead);
    QVERIFY(!database.refusesTable(u"u"_s));
}

void tst_Database::endsQueriesThatHaveNoEnd()
{
    const QString endless = u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                            "SELECT i FROM n WHERE i < 0"_s;
    const QString path = write(bigDatabase(1000));
    PrivateFolder folder;
    const Result<Database> database = Database::open({ u"a.db"_s, path, {}, {} }, folder);
    Result<Statement> query = database.value().prepare(endless);
    QCOMPARE(query.value().step(), Statement::Step::Failed);
    QVERIFY(!query.value().isStopped());
    QCOMPARE(rows(database.value(), u"SELECT v FROM t"_s).size(), 1000); // each has its own share

    int left = 5;
    const Result<Database> asking =
        Database::open({ u"a.db"_s, path, {}, {} }, folder, [&left] { return --left > 0; });
    Result<Statement> stopped = asking.value().prepare(endless);
    QCOMPARE(stopped.value().step(), Statement::Step::Failed);
    QVERIFY(stopped.value().isStopped());
    QCOMPARE(left, 0);
    // What is done at once is never cut short, even when the next question would stop it.
    QCOMPARE(rows(asking.value(), u"SELECT v FROM t WHERE ROWID = 7"_s).size(), 1);
}

void tst_Database::refusesHugeValues()
{
    Sample::Database writer(
        {},
        "CREATE TABLE t (v); INSERT INTO t VALUES (zeroblob(33554432));"
        "INSERT INTO t VALUES (zeroblob(33554433)); INSERT INTO t VALUES ('x')");
    PrivateFolder folder;
    const Result<Database> database =
        Database::open({ u"a.db"_s, write(writer.image()), {}, {} }, folder);
    const Database &opened = database.value();
    const auto at = [&opened](int row) {
        return rows(opened, u"SELECT v FROM t WHERE ROWID = %1"_s.arg(row));
    };
    QCOMPARE(at(2), QStringList(u"failed"_s));
    QCOMPARE(at(3), QStringList(u"x"_s));
    Result<Statement> whole = opened.prepare(u"SELECT v FROM t WHERE ROWID = 1"_s);
    QCOMPARE(whole.value().step(), Statement::Step::Row);
    QCOMPARE(whole.value().bytes(0).size(), 32 << 20);
}

void tst_Database::refusesToWrite()
{
    PrivateFolder folder;
    const Result<Database> database =
        Database::open({ u"a.db"_s, write(bigDatabase(2)), {}, {} }, folder);
    for (const QString &sql :
         { u"DELETE FROM t"_s, u"CREATE TABLE u (a)"_s, u"ATTACH ':memory:' AS other"_s }) {
        QVERIFY(rows(database.value(), sql).size() == 1);
    }
    QCOMPARE(rows(database.value(), u"SELECT v FROM t"_s).size(), 2);
}

QTEST_GUILESS_MAIN(tst_Database)
#include "tst_Database.moc"
