#include "PhoneBackup/planner/ReminderObjects.h"

#include "PhoneBackup/source/ObjectStore.h"
#include "PhoneBackup/source/Table.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// The objects of one kind or of several, whose columns may bear a number behind their name.
class Objects
{
public:
    explicit Objects(RowDatabase &store)
        : m_store(store)
        , m_table(store, ReminderObjects::table())
    {
    }

    Table::Column column(const QString &attribute)
    {
        return m_table.expression(
            ObjectStore::attribute(m_store, ReminderObjects::table(), attribute));
    }

    // Nothing for an empty condition: the store has no objects of the kind.
    void forEach(const QString &condition, const std::function<void(const Table::Row &)> &row) const
    {
        if (!condition.isEmpty())
            m_table.forEach(row, condition);
    }

private:
    RowDatabase &m_store;
    Table m_table;
};

} // namespace

QString ReminderObjects::table()
{
    return u"ZREMCDOBJECT"_s;
}

QString ReminderObjects::numbers(const QHash<qint64, QString> &kinds, const QString &name)
{
    QStringList list;
    for (auto it = kinds.cbegin(); it != kinds.cend(); ++it) {
        if (it.value() == name)
            list.append(QString::number(it.key()));
    }
    return list.join(u", "_s);
}

ReminderObjects::ReminderObjects(RowDatabase &store, const QHash<qint64, QString> &kinds)
    : m_store(store)
    , m_kinds(kinds)
{
    if (!store.hasColumn(table(), u"Z_ENT"_s))
        return;
    Objects accounts(store);
    const auto name = accounts.column(u"ZNAME"_s);
    accounts.forEach(condition(u"REMCDAccount"_s), [&, this](const Table::Row &row) {
        m_accounts.insert(row.id(), row.text(name).trimmed());
    });
    readRepeats();
    readAlarms();
    readTags();
    readAssignees();
}

void ReminderObjects::moveTo(Reminder &reminder)
{
    const auto found = m_facts.find(reminder.id);
    if (found == m_facts.end())
        return;
    Facts &facts = found->second;
    reminder.tags = facts.tags;
    reminder.assignee = std::move(facts.assignee);
    if (!facts.details.repeats.empty() || !facts.details.alarms.empty())
        reminder.details = std::make_unique<PlannedDetails>(std::move(facts.details));
}

QString ReminderObjects::condition(const QString &kind) const
{
    const QString list = numbers(m_kinds, kind);
    return list.isEmpty() ? QString() : u"Z_ENT IN (%1)"_s.arg(list);
}

void ReminderObjects::readRepeats()
{
    Objects rules(m_store);
    const auto reminder = rules.column(u"ZREMINDER"_s);
    const auto frequency = rules.column(u"ZFREQUENCY"_s);
    const auto interval = rules.column(u"ZINTERVAL"_s);
    const auto count = rules.column(u"ZOCCURRENCECOUNT"_s);
    const auto end = rules.column(u"ZENDDATE"_s);
    rules.forEach(condition(u"REMCDRecurrenceRule"_s), [&, this](const Table::Row &row) {
        RepeatRule rule;
        rule.isCertain = false;
        // Said to count from 0 for days, unlike those of the calendar.
        if (row.number(frequency))
            rule.unit = RepeatRule::unitOf(row.integer(frequency) + 1);
        rule.interval = row.integer(interval);
        rule.count = row.integer(count);
        rule.until = PlannedTime(row.number(end), {}, PlannedTime::Kind::Day);
        m_facts[row.integer(reminder)].details.repeats.push_back(std::move(rule));
    });
}

void ReminderObjects::readAlarms()
{
    Objects alarms(m_store);
    const auto reminder = alarms.column(u"ZREMINDER"_s);
    QHash<qint64, qint64> reminderOf;
    alarms.forEach(condition(u"REMCDAlarm"_s), [&](const Table::Row &row) {
        reminderOf.insert(row.id(), row.integer(reminder));
    });
    if (reminderOf.isEmpty())
        return;
    // What an alarm waits for is an object of its own.
    Objects triggers(m_store);
    const auto alarmOf = triggers.column(u"ZALARM"_s);
    const auto addTriggers = [&, this](const QString &kind, const auto &fill) {
        triggers.forEach(condition(kind), [&, this](const Table::Row &row) {
            const auto of = reminderOf.constFind(row.integer(alarmOf));
            if (of == reminderOf.constEnd())
                return;
            Alarm alarm;
            fill(alarm, row);
            m_facts[*of].details.alarms.push_back(std::move(alarm));
        });
    };
    const auto seconds = triggers.column(u"ZTIMEINTERVAL"_s);
    const auto title = triggers.column(u"ZTITLE"_s);
    const auto latitude = triggers.column(u"ZLATITUDE"_s);
    const auto longitude = triggers.column(u"ZLONGITUDE"_s);
    const auto radius = triggers.column(u"ZRADIUS"_s);
    const auto proximity = triggers.column(u"ZPROXIMITY"_s);
    addTriggers(u"REMCDAlarmTimeIntervalTrigger"_s, [&](Alarm &alarm, const Table::Row &row) {
        alarm.at = Alarm::At::Offset;
        alarm.offsetSeconds = row.number(seconds);
    });
    addTriggers(u"REMCDAlarmLocationTrigger"_s, [&](Alarm &alarm, const Table::Row &row) {
        constexpr qint64 kLeaving = 2; // 1 is arriving
        alarm.at = row.integer(proximity) == kLeaving ? Alarm::At::Leaving : Alarm::At::Arriving;
        alarm.place = { row.text(title).trimmed(),
                        {},
                        row.number(latitude),
                        row.number(longitude),
                        row.number(radius) };
    });
    // How a date is stored is not known, nor what a car tells.
    const auto nothing = [](Alarm &, const Table::Row &) {};
    addTriggers(u"REMCDAlarmDateTrigger"_s, nothing);
    addTriggers(u"REMCDAlarmVehicleTrigger"_s, nothing);
}

void ReminderObjects::readTags()
{
    QHash<qint64, QString> labels;
    Table labelTable(m_store, u"ZREMCDHASHTAGLABEL"_s);
    const auto label = labelTable.column(u"ZNAME"_s);
    labelTable.forEach([&](const Table::Row &row) { labels.insert(row.id(), row.text(label)); });

    Objects tags(m_store);
    const auto reminder = tags.column(u"ZREMINDER"_s);
    const auto number = tags.column(u"ZHASHTAGLABEL"_s);
    const auto name = tags.column(u"ZNAME"_s);
    tags.forEach(condition(u"REMCDHashtag"_s), [&, this](const Table::Row &row) {
        const QString known = labels.value(row.integer(number));
        const QString tag = (known.isEmpty() ? row.text(name) : known).trimmed();
        if (!tag.isEmpty())
            m_facts[row.integer(reminder)].tags.append(tag);
    });
}

void ReminderObjects::readAssignees()
{
    Objects sharees(m_store);
    const auto first = sharees.column(u"ZFIRSTNAME"_s);
    const auto last = sharees.column(u"ZLASTNAME"_s);
    const auto address = sharees.column(u"ZADDRESS"_s);
    QHash<qint64, Guest> people;
    sharees.forEach(condition(u"REMCDSharee"_s), [&](const Table::Row &row) {
        Guest guest;
        guest.name = (row.text(first) + u' ' + row.text(last)).trimmed();
        guest.address = row.text(address).trimmed();
        people.insert(row.id(), guest);
    });
    Objects assignments(m_store);
    const auto reminder = assignments.column(u"ZREMINDER"_s);
    const auto assignee = assignments.column(u"ZASSIGNEE"_s);
    assignments.forEach(condition(u"REMCDAssignment"_s), [&, this](const Table::Row &row) {
        const auto guest = people.constFind(row.integer(assignee));
        if (guest != people.constEnd())
            m_facts[row.integer(reminder)].assignee = std::make_unique<Guest>(*guest);
    });
}

} // namespace PhoneBackup
