#include "PhoneBackup/planner/CalendarStore.h"

#include "PhoneBackup/planner/PlannedTime.h"
#include "PhoneBackup/planner/RepeatRule.h"
#include "platform/Translation_p.h"

#include <QSet>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

const QString kItems = u"CalendarItem"_s;
constexpr qint64 kReminder = 3; // kind of an item
constexpr qint64 kOrganizer = 8; // kind of a participant
constexpr double kLeastDate = -1e11;

// What an item is read as, in the order of the query.
enum Column {
    Key,
    EntityType,
    Scale,
    Summary,
    CalendarKey,
    LocationKey,
    Description,
    Start,
    StartZone,
    End,
    EndZone,
    AllDay,
    Due,
    DueZone,
    DueAllDay,
    Completed,
    Priority,
    OriginalDate,
    Url,
    Conference,
    DetectedConference,
};

const QStringList &itemColumns()
{
    static const QStringList columns {
        u"entity_type"_s,     u"calendar_scale"_s,
        u"summary"_s,         u"calendar_id"_s,
        u"location_id"_s,     u"description"_s,
        u"start_date"_s,      u"start_tz"_s,
        u"end_date"_s,        u"end_tz"_s,
        u"all_day"_s,         u"due_date"_s,
        u"due_tz"_s,          u"due_all_day"_s,
        u"completion_date"_s, u"priority"_s,
        u"orig_date"_s,       u"url"_s,
        u"conference_url"_s,  u"conference_url_detected"_s,
    };
    return columns;
}

QString withoutScheme(const QString &address)
{
    return address.startsWith("mailto:"_L1, Qt::CaseInsensitive) ? address.sliced(7) : address;
}

} // namespace

std::optional<CalendarStore>
CalendarStore::open(Source &source, int dataType, const QString &consequence)
{
    std::optional<RowDatabase> database = RowDatabase::open(
        source, dataType, "HomeDomain", u"Library/Calendar/Calendar.sqlitedb"_s, consequence);
    if (!database)
        return std::nullopt;
    return CalendarStore(std::move(*database));
}

CalendarStore::CalendarStore(RowDatabase &&database)
    : m_database(std::move(database))
{
}

void CalendarStore::readRows(const QString &table,
                             const QStringList &columns,
                             const std::function<void(const Statement &)> &row)
{
    if (!m_database.hasTable(table))
        return;
    QStringList probed { u"ROWID"_s };
    for (const QString &column : columns)
        probed.append(m_database.column(table, column));
    QSet<qint64> seen; // rows of a damaged table may come twice
    m_database.query(probed.join(u", "_s), table, [&](const Statement &statement) {
        const qint64 key = statement.integer(0);
        if (seen.contains(key))
            return;
        seen.insert(key);
        row(statement);
    });
}

QHash<qint64, QString> CalendarStore::readTexts(const QString &table, const QStringList &columns)
{
    QHash<qint64, QString> texts;
    readRows(table, columns, [&](const Statement &row) {
        QStringList lines;
        for (int i = 1; i <= int(columns.size()); ++i) {
            const QString line = row.text(i).trimmed();
            if (!line.isEmpty() && !lines.contains(line))
                lines.append(line);
        }
        texts.insert(row.integer(0), lines.join(u'\n'));
    });
    return texts;
}

CalendarStore::Names CalendarStore::readNames()
{
    Names names;
    names.calendars = readTexts(u"Calendar"_s, { u"title"_s });
    names.locations = readTexts(u"Location"_s, { u"title"_s, u"address"_s });
    readRepeats(names);
    readPeople(names);
    readAttachments(names);
    return names;
}

void CalendarStore::readRepeats(Names &names)
{
    readRows(
        u"Recurrence"_s,
        { u"owner_id"_s, u"frequency"_s, u"interval"_s, u"count"_s, u"end_date"_s, u"specifier"_s },
        [&names](const Statement &row) {
            RepeatRule rule;
            rule.frequency = row.integer(2);
            rule.interval = row.integer(3);
            rule.count = row.integer(4);
            rule.until = PlannedTime(row.number(5), QString(), PlannedTime::Kind::Day).text();
            rule.specifier = row.text(6).trimmed();
            names.repeats[row.integer(1)].append(rule.sentence());
        });
    readRows(u"ExceptionDate"_s, { u"owner_id"_s, u"date"_s }, [&names](const Statement &row) {
        const QString day = PlannedTime(row.number(2), QString(), PlannedTime::Kind::Day).text();
        if (!day.isEmpty())
            names.exceptions[row.integer(1)].append(day);
    });
}

void CalendarStore::readPeople(Names &names)
{
    const QHash<qint64, QString> identities = [this] {
        QHash<qint64, QString> people;
        readRows(u"Identity"_s,
                 { u"display_name"_s, u"first_name"_s, u"last_name"_s, u"address"_s },
                 [&people](const Statement &row) {
                     QString name = row.text(1).trimmed();
                     if (name.isEmpty())
                         name = (row.text(2) + u' ' + row.text(3)).trimmed();
                     if (name.isEmpty())
                         name = withoutScheme(row.text(4).trimmed());
                     people.insert(row.integer(0), name);
                 });
        return people;
    }();
    readRows(u"Participant"_s,
             { u"owner_id"_s, u"entity_type"_s, u"identity_id"_s, u"email"_s, u"phone_number"_s },
             [&](const Statement &row) {
                 QString name = identities.value(row.integer(3));
                 for (int column = 4; column <= 5 && name.isEmpty(); ++column)
                     name = withoutScheme(row.text(column).trimmed());
                 Lines &lines = row.integer(2) == kOrganizer ? names.organizers : names.invited;
                 if (!name.isEmpty())
                     lines[row.integer(1)].append(name);
             });
}

void CalendarStore::readAttachments(Names &names)
{
    const QHash<qint64, QString> files = readTexts(u"AttachmentFile"_s, { u"filename"_s });
    readRows(u"Attachment"_s, { u"owner_id"_s, u"file_id"_s }, [&](const Statement &row) {
        const QString name = files.value(row.integer(2));
        if (!name.isEmpty())
            names.attachments[row.integer(1)].append(name);
    });
}

QList<CalendarStore::Item> CalendarStore::items(Kind kind)
{
    QList<Item> items;
    if (!m_database.hasTable(kItems)) {
        m_database.addLoss(tr("It has no table of events that can be read."));
        return items;
    }
    const Names names = readNames();
    readRows(kItems, itemColumns(), [&](const Statement &row) {
        const bool isReminder = row.integer(EntityType) == kReminder;
        const bool isBirthday = row.bytes(Scale) == "gregorian";
        if (isReminder == (kind == Kind::Reminder) && !isBirthday)
            items.append(itemOf(row, names));
    });
    return items;
}

CalendarStore::Item CalendarStore::itemOf(const Statement &row, const Names &names) const
{
    Item item;
    item.id = row.integer(Key);
    item.title = row.text(Summary).trimmed();
    item.calendar = names.calendars.value(row.integer(CalendarKey));
    item.location = names.locations.value(row.integer(LocationKey));
    item.description = row.text(Description).trimmed();
    item.start = row.number(Start);
    item.startZone = row.text(StartZone);
    item.end = row.number(End);
    item.endZone = row.text(EndZone);
    item.isAllDay = row.integer(AllDay) != 0;
    item.due = row.number(Due);
    item.dueZone = row.text(DueZone);
    item.isDueAllDay = row.integer(DueAllDay) != 0;
    item.completed = row.number(Completed);
    item.priority = row.integer(Priority);
    if (row.number(OriginalDate).value_or(kLeastDate) > kLeastDate)
        item.replaces = row.number(OriginalDate);

    const auto add = [&](const QString &text, const QStringList &parts) {
        if (!parts.isEmpty())
            item.remarks.append(text.arg(parts.join(u", "_s)));
    };
    item.remarks = names.repeats.value(item.id);
    add(tr("Except on %1"), names.exceptions.value(item.id));
    add(tr("Organizer: %1"), names.organizers.value(item.id));
    add(tr("Invited: %1"), names.invited.value(item.id));
    add(tr("Attached: %1"), names.attachments.value(item.id));
    QStringList links;
    for (const int column : { Url, Conference, DetectedConference }) {
        const QString link = row.text(column).trimmed();
        if (!link.isEmpty() && !links.contains(link) && !item.description.contains(link))
            links.append(link);
    }
    item.remarks += links;
    return item;
}

} // namespace PhoneBackup
