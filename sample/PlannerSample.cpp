#include "sample/PlannerSample.h"

#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/InventedText.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr double kHour = 3600;
constexpr double kDay = 86400;

constexpr const char *kCalendarTables = R"(
CREATE TABLE Store (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT, type INTEGER, disabled INTEGER, persistent_id TEXT);
CREATE TABLE Calendar (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, store_id INTEGER, title TEXT, flags INTEGER, color TEXT);
CREATE TABLE CalendarItem (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, summary TEXT, location_id INTEGER, description TEXT,
  start_date REAL, start_tz TEXT, end_date REAL, end_tz TEXT, all_day INTEGER, calendar_id INTEGER, orig_item_id INTEGER,
  orig_date REAL, url TEXT, entity_type INTEGER, priority INTEGER, due_date REAL, due_tz TEXT, due_all_day INTEGER,
  completion_date REAL, calendar_scale TEXT, conference_url TEXT);
CREATE TABLE Location (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, title TEXT, address TEXT, item_owner_id INTEGER);
CREATE TABLE Participant (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, entity_type INTEGER, status INTEGER,
  identity_id INTEGER, owner_id INTEGER, email TEXT, phone_number TEXT, is_self INTEGER);
CREATE TABLE Identity (display_name TEXT, address TEXT, first_name TEXT, last_name TEXT);
CREATE TABLE Recurrence (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, frequency INTEGER, interval INTEGER, week_start INTEGER,
  count INTEGER, end_date REAL, specifier TEXT, by_month_months INTEGER, owner_id INTEGER, UUID TEXT);
CREATE TABLE ExceptionDate (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, owner_id INTEGER, date REAL, sync_order INTEGER);
INSERT INTO Store(ROWID, name, type) VALUES (1, 'iCloud', 2);
INSERT INTO Calendar(ROWID, store_id, title) VALUES (1, 1, 'Home'), (2, 1, 'Crew'), (3, 1, 'Errands');
INSERT INTO Location VALUES (1, 'Marigold Boatyard', '4 Slipway Lane', 1), (2, 'Harbour office', NULL, 3);
INSERT INTO Identity VALUES ('Mara Lindqvist', 'mailto:mara@marigold.example', 'Mara', 'Lindqvist'),
 (NULL, 'mailto:noor@marigold.example', NULL, NULL);
INSERT INTO Participant(entity_type, identity_id, owner_id) VALUES (8, 1, 1), (7, 2, 1);
INSERT INTO Recurrence(frequency, interval, count, specifier, owner_id) VALUES (2, 2, 0, 'D=0TU,0SA', 1),
 (4, 1, 0, NULL, 4);
)";

struct Event
{
    QString title;
    QString notes;
    QString zone;
    double start; // from the start of the sample
    double end;
    int calendar;
    int location = 0;
    bool isAllDay = false;
};

QList<Event> events(const Options &options, Random &random)
{
    const QString floating = u"_float"_s;
    const QString home = u"Europe/Berlin"_s;
    const double day = -8.25 * kHour; // midnight of the first day, on the clock
    QList<Event> all {
        { u"Crew meeting"_s,
          u"Bring the rota & the key.\nLast one in locks up."_s,
          home,
          kHour,
          2.5 * kHour,
          2,
          1 },
        { u"Summer regatta"_s, {}, floating, day + 10 * kDay, day + 12 * kDay - 1, 2, 0, true },
        { u"Survey"_s,
          // As long as links to meetings are, and with no place to break it.
          u"Ask about the keel bolts.\nhttps://meet.marigold.example/j/84715523360?pwd="_s
              + u"Zm9yZWNhc3RsZQ"_s.repeated(9),
          home,
          30 * kHour,
          31 * kHour,
          1,
          2 },
        { u"Launch day"_s, {}, floating, day + 20 * kDay, day + 21 * kDay, 1, 0, true },
        { u"Sail to the islands ⛵"_s,
          {},
          floating,
          day + 25 * kDay + 6 * kHour,
          day + 26 * kDay,
          1 },
    };
    while (all.size() < options.events) {
        const double start = random.below(400) * kDay / 2;
        all.append({ inventedSentence(random).chopped(1), {}, home, start, start + kHour, 1 });
    }
    return all.first(options.events);
}

struct Task
{
    QString title;
    QString notes;
    QString list;
    double due = 0; // from the start of the sample, 0 for none
    bool isAllDay = false;
    double completed = 0; // likewise
    int priority = 0;
    int parent = 0;
    bool isDeleted = false;
};

QList<Task> tasks(const Options &options, Random &random)
{
    QList<Task> all {
        { u"Buy rope"_s, u"12 mm, 30 m"_s, u"Errands"_s, 4 * kHour, false, 0, 1 },
        { u"Pay the mooring"_s, {}, u"Errands"_s, 15.75 * kHour, true, 20 * kHour },
        { u"Paint the hull"_s, u"Two coats <b>at least</b>"_s, u"Boatyard"_s, 0, false, 0, 5 },
        { u"Sand it first"_s, {}, u"Boatyard"_s, 0, false, 0, 9, 3 },
        { u"Return the borrowed pump"_s, {}, u"Boatyard"_s, 2 * kDay, false, 0, 0, 0, true },
    };
    while (all.size() < options.reminders)
        all.append(
            { inventedSentence(random).chopped(1), {}, u"Errands"_s, random.below(90) * kDay });
    return all.first(options.reminders);
}

QVariant moment(double fromStart)
{
    return fromStart == 0 ? QVariant() : QVariant(cocoaSeconds(sampleStart()) + fromStart);
}

void addEvents(Database &database, const QList<Event> &events)
{
    Statement insert = database.prepare(
        "INSERT INTO CalendarItem(summary, description, start_date, start_tz, end_date, end_tz, "
        "all_day, calendar_id, location_id, entity_type) VALUES (?,?,?,?,?,?,?,?,?,2)");
    for (const Event &event : events) {
        insert.run({ event.title,
                     event.notes.isEmpty() ? QVariant() : QVariant(event.notes),
                     moment(event.start),
                     event.zone,
                     moment(event.end),
                     event.zone,
                     event.isAllDay,
                     event.calendar,
                     event.location == 0 ? QVariant() : QVariant(event.location) });
    }
    // A birthday that was made from a contact, which is none of the events.
    database.execute(
        "INSERT INTO CalendarItem(summary, start_date, all_day, entity_type, "
        "calendar_scale) VALUES ('Birthday of Mara', -12500000000, 1, 2, 'gregorian')");
}

void addOldTasks(Database &database, const QList<Task> &tasks)
{
    Statement insert = database.prepare(
        "INSERT INTO CalendarItem(summary, description, due_date, due_tz, due_all_day, "
        "completion_date, priority, calendar_id, entity_type) VALUES (?,?,?,?,?,?,?,?,3)");
    for (const Task &task : tasks) {
        if (task.isDeleted) // there was no such mark
            continue;
        insert.run({ task.title,
                     task.notes,
                     moment(task.due),
                     task.isAllDay ? u"_float"_s : u"Europe/Berlin"_s,
                     task.isAllDay,
                     moment(task.completed),
                     task.priority,
                     task.list == "Errands"_L1 ? 3 : 2 });
    }
}

constexpr const char *kListNames = "INSERT INTO %1(Z_PK, Z_ENT, Z_OPT, ZNAME) VALUES "
                                   "(101, 6, 1, 'Errands'), (102, 6, 1, 'Boatyard')";

QByteArray storeImage(const QList<Task> &tasks, bool isWide, BackupWriter &writer)
{
    const QByteArray columns =
        "(Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZALLDAY INTEGER, ZCOMPLETED "
        "INTEGER, ZFLAGGED INTEGER, ZMARKEDFORDELETION INTEGER, ZPRIORITY INTEGER, ZLIST INTEGER, "
        "ZPARENTREMINDER INTEGER, ZCOMPLETIONDATE TIMESTAMP, ZDUEDATE TIMESTAMP, ZNOTES VARCHAR, ";
    const QByteArray object = "CREATE TABLE ZREMCDOBJECT ";
    const QByteArray plain =
        "(Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZNAME VARCHAR);";
    const QByteArray definitions =
        (isWide ? object + columns + "ZNAME VARCHAR, ZTITLE VARCHAR, ZTITLE1 VARCHAR);"
                : object + plain + "CREATE TABLE ZREMCDBASELIST " + plain
                 + "CREATE TABLE ZREMCDREMINDER " + columns + "ZTITLE VARCHAR);")
        + "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, "
          "Z_MAX INTEGER); INSERT INTO Z_PRIMARYKEY VALUES "
          "(1,'REMCDObject',0,0),(6,'REMCDList',5,0),"
          "(24,'REMCDReminder',0,1),(12,'REMCDAccount',1,0);";
    Database database({}, definitions.constData());
    if (!tasks.isEmpty()) {
        database.execute(QByteArray(kListNames)
                             .replace("%1", isWide ? "ZREMCDOBJECT" : "ZREMCDBASELIST")
                             .constData());
    }
    const QByteArray insert = QByteArray("INSERT INTO ")
        + (isWide ? "ZREMCDOBJECT" : "ZREMCDREMINDER")
        + "(Z_PK, Z_ENT, Z_OPT, ZALLDAY, ZCOMPLETED, ZMARKEDFORDELETION, ZPRIORITY, ZLIST, "
          "ZPARENTREMINDER, ZCOMPLETIONDATE, ZDUEDATE, ZNOTES, "
        + (isWide ? "ZTITLE1" : "ZTITLE") + ") VALUES (?,24,1,?,?,?,?,?,?,?,?,?,?)";
    Statement statement = database.prepare(insert.constData());
    for (int i = 0; i < int(tasks.size()); ++i) {
        const Task &task = tasks[i];
        statement.run({ i + 1,
                        task.isAllDay,
                        task.completed != 0,
                        task.isDeleted,
                        task.priority,
                        task.list == "Errands"_L1 ? 101 : 102,
                        task.parent == 0 ? QVariant() : QVariant(task.parent),
                        moment(task.completed),
                        moment(task.due),
                        task.notes.isEmpty() ? QVariant() : QVariant(task.notes),
                        task.title });
    }
    const QByteArray image = database.image();
    if (!database.error().isEmpty())
        writer.fail(u"Data-local.sqlite"_s, database.error());
    return image;
}

} // namespace

void addPlanner(BackupWriter &writer, const Options &options)
{
    constexpr int kFirstOfStores = 13;
    constexpr int kFirstOfTables = 16;
    constexpr int kFirstOfGroup = 17;
    const int release = options.plannerRelease;
    Random random(options.seed, "planner");
    const QList<Event> allEvents = events(options, random);
    const QList<Task> allTasks = tasks(options, random);
    const bool hasOldTasks = release < kFirstOfStores && !allTasks.isEmpty();
    if (!allEvents.isEmpty() || hasOldTasks) {
        Database database({}, kCalendarTables);
        addEvents(database, allEvents);
        if (hasOldTasks)
            addOldTasks(database, allTasks);
        writer.addFile(u"HomeDomain"_s, u"Library/Calendar/Calendar.sqlitedb"_s, database.image());
        if (!database.error().isEmpty())
            writer.fail(u"Calendar.sqlitedb"_s, database.error());
    }
    if (release < kFirstOfStores || allTasks.isEmpty())
        return;
    const bool isGroup = release >= kFirstOfGroup;
    const QString domain =
        isGroup ? u"AppDomainGroup-group.com.apple.reminders"_s : u"HomeDomain"_s;
    const QString folder =
        (isGroup ? QString() : u"Library/Reminders/"_s) + u"Container_v1/Stores/"_s;
    const bool isWide = release < kFirstOfTables;
    writer.addFile(domain,
                   folder + u"Data-%1.sqlite"_s.arg(random.uuid()),
                   storeImage(allTasks, isWide, writer));
    writer.addFile(domain, folder + u"Data-local.sqlite"_s, storeImage({}, isWide, writer));
}

} // namespace Sample
