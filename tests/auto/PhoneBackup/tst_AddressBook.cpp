#include "BackupFixture.h"
#include "PhoneBackup/folder/BackupFiles.h"
#include "PhoneBackup/source/AddressBook.h"
#include "PhoneBackup/source/PhoneAddress.h"
#include "PhoneBackup/source/Source.h"

#include <QtTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using PhoneBackup::AddressBook;
using PhoneBackup::PhoneAddress;

namespace {

constexpr const char *kTables =
    "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT, Last TEXT, Organization TEXT,"
    " Kind INTEGER, Nickname TEXT, Prefix TEXT, PersonLink INTEGER DEFAULT -1,"
    " IsPreferredName INTEGER DEFAULT 1);"
    "CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER,"
    " identifier INTEGER, label INTEGER, value TEXT);"
    "CREATE TABLE ABPersonLink (ROWID INTEGER PRIMARY KEY, PreferredNamePersonID INTEGER);";

} // namespace

class tst_AddressBook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matchesAddresses_data();
    void matchesAddresses();
    void prefersTheLongerMatch();
    void namesPeople_data();
    void namesPeople();
    void readsOldAndDamagedTables_data();
    void readsOldAndDamagedTables();
};

void tst_AddressBook::matchesAddresses_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("match");

    QTest::newRow("spelling") << u"+1 (555) 010-0123"_s << u"tel:+15550100123"_s << true;
    QTest::newRow("00 for +") << u"0049 30 5550101"_s << u"+49305550101"_s << true;
    QTest::newRow("zero for callers at home")
        << u"+49 (0)30 5550101"_s << u"+49305550101"_s << true;
    QTest::newRow("national form") << u"030 5550101"_s << u"+49305550101"_s << true;
    QTest::newRow("two countries") << u"+15550100123"_s << u"+445550100123"_s << false;
    QTest::newRow("another number") << u"5550101"_s << u"+49305550102"_s << false;
    QTest::newRow("short codes equal") << u"28777"_s << u"28777"_s << true;
    QTest::newRow("short code as an end") << u"50101"_s << u"+49305550101"_s << false;
    QTest::newRow("six digits as an end") << u"550101"_s << u"+49305550101"_s << false;
    QTest::newRow("other digits") << u"٠٣٠٥٥٥٠١٠١"_s << u"0305550101"_s << true;
    QTest::newRow("invisible marks")
        << u"\u202A+49\u00A030 555\u20110101\u202C"_s << u"+49305550101"_s << true;
    QTest::newRow("extension") << u"555 0100 123 x45"_s << u"5550100123"_s << true;
    QTest::newRow("dialled afterwards") << u"5550100123,,45"_s << u"5550100123"_s << true;
    QTest::newRow("mobile mark of Mexico") << u"+5215512345678"_s << u"+525512345678"_s << true;
    QTest::newRow("mobile mark of Argentina") << u"+5491112345678"_s << u"+541112345678"_s << true;
    QTest::newRow("e-mail") << u"mailto:Ann@Example.org "_s << u"ann@example.ORG"_s << true;
    QTest::newRow("e-mail with digits") << u"5550100@example.org"_s << u"5550100"_s << false;
    QTest::newRow("word") << u"MyBank"_s << u"MYBANK"_s << true;
    QTest::newRow("digits of a word") << u"Bank5550100"_s << u"5550100"_s << false;
    QTest::newRow("business") << u"urn:biz:12345678"_s << u"12345678"_s << false;
    QTest::newRow("nothing") << QString() << QString() << false;
    QTest::newRow("zeros") << u"0000000"_s << u"+10000000"_s << false;
}

void tst_AddressBook::matchesAddresses()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    const PhoneAddress a(one);
    const PhoneAddress b(other);
    QTEST(PhoneAddress::match(a, b) > 0, "match");
    QTEST(PhoneAddress::match(b, a) > 0, "match");
    QVERIFY(PhoneAddress::match(a, b) == 0 || a.bucket() == b.bucket());
}

void tst_AddressBook::prefersTheLongerMatch()
{
    const PhoneAddress number(u"+49305550101"_s);
    const int whole = PhoneAddress::match(number, PhoneAddress(u"+49305550101"_s));
    const int national = PhoneAddress::match(number, PhoneAddress(u"0305550101"_s));
    const int local = PhoneAddress::match(number, PhoneAddress(u"5550101"_s));
    QVERIFY(whole > national && national > local && local > 0);
}

void tst_AddressBook::namesPeople_data()
{
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("name");

    const QString ann = u"INSERT INTO ABPerson(ROWID, First, Last, Prefix) VALUES (1, 'Ann', "
                        "'Example', 'Dr.');"
                        "INSERT INTO ABMultiValue(record_id, property, value) VALUES (1, 3, "
                        "'(555) 010-0123'), (1, 4, 'ann@example.org'), (1, 5, NULL);"_s;
    QTest::newRow("number") << ann << u"+15550100123"_s << u"Dr. Ann Example"_s;
    QTest::newRow("e-mail") << ann << u"Ann@Example.Org"_s << u"Dr. Ann Example"_s;
    QTest::newRow("nobody") << ann << u"+15550100124"_s << QString();
    const QString bob = ann
        + u"INSERT INTO ABPerson(ROWID, First, Last) VALUES (2, 'Bob', 'Example');"
          "INSERT INTO ABMultiValue(record_id, property, value) VALUES (2, 3, '%1');"_s;
    QTest::newRow("two with equal claims")
        << bob.arg(u"555-010-0123"_s) << u"+15550100123"_s << QString();
    QTest::newRow("two, one closer")
        << bob.arg(u"+1 555-010-0123"_s) << u"+15550100123"_s << u"Bob Example"_s;
    QTest::newRow("two of one name") << ann
            + u"INSERT INTO ABPerson(ROWID, First, Last, Prefix) VALUES (2, 'Ann', 'Example', "
              "'Dr.'); INSERT INTO ABMultiValue(record_id, property, value) VALUES (2, 3, "
              "'5550100123');"_s << u"+15550100123"_s
                                     << u"Dr. Ann Example"_s;
    const QString linked =
        u"INSERT INTO ABPerson(ROWID, First, PersonLink, IsPreferredName) VALUES (1, 'A.', 7, 0), "
        "(2, 'Ann', 7, 1);"
        "INSERT INTO ABMultiValue(record_id, property, value) VALUES (1, 3, '5550100123');"_s;
    QTest::newRow("linked cards") << linked + u"INSERT INTO ABPersonLink VALUES (7, 2);"_s
                                  << u"5550100123"_s << u"Ann"_s;
    QTest::newRow("linked by preference")
        << linked + u"INSERT INTO ABPersonLink VALUES (7, -1);"_s << u"5550100123"_s << u"Ann"_s;
    QTest::newRow("link without a row") << linked << u"5550100123"_s << u"A."_s;
    QTest::newRow("company")
        << u"INSERT INTO ABPerson(ROWID, First, Organization, Kind) VALUES (1, 'Carl', 'Works', 1);"
           "INSERT INTO ABMultiValue(record_id, property, value) VALUES (1, 3, '5550100123');"_s
        << u"5550100123"_s << u"Works"_s;
    QTest::newRow("without a name")
        << u"INSERT INTO ABPerson(ROWID) VALUES (1);"
           "INSERT INTO ABMultiValue(record_id, property, value) VALUES (1, 4, 'x@example.org'), "
           "(1, 3, '555 010 0123');"_s
        << u"x@example.org"_s << u"555 010 0123"_s;
    QTest::newRow("value of no card")
        << u"INSERT INTO ABMultiValue(record_id, property, value) VALUES (9, 3, '5550100123');"_s
        << u"5550100123"_s << QString();
}

void tst_AddressBook::namesPeople()
{
    QFETCH(QString, rows);
    QFETCH(QString, address);
    BackupFixture fixture;
    fixture.writer.addFile(u"HomeDomain"_s,
                           u"Library/AddressBook/AddressBook.sqlitedb"_s,
                           BackupFixture::database(kTables + rows.toUtf8()));
    QVERIFY(fixture.writer.finish());
    auto files = PhoneBackup::BackupFiles::open(fixture.root(), {});
    QVERIFY(files);
    PhoneBackup::Source source(files.take(), {});
    QTEST(source.addressBook().name(address), "name");
    QTEST(source.addressBook().name(address), "name"); // from memory
    QVERIFY(source.problems().isEmpty());
}

void tst_AddressBook::readsOldAndDamagedTables_data()
{
    QTest::addColumn<QByteArray>("database");
    QTest::addColumn<bool>("known");
    QTest::addColumn<int>("losses");

    const QByteArray old = BackupFixture::database(
        "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT, Last TEXT);"
        "CREATE TABLE ABMultiValue (record_id INTEGER, property INTEGER, label INTEGER, value "
        "TEXT);"
        "INSERT INTO ABPerson VALUES (1, 'Ann', 'Example');"
        "INSERT INTO ABMultiValue VALUES (1, 3, NULL, '5550100123');");
    QTest::newRow("old") << old << true << 0;
    QTest::newRow("no values") << BackupFixture::database(
        "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT)")
                               << false << 0;
    QTest::newRow("no people") << BackupFixture::database("CREATE TABLE t (a)") << false << 1;
    QTest::newRow("no database") << QByteArray(5000, 'x') << false << 1;
    QTest::newRow("cut off") << old.first(4096) << false << 1;
}

void tst_AddressBook::readsOldAndDamagedTables()
{
    QFETCH(QByteArray, database);
    BackupFixture fixture;
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, database);
    QVERIFY(fixture.writer.finish());
    auto files = PhoneBackup::BackupFiles::open(fixture.root(), {});
    QVERIFY(files);
    PhoneBackup::Source source(files.take(), {});
    QTEST(source.addressBook().name(u"5550100123"_s) == u"Ann Example"_s, "known");
    const QList<PhoneBackup::Problem> problems = source.problems();
    QTEST(int(std::count_if(problems.begin(), problems.end(), [](auto &p) { return p.loss; })),
          "losses");
}

QTEST_GUILESS_MAIN(tst_AddressBook)
#include "tst_AddressBook.moc"
