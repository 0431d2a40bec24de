#include "BackupFixture.h"
#include "PhoneItems/planner/RepeatText.h"
#include "auto/sample/SqliteRows.h"
#include "sample/PlannerSample.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kReminders = 13;
constexpr int kCalendar = 14;
const QString kHome = u"HomeDomain"_s;
const QString kCalendarPath = u"Library/Calendar/Calendar.sqlitedb"_s;
const QString kStores = u"Library/Reminders/Container_v1/Stores/"_s;

QString realData(const QString &path)
{
    const QString given = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    return (given.isEmpty() ? QDir(QStringLiteral(TEST_SOURCE_DIR)).filePath(u"../../shared/real"_s)
                            : given)
        + u'/' + path;
}

} // namespace

//! Events of the calendar, and reminders.
class tst_Planner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void saysHowItRepeats_data();
    void saysHowItRepeats();
    void readsEveryStoreOfReminders_data();
    void readsEveryStoreOfReminders();
    void readsARealCalendar();
    void readsRealReminders();
};

void tst_Planner::initTestCase()
{
    qputenv("TZ", "America/New_York"); // times are local ones
    ::tzset();
}

void tst_Planner::saysHowItRepeats_data()
{
    QTest::addColumn<int>("frequency");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("until");
    QTest::addColumn<QString>("specifier");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name,
                        int frequency,
                        int interval,
                        int count,
                        const QString &until,
                        const QString &specifier,
                        const QString &expected) {
        QTest::newRow(name) << frequency << interval << count << until << specifier << expected;
    };
    row("daily", 1, 1, 0, {}, {}, u"Repeats every day"_s);
    row("every two weeks", 2, 2, 0, {}, {}, u"Repeats every 2 weeks"_s);
    row("monthly, so many times", 3, 1, 10, {}, {}, u"Repeats every month, 10 times"_s);
    row("once", 3, 0, 1, {}, {}, u"Repeats every month, once"_s);
    row("yearly until", 4, 1, 0, u"2024-05-01"_s, {}, u"Repeats every year until 2024-05-01"_s);
    row("days",
        2,
        1,
        0,
        {},
        u"D=0MO,0WE,0FR"_s,
        u"Repeats every week on Monday, Wednesday and Friday"_s);
    row("days in the long form",
        2,
        1,
        0,
        {},
        u"FREQ=WEEKLY;BYDAY=SU"_s,
        u"Repeats every week on Sunday"_s);
    row("days of a month",
        3,
        1,
        0,
        {},
        u"D=1MO,-1FR"_s,
        u"Repeats every month on the first Monday and the last Friday"_s);
    row("numbers of days",
        3,
        1,
        0,
        {},
        u"BYMONTHDAY=1,15,-1"_s,
        u"Repeats every month on day 1, 15 and the last of the month"_s);
    row("months", 4, 1, 0, {}, u"O=3,12"_s, u"Repeats every year in March and December"_s);
    row("frequency in the text alone", 0, 1, 0, {}, u"FREQ=DAILY"_s, u"Repeats every day"_s);
    row("no frequency", 0, 1, 0, {}, {}, u"Repeats"_s);
    row("unknown frequency", 99, 7, 3, {}, {}, u"Repeats, 3 times"_s);
    row("not understood", 2, 1, 0, {}, u"D=0MO;S=2"_s, u"Repeats every week (D=0MO;S=2)"_s);
    row("contradiction", 1, 1, 0, {}, u"FREQ=WEEKLY"_s, u"Repeats every day (FREQ=WEEKLY)"_s);
    row("absurd parts", 2, -5, -1, {}, u"D=99XX"_s, u"Repeats every week (D=99XX)"_s);
}

void tst_Planner::saysHowItRepeats()
{
    QFETCH(int, frequency);
    QFETCH(int, interval);
    QFETCH(int, count);
    QFETCH(QString, until);
    QFETCH(QString, specifier);
    QFETCH(QString, expected);
    using PhoneBackup::PlannedTime;
    const QDateTime base(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    PhoneBackup::RepeatRule rule;
    rule.interval = interval;
    rule.count = count;
    if (!until.isEmpty()) {
        const QDateTime day(QDate::fromString(until, Qt::ISODate), QTime(0, 0), Qt::UTC);
        rule.until = PlannedTime(double(base.secsTo(day)), {}, PlannedTime::Kind::Day);
    }
    rule.setSpecifier(specifier, frequency);
    QCOMPARE(PhoneItems::repeatText(rule), expected);
}

void tst_Planner::readsEveryStoreOfReminders_data()
{
    QTest::addColumn<int>("release");
    for (const int release : { 6, 12, 13, 15, 16, 17, 18 })
        QTest::addRow("iOS %d", release) << release;
}

void tst_Planner::readsEveryStoreOfReminders()
{
    QFETCH(int, release);
    constexpr int kFirstOfStores = 13;
    Sample::Options options;
    options.plannerRelease = release;
    options.events = options.reminders = 5;
    BackupFixture fixture;
    Sample::addPlanner(fixture.writer, options);
    const bool isOld = release < kFirstOfStores;
    QStringList expected {
        u"Buy rope|Errands|2023-06-17 08:15||12 mm, 30 m/Priority: high"_s,
        u"Pay the mooring|Errands|2023-06-18|2023-06-18 00:15|"_s,
        isOld ? u"Paint the hull|Crew|||Two coats <b>at least</b>/Priority: medium"_s
              : u"Paint the hull|Boatyard|||Two coats <b>at least</b>/Priority: medium"_s,
        isOld ? u"Sand it first|Crew|||Priority: low"_s
              : u"Sand it first|Boatyard|||Part of “Paint the hull”/Priority: low"_s,
    };
    if (!isOld)
        expected.append(u"Return the borrowed pump|Boatyard|2023-06-19 04:15|| [deleted]"_s);
    QCOMPARE(fixture.table(kReminders), expected);
    QCOMPARE(
        fixture.table(kCalendar),
        QStringList(
            { u"Crew meeting|Crew|Marigold Boatyard/4 Slipway Lane|2023-06-17 05:15|2023-06-17 "
              u"06:45|"
              "Bring the rota & the key./Last one in locks up./Repeats every 2 weeks on Tuesday "
              "and "
              "Saturday/Organizer: Mara Lindqvist/Invited: noor@marigold.example"_s,
              u"Survey|Home|Harbour office|2023-06-18 10:15|2023-06-18 11:15|"
              "Ask about the keel bolts./https://meet.marigold.example/j/84715523360?pwd="_s
                  + u"Zm9yZWNhc3RsZQ"_s.repeated(9),
              u"Summer regatta|Crew||2023-06-27|2023-06-28|"_s,
              u"Launch day|Home||2023-07-07|2023-07-07|Repeats every year"_s,
              u"Sail to the islands ⛵|Home||2023-07-12 06:00|2023-07-13 00:00|"_s }));
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Planner::readsARealCalendar()
{
    const QString path = realData(u"calendar/Calendar.sqlitedb"_s);
    if (!QFileInfo::exists(path))
        QSKIP("no real calendar: set DATAEXPORT_REAL_DATA to where it is");
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kCalendarPath, Files::read(path));
    const auto wanted = sqliteRows(
        path,
        "SELECT i.summary, ifnull(c.title, ''), ifnull(l.title, ''), typeof(i.start_date) = 'real',"
        " (SELECT count(*) FROM Recurrence r WHERE r.owner_id = i.ROWID) FROM CalendarItem i LEFT "
        "JOIN Calendar c ON c.ROWID = i.calendar_id LEFT JOIN Location l ON l.ROWID = "
        "i.location_id "
        "WHERE ifnull(i.entity_type, 2) <> 3 AND ifnull(i.calendar_scale, '') <> 'gregorian'");
    const QStringList rows = fixture.table(kCalendar);
    QCOMPARE(rows.size(), wanted.size());
    for (const QByteArrayList &event : wanted) {
        const QStringList found =
            rows.filter(QString::fromUtf8(event[0] + '|' + event[1] + '|' + event[2]));
        QVERIFY2(found.size() == 1, event[0].constData());
        QCOMPARE(!found.first().section(u'|', 3, 3).isEmpty(), event[3] == "1");
        QCOMPARE(found.first().count(u"Repeats"_s), event[4].toInt());
    }
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Planner::readsRealReminders()
{
    BackupFixture fixture;
    QStringList expected;
    for (const QString &name : { u"cloud"_s, u"local"_s }) {
        const QString path = realData(u"reminders/reminders.1.%1.sqlite"_s.arg(name));
        if (!QFileInfo::exists(path))
            QSKIP("no real reminders: set DATAEXPORT_REAL_DATA to where they are");
        fixture.writer.addFile(kHome, kStores + u"Data-%1.sqlite"_s.arg(name), Files::read(path));
        const auto wanted =
            sqliteRows(path,
                       "SELECT r.ZTITLE, l.ZNAME, ifnull(r.ZMARKEDFORDELETION, 0) FROM "
                       "ZREMCDREMINDER r LEFT JOIN ZREMCDBASELIST l ON l.Z_PK = r.ZLIST");
        for (const QByteArrayList &row : wanted)
            expected.append(QString::fromUtf8(row[0] + '|' + row[1])
                            + (row[2] == "1" ? u" x"_s : QString()));
    }
    QStringList read;
    for (const QString &row : fixture.table(kReminders))
        read.append(row.section(u'|', 0, 1)
                    + (row.endsWith(" [deleted]"_L1) ? u" x"_s : QString()));
    expected.sort();
    read.sort();
    QCOMPARE(read, expected);
    QCOMPARE(fixture.problems(), QStringList());
}

QTEST_GUILESS_MAIN(tst_Planner)
#include "tst_Planner.moc"
