#include "PhoneBackup/planner/Reminders.h"

#include "PhoneBackup/planner/CalendarStore.h"
#include "PhoneBackup/planner/PlannedTime.h"
#include "PhoneBackup/planner/ReminderStore.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/TableData.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <tuple>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kReminders = 13;
constexpr int kStoreBits = 40; // the number of a store stands above that of a reminder in it

struct Place
{
    QByteArrayView domain;
    QByteArrayView folder;
};

// Newest first: an older one is a remainder when a newer one has reminders.
constexpr std::array<Place, 2> kPlaces { {
    { "AppDomainGroup-group.com.apple.reminders", "Container_v1/Stores/" },
    { "HomeDomain", "Library/Reminders/Container_v1/Stores/" },
} };

// The numbers of reminders are those of their store only.
qint64 numbered(qint64 id, int store)
{
    return qint64(quint64(id) + (quint64(store) << kStoreBits));
}

// Reminders list by list, each one's parts behind it.
void sort(QList<Reminder> &reminders)
{
    QHash<qint64, qint64> parents;
    for (const Reminder &reminder : std::as_const(reminders))
        parents.insert(reminder.id, reminder.parent);
    const auto key = [&parents](const Reminder &reminder) {
        const bool isPart = reminder.parent != reminder.id && parents.contains(reminder.parent);
        return std::tuple(
            reminder.listNumber, isPart ? reminder.parent : reminder.id, isPart, reminder.id);
    };
    std::stable_sort(reminders.begin(), reminders.end(), [&](const auto &a, const auto &b) {
        return key(a) < key(b);
    });
}

QList<Reminder> remindersAt(Source &source, const Place &place)
{
    QList<Reminder> all;
    const FileIndex &index = source.index();
    const FileIndex::Range range = index.walk(place.domain, place.folder.toByteArray() + "Data-");
    int store = 0;
    for (FileIndex::Row row = range.first; row < range.last; ++row) {
        const QByteArrayView path = index.path(row);
        if (index.kind(row) != FileIndex::Kind::File || !path.endsWith(".sqlite")
            || PathParts::folder(path).size() + 1 != place.folder.size())
            continue;
        QList<Reminder> reminders = readReminderStore(source, place.domain, PathParts::text(path));
        sort(reminders);
        for (Reminder &reminder : reminders) {
            reminder.id = numbered(reminder.id, store);
            if (reminder.parent != 0)
                reminder.parent = numbered(reminder.parent, store);
        }
        all += reminders;
        ++store;
    }
    return all;
}

// Until iOS 12 they stand in the calendar.
QList<Reminder> remindersOfCalendar(Source &source)
{
    QList<Reminder> reminders;
    std::optional<CalendarStore> store =
        CalendarStore::open(source, kReminders, tr("Reminders may be missing."));
    if (!store)
        return reminders;
    const QList<CalendarStore::Item> items = store->items(CalendarStore::Kind::Reminder);
    QHash<QString, qint64> lists;
    for (const CalendarStore::Item &item : items) {
        Reminder reminder;
        reminder.id = item.id;
        if (!lists.contains(item.calendar))
            lists.insert(item.calendar, lists.size());
        reminder.listNumber = lists.value(item.calendar);
        reminder.title = item.title;
        reminder.list = item.calendar;
        reminder.notes = item.description;
        reminder.remarks = item.remarks;
        const bool hasDue = PlannedTime(item.due, {}, PlannedTime::Kind::Moment).isValid();
        reminder.due = hasDue ? item.due : item.start;
        reminder.dueZone = hasDue ? item.dueZone : item.startZone;
        reminder.isAllDay = hasDue ? item.isDueAllDay : item.isAllDay;
        reminder.isCompleted = item.completed.value_or(0) != 0;
        reminder.completed = item.completed;
        reminder.priority = item.priority;
        reminders.append(reminder);
    }
    sort(reminders);
    return reminders;
}

QList<Reminder> allReminders(Source &source)
{
    for (const Place &place : kPlaces) {
        QList<Reminder> reminders = remindersAt(source, place);
        if (!reminders.isEmpty())
            return reminders;
    }
    return remindersOfCalendar(source);
}

QString priorityText(qint64 priority)
{
    constexpr qint64 kMedium = 5;
    constexpr qint64 kLow = 9;
    if (priority < 1 || priority > kLow)
        return {};
    return priority < kMedium ? tr("Priority: high")
        : priority == kMedium ? tr("Priority: medium")
                              : tr("Priority: low");
}

Row rowOf(const Reminder &reminder, const QHash<qint64, QString> &titles)
{
    const auto kind = reminder.isAllDay ? PlannedTime::Kind::Day : PlannedTime::Kind::Moment;
    const PlannedTime due(reminder.due, reminder.dueZone, kind);
    const QDateTime completed = PhoneTime::since2001(reminder.completed);

    QStringList notes { reminder.notes };
    const QString parent = titles.value(reminder.parent);
    if (reminder.parent != 0 && !parent.isEmpty())
        notes.append(tr("Part of “%1”").arg(parent));
    if (reminder.isFlagged)
        notes.append(tr("Flagged"));
    notes.append(priorityText(reminder.priority));
    notes += reminder.remarks;
    notes.removeAll(QString());

    Row row;
    row.cells = { reminder.title,
                  reminder.list,
                  due.text(),
                  !reminder.isCompleted     ? QString()
                      : completed.isValid() ? CCommonUtils::datetimeToMinute(completed, true)
                                            : tr("Yes"),
                  notes.join(u'\n') };
    row.date = PhoneTime::since2001(due.seconds());
    row.id = reminder.id;
    row.deleted = reminder.deleted;
    return row;
}

} // namespace

void readReminders(Source &source, DataSets &sets)
{
    auto table = std::make_unique<TableData>(
        kReminders,
        QStringList { tr("Title"), tr("List"), tr("Due"), tr("Completed"), tr("Notes") });
    const QList<Reminder> reminders = allReminders(source);
    QHash<qint64, QString> titles;
    for (const Reminder &reminder : reminders)
        titles.insert(reminder.id, reminder.title);
    for (const Reminder &reminder : reminders)
        table->add(rowOf(reminder, titles));
    sets[kReminders] = std::move(table);
}

} // namespace PhoneBackup
