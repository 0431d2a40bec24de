#include "BackupFixture.h"
#include "auto/sample/SqliteRows.h"
#include "sample/WhatsappCalls.h"
#include "sample/WhatsappDatabase.h"
#include "sample/WhatsappShowcase.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCalls = 15;
const QString kHome = u"HomeDomain"_s;
const QString kStore = u"Library/CallHistoryDB/CallHistory.storedata"_s;
const QString kEarly = u"Library/CallHistoryDB/CallHistoryTemp.storedata"_s;
const QString kOld = u"Library/CallHistory/call_history.db"_s;

const QByteArray kTable = "CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY, ZADDRESS, ZNAME, "
                          "ZDATE, ZDURATION, ZORIGINATED, ZANSWERED, ZUNIQUE_ID);";
const QByteArray kOldTable = "CREATE TABLE call (ROWID INTEGER PRIMARY KEY, address, date, "
                             "duration, flags, name);";

QByteArray store(const QByteArray &rows)
{
    return BackupFixture::database(
        (kTable + "INSERT INTO ZCALLRECORD VALUES " + rows + ';').constData());
}

//! The rows of the table: cells parted by "|".
QStringList calls(BackupFixture &fixture)
{
    PhoneItems::Backup *backup = fixture.open();
    QStringList lines;
    const BkData *data = backup ? backup->getBkData(kCalls) : nullptr;
    for (int row = 0; data && row < data->count(1); ++row) {
        QStringList cells;
        for (int column = 0; column < data->column(); ++column)
            cells.append(data->value(row, column));
        lines.append(cells.join(u'|'));
    }
    return lines;
}

} // namespace

class tst_CallHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void writesCells_data();
    void writesCells();
    void writesCellsOfOldDatabases_data();
    void writesCellsOfOldDatabases();
    void namesCallers();
    void namesTheOnesOfAGroup();
    void readsCallsOfWhatsapp_data();
    void readsCallsOfWhatsapp();
    void prefersTheNewestPlace_data();
    void prefersTheNewestPlace();
    void takesEachCallOnce();
    void sortsTheNewestFirst();
    void readsWhateverTheDatabase_data();
    void readsWhateverTheDatabase();
    void saysWhatABackupCannotHold_data();
    void saysWhatABackupCannotHold();
    void readsOnBehindADamagedPage();
    void readsRealCalls();
};

void tst_CallHistory::initTestCase()
{
    qputenv("TZ", "America/New_York");
    ::tzset();
}

void tst_CallHistory::writesCells_data()
{
    QTest::addColumn<QByteArray>("row"); // address, name, date, duration, originated, answered
    QTest::addColumn<QString>("cells");

    QTest::newRow("incoming") << "'+15550100',NULL,700000000.5,61.9,0,1"_ba
                              << u"|+15550100|Incoming|2023-03-08 15:26|1:01"_s;
    QTest::newRow("bytes for a number") << "CAST('+15550100' AS BLOB),NULL,700000000,3,1,0"_ba
                                        << u"|+15550100|Outgoing|2023-03-08 15:26|0:03"_s;
    QTest::newRow("missed") << "'a@b.org','Shop',715000000,0,0,0"_ba
                            << u"Shop|a@b.org|Missed|2023-08-29 07:06|0:00"_s;
    QTest::newRow("not known whether it was answered")
        << "'1',NULL,700000000,0,0,NULL"_ba << u"|1|Incoming|2023-03-08 15:26|0:00"_s;
    QTest::newRow("withheld") << "NULL,NULL,700000000,3599.9,0,1"_ba
                              << u"Unknown||Incoming|2023-03-08 15:26|59:59"_s;
    QTest::newRow("withheld, empty")
        << "'',NULL,700000000,3600,0,1"_ba << u"Unknown||Incoming|2023-03-08 15:26|1:00:00"_s;
    QTest::newRow("hours") << "'1',NULL,700000000,36123,0,1"_ba
                           << u"|1|Incoming|2023-03-08 15:26|10:02:03"_s;
    QTest::newRow("seconds since 1970")
        << "'1',NULL,1678307200,1,0,1"_ba << u"|1|Incoming|2023-03-08 15:26|0:01"_s;
    QTest::newRow("no date") << "'1',NULL,0,1,0,1"_ba << u"|1|Incoming||0:01"_s;
    QTest::newRow("date out of range") << "'1',NULL,1e300,-1,0,1"_ba << u"|1|Incoming||"_s;
    QTest::newRow("date before all phones") << "'1',NULL,-1e12,1e300,0,1"_ba << u"|1|Incoming||"_s;
    QTest::newRow("endless") << "'1',NULL,9e999,9e999,0,1"_ba << u"|1|Incoming||"_s;
    QTest::newRow("texts where numbers are due")
        << "'1','<b>','soon','long','x','y'"_ba << u"<b>|1|Incoming||"_s;
}

void tst_CallHistory::writesCells()
{
    QFETCH(QByteArray, row);
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kStore, store("(1," + row + ",'u')"));
    QTEST(calls(fixture).join(u'\n'), "cells");
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_CallHistory::writesCellsOfOldDatabases_data()
{
    QTest::addColumn<QByteArray>("row"); // address, date, duration, flags, name
    QTest::addColumn<QString>("cells");

    QTest::newRow("incoming") << "'+15550100',1300000000,5,4,NULL"_ba
                              << u"|+15550100|Incoming|2011-03-13 03:06|0:05"_s;
    QTest::newRow("missed") << "'+15550100',1300000000,0,4,NULL"_ba
                            << u"|+15550100|Missed|2011-03-13 03:06|0:00"_s;
    QTest::newRow("outgoing, never answered") << "'+15550100',1300000000,0,65557,'Bo'"_ba
                                              << u"Bo|+15550100|Outgoing|2011-03-13 03:06|0:00"_s;
    QTest::newRow("withheld") << "'',0,0,0,NULL"_ba << u"Unknown||Missed||0:00"_s;
}

void tst_CallHistory::writesCellsOfOldDatabases()
{
    QFETCH(QByteArray, row);
    BackupFixture fixture;
    fixture.writer.addFile(
        u"WirelessDomain"_s,
        kOld,
        BackupFixture::database(
            (kOldTable + "INSERT INTO call VALUES (1," + row + ");").constData()));
    QTEST(calls(fixture).join(u'\n'), "cells");
}

void tst_CallHistory::namesCallers()
{
    BackupFixture fixture;
    fixture.writer.addFile(
        kHome,
        u"Library/AddressBook/AddressBook.sqlitedb"_s,
        BackupFixture::database("CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First, Last);"
                                "CREATE TABLE ABMultiValue (record_id, property, value);"
                                "INSERT INTO ABPerson VALUES (1, 'Ann', 'Example');"
                                "INSERT INTO ABMultiValue VALUES (1, 3, '(202) 555-0142');"));
    fixture.writer.addFile(
        kHome,
        kStore,
        store("(1,'+12025550142','From the network',3,0,0,1,'a'),(2,'+12025550143','Shop',2,0,0,1,"
              "'b')"));
    const QStringList found = calls(fixture);
    QCOMPARE(found.size(), 2);
    QVERIFY2(found[0].startsWith(u"Ann Example|+12025550142|"_s), qPrintable(found[0]));
    QVERIFY2(found[1].startsWith(u"Shop|+12025550143|"_s), qPrintable(found[1]));
}

void tst_CallHistory::namesTheOnesOfAGroup()
{
    BackupFixture fixture;
    const QByteArray sql = kTable
        + "CREATE TABLE ZHANDLE (Z_PK INTEGER PRIMARY KEY, ZVALUE);"
          "CREATE TABLE Z_7REMOTEPARTICIPANTHANDLES (Z_7REMOTEPARTICIPANTCALLS, "
          "Z_9REMOTEPARTICIPANTHANDLES);"
          "INSERT INTO ZHANDLE VALUES (1, '+1555'), (2, 'a@b.org'), (3, '');"
          "INSERT INTO Z_7REMOTEPARTICIPANTHANDLES VALUES (1,1),(1,2),(1,3),(1,1),(1,99),(2,2),"
          "(77,1);"
          "INSERT INTO ZCALLRECORD VALUES (1,NULL,NULL,3,0,1,1,'a'),(2,'+1666',NULL,2,0,1,1,'b');";
    fixture.writer.addFile(kHome, kStore, BackupFixture::database(sql.constData()));
    const QStringList found = calls(fixture);
    QCOMPARE(found.size(), 2);
    QVERIFY2(found[0].startsWith(u"|+1555, a@b.org|Outgoing"_s), qPrintable(found[0]));
    QVERIFY2(found[1].startsWith(u"|+1666|"_s), qPrintable(found[1]));
}

void tst_CallHistory::readsCallsOfWhatsapp_data()
{
    QTest::addColumn<QByteArray>("log"); // of WhatsApp
    QTest::addColumn<QByteArray>("rows"); // of the phone
    QTest::addColumn<QStringList>("expected");

    const auto listed = [](const char *values) {
        return "INSERT INTO ZWAAGGREGATECALLEVENT(Z_PK, ZINCOMING, ZMISSED, ZVIDEO) VALUES "
            + QByteArray(values) + ';';
    };
    const auto call = [](const char *values, int seconds = 3) { // the line, outcome, who rang
        return "INSERT INTO ZWACDCALLEVENT(ZDATE, ZDURATION, Z1CALLEVENTS, ZOUTCOME,"
               " ZGROUPCALLCREATORUSERJIDSTRING) VALUES (700000000 + "
            + QByteArray::number(seconds) + ", 61.9, " + values + ");";
    };
    const auto people = [](const char *values) {
        return "INSERT INTO ZWACDCALLEVENTPARTICIPANT(Z1PARTICIPANTS, ZJIDSTRING) VALUES "
            + QByteArray(values) + ';';
    };
    const QByteArray ann = people("(1, '12025550142@s.whatsapp.net')");
    const QByteArray outgoing = listed("(1, 0, 0, 0)");
    const QByteArray incoming = listed("(1, 1, 0, 0)");
    const QByteArray byAnn = call("1, 0, '12025550142@s.whatsapp.net'");
    const QByteArray byOwner = call("1, 0, '15550199@s.whatsapp.net'");
    const auto add = [](const char *name,
                        const QByteArray &log,
                        const QByteArray &rows,
                        const QStringList &expected) {
        QTest::newRow(name) << log << rows << expected;
    };
    const QString when = u"|2023-03-08 15:26|1:01"_s;
    const QString annIn = u"Ann|+12025550142|Incoming (WhatsApp)"_s + when;
    const QString annOut = u"Ann|+12025550142|Outgoing (WhatsApp)"_s + when;
    add("outgoing", outgoing + byOwner + ann, {}, { annOut });
    add("incoming, by who rang", incoming + byAnn, {}, { annIn });
    add("video",
        listed("(1, 1, 0, 1)") + byAnn + ann,
        {},
        { u"Ann|+12025550142|Incoming (WhatsApp video)"_s + when });
    const QString missed = u"Ann|+12025550142|Missed (WhatsApp)"_s + when;
    add("missed, by the list", listed("(1, 1, 1, 0)") + byAnn, {}, { missed });
    add("missed, by the outcome",
        incoming + call("1, 4, '12025550142@s.whatsapp.net'"),
        {},
        { missed });
    add("not answered", outgoing + call("1, 1, NULL") + ann, {}, { annOut });
    add("without its line in the list",
        byAnn + call("1, 0, NULL", 2),
        {},
        { annIn, u"Unknown||Call (WhatsApp)"_s + when });
    add("two calls in a line",
        incoming + byAnn + call("1, 1, NULL", 2) + ann,
        {},
        { annIn, missed });
    add("several people, without the owner",
        outgoing + byOwner + ann
            + people("(1, '15550199@s.whatsapp.net'), (1, '12025550143:2@s.whatsapp.net'),"
                     " (1, '12025550142:1@s.whatsapp.net'), (1, '205@lid'), (1, '206@lid'),"
                     " (9, '1@s.whatsapp.net')"),
        {},
        { u"Ann, +12025550143, bobby, Unknown|+12025550142, +12025550143, +12025550144|"
          "Outgoing (WhatsApp)"_s
          + when });
    add("a number without a name",
        incoming + call("1, 0, '12025550143@s.whatsapp.net'"),
        {},
        { u"|+12025550143|Incoming (WhatsApp)"_s + when });
    add("group",
        incoming + byAnn + "UPDATE ZWACDCALLEVENT SET ZGROUPJIDSTRING = '1@g.us';",
        {},
        { u"Crew (Ann)|+12025550142|Incoming (WhatsApp)"_s + when });
    const auto phone = [](const char *address, int seconds, bool isOutgoing) {
        return "('" + QByteArray(address) + "', 'Shop', 700000000 + " + QByteArray::number(seconds)
            + ", 65, " + (isOutgoing ? "1" : "0") + ", 1, 'net.whatsapp.WhatsApp')";
    };
    add("in the phone's history, too",
        outgoing + byOwner + ann,
        phone("12025550142@s.whatsapp.net", 63, true),
        { u"Ann|+12025550142|Outgoing (WhatsApp)|2023-03-08 15:26|1:05"_s });
    add("in the phone's history, which has a name",
        incoming + call("1, 0, '12025550143@s.whatsapp.net'"),
        phone("(202) 555-0143", 0, false),
        { u"Shop|+12025550143|Incoming (WhatsApp)|2023-03-08 15:26|1:05"_s });
    const QString other = u"|Outgoing (WhatsApp)|2023-03-08 15:27|1:05"_s;
    add("another one in the phone's history: later, the other way, somebody else's, nobody's",
        outgoing + byOwner + ann,
        phone("+12025550142", 64, true) + ',' + phone("+12025550142", 65, false) + ','
            + phone("+12025550143", 66, true) + ',' + phone("", 67, true),
        { u"Shop"_s + u"|"_s + other,
          u"Shop|+12025550143"_s + other,
          u"Shop|+12025550142|Incoming (WhatsApp)|2023-03-08 15:27|1:05"_s,
          u"Shop|+12025550142"_s + other,
          annOut });
}

void tst_CallHistory::readsCallsOfWhatsapp()
{
    QFETCH(QByteArray, log);
    QFETCH(QByteArray, rows);
    BackupFixture fixture;
    const auto add = [&](const QString &domain, const QString &path, const QByteArray &sql) {
        fixture.writer.addFile(domain, path, BackupFixture::database(sql.constData()));
    };
    const QString domain = Sample::whatsappDomain();
    add(domain, u"CallHistory.sqlite"_s, Sample::whatsappCallTables() + log);
    add(domain,
        u"ChatStorage.sqlite"_s,
        Sample::whatsappTables()
            + "INSERT INTO ZWAPROFILEPUSHNAME(ZJID, ZPUSHNAME) VALUES"
              " ('12025550142@s.whatsapp.net', 'Ann'), ('12025550144@s.whatsapp.net', 'bobby');"
              "INSERT INTO ZWACHATSESSION(Z_PK, ZCONTACTJID, ZPARTNERNAME) VALUES"
              " (1, '1@g.us', 'Crew');");
    add(domain,
        u"LID.sqlite"_s,
        "CREATE TABLE ZWAPHONENUMBERLIDPAIR (ZLID, ZPHONENUMBER);"
        "INSERT INTO ZWAPHONENUMBERLIDPAIR VALUES ('205@lid', '12025550144');");
    add(kHome,
        kStore,
        "CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY, ZADDRESS, ZNAME, ZDATE, ZDURATION,"
        " ZORIGINATED, ZANSWERED, ZSERVICE_PROVIDER);"
            + (rows.isEmpty() ? QByteArray()
                              : "INSERT INTO ZCALLRECORD(ZADDRESS, ZNAME, ZDATE, ZDURATION,"
                                " ZORIGINATED, ZANSWERED, ZSERVICE_PROVIDER) VALUES "
                       + rows + ';'));
    QTEST(calls(fixture), "expected");
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_CallHistory::prefersTheNewestPlace_data()
{
    QTest::addColumn<QByteArrayList>("stores"); // store, early, old, old in the other place
    QTest::addColumn<QString>("numbers");

    const QByteArray one = store("(1,'new',NULL,2,0,0,1,'a')");
    const QByteArray early = store("(1,'early',NULL,1,0,0,1,'b')");
    const QByteArray none = BackupFixture::database(kTable.constData());
    const auto old = [](const char *number) {
        return BackupFixture::database(
            (kOldTable + "INSERT INTO call VALUES (1,'" + number + "',1,1,4,NULL);").constData());
    };
    QTest::newRow("all") << QByteArrayList { one, early, old("o"), old("p") } << u"new early"_s;
    QTest::newRow("early only") << QByteArrayList { {}, early, old("o"), {} } << u"early"_s;
    QTest::newRow("nothing in the store")
        << QByteArrayList { none, {}, old("o"), old("p") } << u"o"_s;
    QTest::newRow("the other place") << QByteArrayList { {}, {}, {}, old("p") } << u"p"_s;
    QTest::newRow("nothing") << QByteArrayList { none, none, {}, {} } << QString();
}

void tst_CallHistory::prefersTheNewestPlace()
{
    QFETCH(QByteArrayList, stores);
    BackupFixture fixture;
    const QList<std::pair<QString, QString>> places {
        { kHome, kStore }, { kHome, kEarly }, { u"WirelessDomain"_s, kOld }, { kHome, kOld }
    };
    for (int i = 0; i < places.size(); ++i) {
        if (!stores[i].isEmpty())
            fixture.writer.addFile(places[i].first, places[i].second, stores[i]);
    }
    QStringList numbers;
    for (const QString &call : calls(fixture))
        numbers.append(call.section(u'|', 1, 1));
    QTEST(numbers.join(u' '), "numbers");
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_CallHistory::takesEachCallOnce()
{
    BackupFixture fixture;
    fixture.writer.addFile(
        kHome, kStore, store("(1,'1',NULL,2,0,0,1,'same'),(2,'2',NULL,3,0,0,1,NULL)"));
    fixture.writer.addFile(
        kHome, kEarly, store("(1,'1',NULL,2,0,0,1,'same'),(2,'3',NULL,1,0,0,1,NULL)"));
    QCOMPARE(calls(fixture).size(), 3);
}

void tst_CallHistory::sortsTheNewestFirst()
{
    BackupFixture fixture;
    fixture.writer.addFile(kHome,
                           kStore,
                           store("(1,'b',NULL,2,0,0,1,'1'),(2,'c',NULL,0,0,0,1,'2'),"
                                 "(3,'a',NULL,1678307200,0,0,1,'3')"));
    QStringList numbers;
    for (const QString &call : calls(fixture))
        numbers.append(call.section(u'|', 1, 1));
    QCOMPARE(numbers.join(u' '), u"a b c"_s);
}

void tst_CallHistory::readsWhateverTheDatabase_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isLoss");

    const QByteArray log = BackupFixture::database(
        (Sample::whatsappCallTables() + "INSERT INTO ZWACDCALLEVENT(ZDATE) VALUES (1), (NULL);")
            .constData());
    QTest::newRow("WhatsApp's log") << log << 2 << false;
    QTest::newRow("WhatsApp's log, no database") << QByteArray(5000, 'x') << 0 << true;
    QTest::newRow("WhatsApp's log, other tables")
        << BackupFixture::database("CREATE TABLE a (b)") << 0 << true;
    QTest::newRow("WhatsApp's log, few columns")
        << BackupFixture::database("CREATE TABLE ZWACDCALLEVENT (Z_PK INTEGER PRIMARY KEY);"
                                   "INSERT INTO ZWACDCALLEVENT VALUES (1)")
        << 1 << false;
    const QByteArray whole = store("(1,'1',NULL,2,0,0,1,'a')");
    QTest::newRow("whole") << whole << 1 << false;
    QTest::newRow("no bytes") << QByteArray() << 0 << true;
    QTest::newRow("no database") << QByteArray(5000, 'x') << 0 << true;
    QTest::newRow("cut in half") << whole.first(whole.size() / 2) << 0 << true;
    QTest::newRow("other tables") << BackupFixture::database("CREATE TABLE a (b)") << 0 << true;
    QTest::newRow("few columns") << BackupFixture::database(
        "CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY, ZDATE);"
        "INSERT INTO ZCALLRECORD VALUES (1,2)")
                                 << 1 << false;
    QTest::newRow("participants without handles")
        << BackupFixture::database((kTable
                                    + "CREATE TABLE Z_2REMOTEPARTICIPANTHANDLES (a, b);"
                                      "INSERT INTO ZCALLRECORD VALUES (1,'',0,0,0,0,0,0);")
                                       .constData())
        << 1 << false;
}

void tst_CallHistory::readsWhateverTheDatabase()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isLoss);
    const bool isWhatsapp = QByteArrayView(QTest::currentDataTag()).startsWith("WhatsApp");
    const QString domain = isWhatsapp ? Sample::whatsappDomain() : kHome;
    const QString path = isWhatsapp ? u"CallHistory.sqlite"_s : kStore;
    BackupFixture fixture;
    if (isWhatsapp)
        fixture.writer.addFile(kHome, kStore, BackupFixture::database(kTable.constData()));
    fixture.writer.addFile(domain, path, content);
    QTEST(int(calls(fixture).size()), "count");
    QCOMPARE(fixture.problems(),
             isLoss ? QStringList { u"15 %1/%2 (loss)"_s.arg(domain, path) } : QStringList());
}

void tst_CallHistory::saysWhatABackupCannotHold_data()
{
    QTest::addColumn<QString>("release");
    QTest::addColumn<bool>("hasStore");
    QTest::addColumn<bool>("said");

    QTest::newRow("newer phone") << u"14.3"_s << false << true;
    QTest::newRow("first of the newer ones") << u"13.0"_s << false << true;
    QTest::newRow("older phone") << u"12.5.7"_s << false << false;
    QTest::newRow("not known") << QString() << false << false;
    QTest::newRow("it is there") << u"17.1"_s << true << false;
}

void tst_CallHistory::saysWhatABackupCannotHold()
{
    QFETCH(QString, release);
    QFETCH(bool, hasStore);
    QFETCH(bool, said);
    BackupFixture fixture;
    fixture.writer.setInfo(u"Product Version"_s, release);
    fixture.writer.setManifest(u"Lockdown"_s, QVariant());
    fixture.writer.addFolder(kHome, u"Library"_s);
    if (hasStore)
        fixture.writer.addFile(kHome, kStore, BackupFixture::database(kTable.constData()));
    QCOMPARE(calls(fixture), QStringList());
    const QList<PhoneBackup::Problem> problems = fixture.open()->problems();
    QCOMPARE(problems.size(), 0); // none before it is looked for
    QCOMPARE(calls(fixture), QStringList());
    const auto found = fixture.problems();
    QCOMPARE(found, said ? QStringList { u"15 "_s } : QStringList());
}

// Pages in the middle of the file are overwritten: what lies before and behind them is there, and
// each call once.
void tst_CallHistory::readsOnBehindADamagedPage()
{
    QByteArrayList rows;
    for (int i = 1; i <= 2000; ++i) {
        const QByteArray number = QByteArray::number(i);
        rows.append('(' + number + ",'" + QByteArray(40, 'x') + number + "',NULL," + number
                    + ",0,0,1,'" + number + "')");
    }
    QByteArray content = store(rows.join(','));
    const qsizetype middle = content.size() / 2 / 4096 * 4096;
    content.replace(middle, 4096, QByteArray(4096, '\xff'));
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kStore, content);
    const QStringList found = calls(fixture);
    QVERIFY2(found.size() > 1500 && found.size() < 2000, qPrintable(QString::number(found.size())));
    QCOMPARE(QSet<QString>(found.begin(), found.end()).size(), found.size());
    QCOMPARE(fixture.problems().size(), 1);
}

void tst_CallHistory::readsRealCalls()
{
    const QString given = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    const QString root = given.isEmpty()
        ? QDir(QStringLiteral(TEST_SOURCE_DIR)).filePath(u"../../shared/real"_s)
        : given;
    const QString path = root + u"/calls/CallHistory.storedata"_s;
    if (!QFileInfo::exists(path))
        QSKIP("no real calls: set DATAEXPORT_REAL_DATA to where they are");
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kStore, Files::read(path));
    const QStringList found = calls(fixture);
    const auto rows = sqliteRows(path, "SELECT ZADDRESS FROM ZCALLRECORD ORDER BY ZDATE DESC");
    QCOMPARE(found.size(), rows.size());
    for (int i = 0; i < rows.size(); ++i) {
        const QString number = found[i].section(u'|', 1, 1);
        // A call without a number of its own is one of a group.
        QVERIFY2(rows[i][0].isEmpty() ? number.contains(u", "_s)
                                      : number == QString::fromUtf8(rows[i][0]),
                 qPrintable(found[i]));
    }
    QCOMPARE(fixture.problems(), QStringList());
}

QTEST_GUILESS_MAIN(tst_CallHistory)
#include "tst_CallHistory.moc"
