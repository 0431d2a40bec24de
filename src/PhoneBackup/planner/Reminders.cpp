#include "PhoneBackup/planner/Reminders.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/planner/CalendarStore.h"
#include "PhoneBackup/planner/ReminderStore.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kStoreBits = 40; // the number of a store stands above that of a reminder in it

struct StoreFolder
{
    QByteArrayView domain;
    QByteArrayView folder;
};

// Newest first: an older one is a remainder when a newer one has reminders.
constexpr std::array<StoreFolder, 2> kPlaces { {
    { "AppDomainGroup-group.com.apple.reminders", "Container_v1/Stores/" },
    { "HomeDomain", "Library/Reminders/Container_v1/Stores/" },
} };

// The numbers of reminders are those of their store only.
qint64 numbered(qint64 id, int store)
{
    return qint64(quint64(id) + (quint64(store) << kStoreBits));
}

// Reminders list by list, each one's parts behind it.
void sort(std::vector<Reminder> &reminders)
{
    QHash<qint64, qint64> parents;
    for (const Reminder &reminder : reminders)
        parents.insert(reminder.id, reminder.parent);
    const auto key = [&parents](const Reminder &reminder) {
        const bool isPart = reminder.parent != reminder.id && parents.contains(reminder.parent);
        return std::tuple(
            reminder.list->id, isPart ? reminder.parent : reminder.id, isPart, reminder.id);
    };
    std::stable_sort(reminders.begin(), reminders.end(), [&](const auto &a, const auto &b) {
        return key(a) < key(b);
    });
}

std::vector<Reminder> remindersAt(Source &source, const StoreFolder &place)
{
    std::vector<Reminder> all;
    const FileIndex &index = source.index();
    const FileIndex::Range range = index.walk(place.domain, place.folder.toByteArray() + "Data-");
    int store = 0;
    for (FileIndex::Row row = range.first; row < range.last; ++row) {
        const QByteArrayView path = index.path(row);
        if (index.kind(row) != FileIndex::Kind::File || !path.endsWith(".sqlite")
            || PathParts::folder(path).size() + 1 != place.folder.size())
            continue;
        std::vector<Reminder> reminders =
            readReminderStore(source, place.domain, PathParts::text(path));
        sort(reminders);
        for (Reminder &reminder : reminders) {
            reminder.id = numbered(reminder.id, store);
            if (reminder.parent != 0)
                reminder.parent = numbered(reminder.parent, store);
        }
        std::move(reminders.begin(), reminders.end(), std::back_inserter(all));
        ++store;
    }
    return all;
}

// Lists by their titles, numbered as they come up.
class ListsOfCalendar
{
public:
    std::shared_ptr<const ReminderList> list(const EventCalendar *calendar)
    {
        const QString title = calendar ? calendar->title : QString();
        std::shared_ptr<const ReminderList> &list = m_lists[title];
        if (!list) {
            ReminderList made;
            made.id = m_lists.size() - 1;
            made.title = title;
            if (calendar) {
                made.uuid = calendar->uuid;
                made.account = calendar->account;
                made.color = calendar->color;
            }
            list = std::make_shared<ReminderList>(std::move(made));
        }
        return list;
    }

private:
    QHash<QString, std::shared_ptr<const ReminderList>> m_lists;
};

// Until iOS 12 they stand in the calendar.
std::vector<Reminder> remindersOfCalendar(Source &source)
{
    std::vector<Reminder> reminders;
    std::optional<CalendarStore> store =
        CalendarStore::open(source, DataType::Reminders, Notice("planner.remindersMayBeMissing"));
    if (!store)
        return reminders;
    ListsOfCalendar lists;
    store->read(CalendarStore::Kind::Reminder, [&](CalendarStore::Item &&item) {
        Event &event = item.event;
        Reminder reminder;
        reminder.id = event.id;
        reminder.uuid = event.uuid;
        reminder.title = event.title;
        reminder.notes = event.description;
        reminder.list = lists.list(event.calendar.get());
        reminder.due = item.due;
        reminder.isAllDay = item.due.kind() == PlannedTime::Kind::Day;
        reminder.isCompleted = item.isCompleted;
        reminder.completed = item.completed;
        reminder.created = event.created;
        reminder.modified = event.modified;
        reminder.priority = priorityOf(item.priority);
        reminder.details = std::move(event.details);
        reminders.push_back(std::move(reminder));
    });
    sort(reminders);
    return reminders;
}

} // namespace

std::vector<Reminder> readReminders(Source &source)
{
    for (const StoreFolder &place : kPlaces) {
        std::vector<Reminder> reminders = remindersAt(source, place);
        if (!reminders.empty())
            return reminders;
    }
    return remindersOfCalendar(source);
}

} // namespace PhoneBackup
