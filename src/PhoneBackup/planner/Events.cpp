#include "PhoneBackup/planner/Events.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/planner/CalendarStore.h"

#include <algorithm>

namespace PhoneBackup {

namespace {

// What has no start comes last.
bool startsBefore(const Event &a, const Event &b)
{
    if (!a.start.isValid() || !b.start.isValid())
        return a.start.isValid() && !b.start.isValid();
    return a.start.moment() < b.start.moment();
}

} // namespace

std::vector<Event> readEvents(Source &source)
{
    std::vector<Event> events;
    std::optional<CalendarStore> store =
        CalendarStore::open(source, DataType::Calendar, Notice("planner.eventsMayBeMissing"));
    if (store) {
        store->read(CalendarStore::Kind::Event, [&events](CalendarStore::Item &&item) {
            events.push_back(std::move(item.event));
        });
    }
    std::stable_sort(events.begin(), events.end(), startsBefore);
    return events;
}

} // namespace PhoneBackup
