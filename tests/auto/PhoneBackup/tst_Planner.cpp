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
const QString kGroup = u"AppDomainGroup-group.com.apple.reminders"_s;
const QString kCalendarPath = u"Library/Calendar/Calendar.sqlitedb"_s;
const QString kStores = u"Library/Reminders/Container_v1/Stores/"_s;

const QByteArray kCalendarTables =
    "CREATE TABLE Calendar (ROWID INTEGER PRIMARY KEY, title);"
    "CREATE TABLE CalendarItem (ROWID INTEGER PRIMARY KEY, summary, location_id, description,"
    " start_date, start_tz, end_date, end_tz, all_day, calendar_id, orig_date, url, entity_type,"
    " priority, due_date, due_tz, due_all_day, completion_date, calendar_scale, conference_url);"
    "CREATE TABLE Location (ROWID INTEGER PRIMARY KEY, title, address);"
    "CREATE TABLE Recurrence (ROWID INTEGER PRIMARY KEY, frequency, interval, count, end_date,"
    " specifier, owner_id);"
    "CREATE TABLE ExceptionDate (ROWID INTEGER PRIMARY KEY, owner_id, date);"
    "INSERT INTO Calendar VALUES (1, 'Home');";

// An event with these columns; 700000000 is 2023-03-08 20:26:40 UTC, a Wednesday.
QByteArray eventSql(const QByteArray &assignments)
{
    return kCalendarTables
        + "INSERT INTO CalendarItem(ROWID, summary, calendar_id, start_date, start_tz, end_date,"
          " end_tz, all_day, entity_type) VALUES (5, 'E', 1, 700000000, 'Europe/Berlin', 700003600,"
          " 'Europe/Berlin', 0, 2);"
        + (assignments.isEmpty() ? QByteArray() : "UPDATE CalendarItem SET " + assignments + ';');
}

const QByteArray kReminderColumns =
    "(Z_PK INTEGER PRIMARY KEY, Z_ENT, ZALLDAY, ZCOMPLETED, ZFLAGGED, ZMARKEDFORDELETION,"
    " ZPRIORITY, ZLIST, ZPARENTREMINDER, ZCOMPLETIONDATE, ZDUEDATE, ZNOTES, ZTITLE);";

QByteArray reminderStore(int kind, const QByteArray &rows)
{
    return "CREATE TABLE ZREMCDREMINDER " + kReminderColumns
        + "CREATE TABLE ZREMCDBASELIST (Z_PK INTEGER PRIMARY KEY, ZNAME);"
          "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME);"
          "CREATE TABLE ZREMCDOBJECT (Z_PK INTEGER PRIMARY KEY, Z_ENT, ZREMINDER4);"
          "INSERT INTO Z_PRIMARYKEY VALUES ("
        + QByteArray::number(kind)
        + ", 'REMCDReminder'), (93, 'REMCDRecurrenceRule');"
          "INSERT INTO ZREMCDBASELIST VALUES (1, 'Errands'), (2, 'Work');"
        + rows;
}

// A reminder of list 1, with these columns.
QByteArray reminder(int key, const QByteArray &assignments)
{
    const QByteArray number = QByteArray::number(key);
    return "INSERT INTO ZREMCDREMINDER(Z_PK, Z_ENT, ZTITLE, ZLIST, ZCOMPLETED) VALUES (" + number
        + ", 9, 'R" + number + "', 1, 0);"
        + (assignments.isEmpty()
               ? QByteArray()
               : "UPDATE ZREMCDREMINDER SET " + assignments + " WHERE Z_PK = " + number + ';');
}

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
    void readsEvents_data();
    void readsEvents();
    void ordersEventsByTheirStart();
    void readsReminders_data();
    void readsReminders();
    void readsEveryStoreOfReminders_data();
    void readsEveryStoreOfReminders();
    void readsAllStoresOfThePlaceThatHasRows();
    void readsOddDatabases_data();
    void readsOddDatabases();
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

void tst_Planner::readsEvents_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QByteArray &sql, const QString &expected) {
        QTest::newRow(name) << sql << expected;
    };
    const QString times = u"2023-03-08 15:26|2023-03-08 16:26|"_s; // in New York
    row("plain", eventSql({}), u"E|Home||"_s + times);
    row("on the clock",
        eventSql("start_tz = '_float', end_tz = '_float'"),
        u"E|Home||2023-03-08 20:26|2023-03-08 21:26|"_s);
    row("without a zone", eventSql("start_tz = NULL, end_tz = NULL"), u"E|Home||"_s + times);
    row("end without a zone of its own",
        eventSql("start_tz = '_float', end_tz = NULL"),
        u"E|Home||2023-03-08 20:26|2023-03-08 21:26|"_s);
    const QByteArray allDay =
        "all_day = 1, start_tz = '_float', end_tz = '_float', start_date = 699926400, end_date = ";
    row("all day up to the last second",
        eventSql(allDay + "700012799"),
        u"E|Home||2023-03-08|2023-03-08|"_s);
    row("all day up to midnight",
        eventSql(allDay + "700012800"),
        u"E|Home||2023-03-08|2023-03-08|"_s);
    row("several days", eventSql(allDay + "700185600"), u"E|Home||2023-03-08|2023-03-10|"_s);
    row("all day without length",
        eventSql(allDay + "699926400"),
        u"E|Home||2023-03-08|2023-03-08|"_s);
    row("all day in a zone",
        eventSql("all_day = 1, start_tz = 'Asia/Tokyo', end_tz = 'Asia/Tokyo', start_date = "
                 "699894000, end_date = 699980400"),
        u"E|Home||2023-03-08|2023-03-08|"_s);
    row("all day in a zone that is none",
        eventSql(
            "all_day = 1, start_tz = '../../x', end_tz = NULL, start_date = 699926400, end_date "
            "= 700012800"),
        u"E|Home||2023-03-08|2023-03-08|"_s);
    row("before 1970",
        eventSql("start_date = -1500000000, end_date = NULL"),
        u"E|Home||1953-06-20 17:20||"_s);
    row("far ahead",
        eventSql("start_date = 3000000000, end_date = NULL"),
        u"E|Home||2096-01-25 00:20||"_s);
    row("no moment", eventSql("start_date = -63114076800, end_date = 1e300"), u"E|Home||||"_s);
    row("a text for a date", eventSql("start_date = 'soon', end_date = NULL"), u"E|Home||||"_s);
    row("without a calendar", eventSql("calendar_id = 99"), u"E|||"_s + times);
    row("birthday", eventSql("calendar_scale = 'gregorian'"), QString());
    row("reminder", eventSql("entity_type = 3"), QString());
    row("kind unset", eventSql("entity_type = NULL"), u"E|Home||"_s + times);
    row("place",
        eventSql("location_id = 1") + "INSERT INTO Location VALUES (1, 'HQ', '1 Way')",
        u"E|Home|HQ/1 Way|"_s + times);
    row("address alone",
        eventSql("location_id = 1") + "INSERT INTO Location VALUES (1, '', '1 Way')",
        u"E|Home|1 Way|"_s + times);
    row("description and links",
        eventSql("description = 'Bring cake', url = 'https://a.example', conference_url = "
                 "'https://a.example'"),
        u"E|Home||"_s + times + u"Bring cake/https://a.example"_s);
    row("repeated",
        eventSql("description = 'x'")
            + "INSERT INTO Recurrence VALUES (1, 2, 1, 0, 700617600, 'D=0WE', 5), (2, 1, 1, 0, "
              "NULL, '', 6);"
              "INSERT INTO ExceptionDate VALUES (1, 5, 700531200), (2, 5, 'x')",
        u"E|Home||"_s + times
            + u"x/Repeats every week on Wednesday until 2023-03-16/Except on 2023-03-15"_s);
    row("instead of an occurrence",
        eventSql("orig_date = 700000000"),
        u"E|Home||"_s + times + u"Instead of the repeated event on 2023-03-08 15:26"_s);
    row("people",
        eventSql({})
            + "CREATE TABLE Identity (display_name, address, first_name, last_name);"
              "CREATE TABLE Participant (ROWID INTEGER PRIMARY KEY, entity_type, identity_id, "
              "owner_id, email, phone_number);"
              "INSERT INTO Identity VALUES ('Ann', 'mailto:a@x', NULL, NULL), (NULL, 'MAILTO:b@x', "
              "NULL, NULL), (NULL, NULL, 'Cy', 'D');"
              "INSERT INTO Participant VALUES (1,8,1,5,NULL,NULL), (2,7,2,5,NULL,NULL), "
              "(3,7,3,5,NULL,NULL), (4,7,99,5,'e@x',NULL), (5,7,NULL,5,NULL,'+1')",
        u"E|Home||"_s + times + u"Organizer: Ann/Invited: b@x, Cy D, e@x, +1"_s);
    row("attached",
        eventSql({})
            + "CREATE TABLE Attachment (ROWID INTEGER PRIMARY KEY, owner_id, file_id);"
              "CREATE TABLE AttachmentFile (ROWID INTEGER PRIMARY KEY, filename); INSERT INTO "
              "Attachment VALUES (1, 5, 2), (2, 5, 7);"
              "INSERT INTO AttachmentFile VALUES (2, 'agenda.pdf')",
        u"E|Home||"_s + times + u"Attached: agenda.pdf"_s);
}

void tst_Planner::readsEvents()
{
    QFETCH(QByteArray, sql);
    QFETCH(QString, expected);
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kCalendarPath, BackupFixture::database(sql.constData()));
    QCOMPARE(fixture.table(kCalendar), expected.isEmpty() ? QStringList() : QStringList(expected));
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Planner::ordersEventsByTheirStart()
{
    BackupFixture fixture;
    fixture.writer.addFile(
        kHome,
        kCalendarPath,
        BackupFixture::database(
            (kCalendarTables
             + "INSERT INTO CalendarItem(ROWID, summary, start_date) VALUES (1, 'later', "
               "700000000),"
               " (2, 'undated', NULL), (3, 'first', -900000000), (4, 'as late', 700000000)")
                .constData()));
    const BkData *data = fixture.open()->getBkData(kCalendar);
    QStringList titles;
    for (const int row : data->recoverList())
        titles.append(data->value(row, 0) + u' ' + QString::number(data->at(row, true)->id()));
    QCOMPARE(titles.join(u", "_s), u"first 3, later 1, as late 4, undated 2"_s);
    QStringList names;
    for (int column = 0; column < data->column(); ++column)
        names.append(data->columnName(column));
    QCOMPARE(names.join(u", "_s), u"Title, Calendar, Location, Start, End, Notes"_s);
}

void tst_Planner::readsReminders_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const QByteArray &rows, const QStringList &expected) {
        QTest::newRow(name) << rows << expected;
    };
    row("plain", reminder(1, {}), { u"R1|Errands|||"_s });
    row("due", reminder(1, "ZDUEDATE = 700000000"), { u"R1|Errands|2023-03-08 15:26||"_s });
    row("due on a day, midnight on the clock",
        reminder(1, "ZALLDAY = 1, ZDUEDATE = 699926400"),
        { u"R1|Errands|2023-03-08||"_s });
    row("due on a day, midnight of the phone",
        reminder(1, "ZALLDAY = 1, ZDUEDATE = 699944400"),
        { u"R1|Errands|2023-03-08||"_s });
    row("done",
        reminder(1, "ZCOMPLETED = 1, ZCOMPLETIONDATE = 700000000"),
        { u"R1|Errands||2023-03-08 15:26|"_s });
    row("done some time", reminder(1, "ZCOMPLETED = 1"), { u"R1|Errands||Yes|"_s });
    row("opened again",
        reminder(1, "ZCOMPLETED = 0, ZCOMPLETIONDATE = 700000000"),
        { u"R1|Errands|||"_s });
    row("deleted", reminder(1, "ZMARKEDFORDELETION = 1"), { u"R1|Errands||| [deleted]"_s });
    row("notes and marks",
        reminder(1, "ZNOTES = 'n', ZFLAGGED = 1, ZPRIORITY = 1"),
        { u"R1|Errands|||n/Flagged/Priority: high"_s });
    row("other priorities",
        reminder(1, "ZPRIORITY = 5") + reminder(2, "ZPRIORITY = 9") + reminder(3, "ZPRIORITY = 77"),
        { u"R1|Errands|||Priority: medium"_s,
          u"R2|Errands|||Priority: low"_s,
          u"R3|Errands|||"_s });
    row("by lists, parts behind the whole",
        reminder(1, "ZLIST = 2") + reminder(2, {}) + reminder(3, {})
            + reminder(4, "ZPARENTREMINDER = 2"),
        { u"R2|Errands|||"_s,
          u"R4|Errands|||Part of “R2”"_s,
          u"R3|Errands|||"_s,
          u"R1|Work|||"_s });
    row("parts of each other",
        reminder(1, "ZPARENTREMINDER = 2") + reminder(2, "ZPARENTREMINDER = 1")
            + reminder(3, "ZPARENTREMINDER = 3"),
        { u"R2|Errands|||Part of “R1”"_s,
          u"R1|Errands|||Part of “R2”"_s,
          u"R3|Errands|||Part of “R3”"_s });
    row("no such list", reminder(1, "ZLIST = 99"), { u"R1||||"_s });
    row("repeated",
        reminder(1, {}) + "INSERT INTO ZREMCDOBJECT VALUES (1, 93, 1), (2, 94, 2)",
        { u"R1|Errands|||Repeats"_s });
    row("dates that are none",
        reminder(1, "ZDUEDATE = 'soon', ZCOMPLETED = 1, ZCOMPLETIONDATE = 1e300"),
        { u"R1|Errands||Yes|"_s });
    row("nothing", {}, {});
}

void tst_Planner::readsReminders()
{
    QFETCH(QByteArray, rows);
    QFETCH(QStringList, expected);
    BackupFixture fixture;
    fixture.writer.addFile(kHome,
                           kStores + u"Data-X.sqlite"_s,
                           BackupFixture::database(reminderStore(9, rows).constData()));
    QCOMPARE(fixture.table(kReminders), expected);
    QCOMPARE(fixture.problems(), QStringList());
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

void tst_Planner::readsAllStoresOfThePlaceThatHasRows()
{
    BackupFixture fixture;
    const auto add =
        [&](const QString &domain, const QString &path, const QByteArray &rows, int kind) {
            fixture.writer.addFile(
                domain, path, BackupFixture::database(reminderStore(kind, rows).constData()));
        };
    // The numbers of kinds differ, and so does what the numbers of reminders mean.
    add(kGroup, u"Container_v1/Stores/Data-local.sqlite"_s, {}, 81);
    add(kGroup, u"Container_v1/Stores/Data-A.sqlite"_s, reminder(1, "ZTITLE = 'a'"), 91);
    add(kGroup,
        u"Container_v1/Stores/Data-B.sqlite"_s,
        reminder(1, "ZTITLE = 'b'") + reminder(2, "ZPARENTREMINDER = 1"),
        71);
    add(kGroup, u"Container_v1/Stores/Data-B.sqlite.backup"_s, reminder(1, "ZTITLE = 'copy'"), 71);
    add(kHome, kStores + u"Data-A.sqlite"_s, reminder(1, "ZTITLE = 'left over'"), 9);
    QCOMPARE(fixture.table(kReminders),
             QStringList({ u"a|Errands|||"_s, u"b|Errands|||"_s, u"R2|Errands|||Part of “b”"_s }));
    const BkData *data = fixture.open()->getBkData(kReminders);
    QVERIFY(data->at(0, true)->id() != data->at(1, true)->id());
}

void tst_Planner::readsOddDatabases_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<int>("least"); // rows
    QTest::addColumn<bool>("isLossTold");

    QByteArray events = kCalendarTables;
    QByteArray reminders;
    for (int i = 1; i <= 400; ++i) {
        const QByteArray number = QByteArray::number(i);
        events += "INSERT INTO CalendarItem(ROWID, summary, description) VALUES (" + number
            + ", 'E', '" + QByteArray(100, 'x') + "');";
        reminders += reminder(i, "ZNOTES = '" + QByteArray(100, 'x') + "'");
    }
    const QByteArray calendar = BackupFixture::database(events.constData());
    const QByteArray store = BackupFixture::database(reminderStore(9, reminders).constData());
    for (const auto &[type, whole] :
         { std::pair(kCalendar, calendar), std::pair(kReminders, store) }) {
        const QByteArray name = type == kCalendar ? "calendar" : "reminders";
        const auto row = [&, kind = type](const char *what,
                                          const QByteArray &image,
                                          int least,
                                          bool isLossTold) {
            QTest::addRow("%s: %s", name.constData(), what) << kind << image << least << isLossTold;
        };
        QByteArray overwritten = whole;
        overwritten.replace(whole.size() / 2 / 4096 * 4096, 4096, QByteArray(4096, '\x55'));
        row("whole", whole, 400, false);
        row("empty file", "", 0, true);
        row("no database", QByteArray(9000, 'x'), 0, true);
        row("no tables", BackupFixture::database("CREATE TABLE t (a)"), 0, true);
        row("cut in half", whole.first(whole.size() / 2), 0, true);
        row("a page overwritten", overwritten, 300, true);
    }
    QTest::newRow("calendar: no columns")
        << kCalendar
        << BackupFixture::database(
               "CREATE TABLE CalendarItem (a); INSERT INTO CalendarItem VALUES (1)")
        << 1 << false;
    QTest::newRow("reminders: no columns")
        << kReminders
        << BackupFixture::database("CREATE TABLE ZREMCDREMINDER (Z_PK INTEGER PRIMARY KEY); INSERT "
                                   "INTO ZREMCDREMINDER VALUES (1)")
        << 1 << false;
}

void tst_Planner::readsOddDatabases()
{
    QFETCH(int, type);
    QFETCH(QByteArray, image);
    QFETCH(int, least);
    QFETCH(bool, isLossTold);
    BackupFixture fixture;
    fixture.writer.addFile(
        kHome, type == kCalendar ? kCalendarPath : kStores + u"Data-local.sqlite"_s, image);
    const QStringList rows = fixture.table(type);
    QVERIFY2(rows.size() >= least && rows.size() <= 400, qPrintable(QString::number(rows.size())));
    const QString problems = fixture.problems().join(u'\n');
    QVERIFY2(isLossTold == problems.contains(QString::number(type) + u" HomeDomain"_s),
             qPrintable(problems));
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
