#include "PhoneBackup/planner/CalendarStore.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/planner/CalendarDetails.h"
#include "PhoneBackup/source/Table.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr double kNoOriginalDate = -1e11; // marks events that replace none

// \a number as one of the values up to \a last, the first one when it is none of them.
template <class Enum>
Enum known(qint64 number, Enum last)
{
    return number > 0 && number <= qint64(last) ? Enum(number) : Enum {};
}

// The columns of an item, and what they say.
class ItemRow
{
public:
    explicit ItemRow(Table &table);

    bool isReminder(const Table::Row &row) const
    {
        constexpr qint64 kReminder = 3; // kind of an item; 2 is an event
        return row.integer(m_kind) == kReminder;
    }
    // Made from a contact, with dates of another kind.
    bool isBirthday(const Table::Row &row) const { return row.bytes(m_scale) == "gregorian"; }

    qint64 calendar(const Table::Row &row) const { return row.integer(m_calendar); }
    qint64 place(const Table::Row &row) const { return row.integer(m_place); }

    void setFacts(Event &event, const Table::Row &row) const;
    void setTimes(Event &event, const Table::Row &row) const;
    void setLinks(Event &event, const Table::Row &row) const;
    void setTask(CalendarStore::Item &item, const Table::Row &row) const;

private:
    using Column = Table::Column;

    Column m_kind, m_scale, m_title, m_calendar, m_place, m_description;
    Column m_start, m_startZone, m_end, m_endZone, m_allDay, m_original, m_originalItem;
    Column m_due, m_dueZone, m_dueAllDay, m_completed, m_priority;
    Column m_url, m_conference, m_foundConference;
    Column m_uuid, m_otherId, m_status, m_availability, m_privacy, m_travel, m_created, m_modified;
};

ItemRow::ItemRow(Table &table)
    : m_kind(table.column(u"entity_type"_s))
    , m_scale(table.column(u"calendar_scale"_s))
    , m_title(table.column(u"summary"_s))
    , m_calendar(table.column(u"calendar_id"_s))
    , m_place(table.column(u"location_id"_s))
    , m_description(table.column(u"description"_s))
    , m_start(table.column(u"start_date"_s))
    , m_startZone(table.column(u"start_tz"_s))
    , m_end(table.column(u"end_date"_s))
    , m_endZone(table.column(u"end_tz"_s))
    , m_allDay(table.column(u"all_day"_s))
    , m_original(table.column(u"orig_date"_s))
    , m_originalItem(table.column(u"orig_item_id"_s))
    , m_due(table.column(u"due_date"_s))
    , m_dueZone(table.column(u"due_tz"_s))
    , m_dueAllDay(table.column(u"due_all_day"_s))
    , m_completed(table.column(u"completion_date"_s))
    , m_priority(table.column(u"priority"_s))
    , m_url(table.column(u"url"_s))
    , m_conference(table.column(u"conference_url"_s))
    , m_foundConference(table.column(u"conference_url_detected"_s))
    , m_uuid(table.column(u"UUID"_s))
    , m_otherId(table.column(u"unique_identifier"_s))
    , m_status(table.column(u"status"_s))
    , m_availability(table.column(u"availability"_s))
    , m_privacy(table.column(u"privacy_level"_s))
    , m_travel(table.column(u"travel_time"_s))
    , m_created(table.column(u"creation_date"_s))
    , m_modified(table.column(u"last_modified"_s))
{
}

void ItemRow::setFacts(Event &event, const Table::Row &row) const
{
    event.id = row.id();
    event.uuid = row.text(m_uuid);
    if (event.uuid.isEmpty())
        event.uuid = row.text(m_otherId);
    event.title = row.text(m_title).trimmed();
    event.description = row.text(m_description).trimmed();
    event.status = known(row.integer(m_status), Event::Status::Cancelled);
    event.availability = known(row.integer(m_availability), Event::Availability::Away);
    event.isPrivate = row.integer(m_privacy) != 0;
    event.travelSeconds = row.integer(m_travel);
    event.created = PhoneTime::since2001(row.number(m_created));
    event.modified = PhoneTime::since2001(row.number(m_modified));
}

void ItemRow::setTimes(Event &event, const Table::Row &row) const
{
    event.isAllDay = row.integer(m_allDay) != 0;
    const auto kind = event.isAllDay ? PlannedTime::Kind::Day : PlannedTime::Kind::Moment;
    // Days without a zone are days on the clock.
    const auto zone = [&event](const QString &own) {
        return event.isAllDay && own.isEmpty() ? PlannedTime::floating() : own;
    };
    const QString startZone = row.text(m_startZone);
    const QString endZone = row.text(m_endZone);
    event.start = PlannedTime(row.number(m_start), zone(startZone), kind);
    event.end = PlannedTime(row.number(m_end), zone(endZone.isEmpty() ? startZone : endZone), kind);
    const std::optional<double> original = row.number(m_original);
    if (original.value_or(kNoOriginalDate) > kNoOriginalDate)
        event.replaces = PlannedTime(original, zone(startZone), kind);
    event.replacesIn = row.integer(m_originalItem);
}

void ItemRow::setLinks(Event &event, const Table::Row &row) const
{
    const QString url = row.text(m_url).trimmed();
    const QString conference = row.text(m_conference).trimmed();
    const QString found = row.text(m_foundConference).trimmed();
    if (url.isEmpty() && conference.isEmpty() && found.isEmpty())
        return;
    if (!event.details)
        event.details = std::make_unique<PlannedDetails>();
    event.details->url = url;
    event.details->conference = conference;
    event.details->foundConference = found;
}

void ItemRow::setTask(CalendarStore::Item &item, const Table::Row &row) const
{
    const auto kindOf = [&row](Column isDay) {
        return row.integer(isDay) != 0 ? PlannedTime::Kind::Day : PlannedTime::Kind::Moment;
    };
    item.due = PlannedTime(row.number(m_due), row.text(m_dueZone), kindOf(m_dueAllDay));
    if (!item.due.isValid())
        item.due = PlannedTime(row.number(m_start), row.text(m_startZone), kindOf(m_allDay));
    item.isCompleted = row.number(m_completed).value_or(0) != 0;
    item.completed = PhoneTime::since2001(row.number(m_completed));
    item.priority = row.integer(m_priority);
}

} // namespace

std::optional<CalendarStore>
CalendarStore::open(Source &source, int dataType, const Notice &consequence)
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

void CalendarStore::readCalendars()
{
    Table stores(m_database, u"Store"_s);
    const auto name = stores.column(u"name"_s);
    QHash<qint64, QString> accounts;
    stores.forEach([&](const Table::Row &row) { accounts.insert(row.id(), row.text(name)); });

    Table calendars(m_database, u"Calendar"_s);
    const auto [title, color, uuid, notes, account, sharing] = calendars.columns(
        u"title"_s, u"color"_s, u"UUID"_s, u"notes"_s, u"store_id"_s, u"sharing_status"_s);
    calendars.forEach([&, this](const Table::Row &row) {
        EventCalendar calendar;
        calendar.id = row.id();
        calendar.title = row.text(title).trimmed();
        calendar.color = row.text(color);
        calendar.uuid = row.text(uuid);
        calendar.notes = row.text(notes);
        calendar.account = accounts.value(row.integer(account));
        calendar.sharing = known(row.integer(sharing), EventCalendar::Sharing::WithOwner);
        m_calendars.insert(row.id(), std::make_shared<EventCalendar>(std::move(calendar)));
    });
}

void CalendarStore::read(Kind kind, const std::function<void(Item &&)> &item)
{
    Table table(m_database, u"CalendarItem"_s);
    if (!table.exists()) {
        m_database.addLoss(Notice("planner.noEvents"));
        return;
    }
    readCalendars();
    CalendarDetails details(m_database);
    const ItemRow columns(table);
    table.forEach([&, this](const Table::Row &row) {
        if (columns.isReminder(row) != (kind == Kind::Reminder) || columns.isBirthday(row))
            return;
        Item found;
        columns.setFacts(found.event, row);
        columns.setTimes(found.event, row);
        found.event.calendar = m_calendars.value(columns.calendar(row));
        found.event.place = details.place(columns.place(row));
        found.event.details = details.take(row.id());
        columns.setLinks(found.event, row);
        if (kind == Kind::Reminder)
            columns.setTask(found, row);
        item(std::move(found));
    });
}

} // namespace PhoneBackup
