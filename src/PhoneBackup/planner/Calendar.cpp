#include "PhoneBackup/planner/Calendar.h"

#include "PhoneBackup/planner/CalendarStore.h"
#include "PhoneBackup/planner/PlannedTime.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneItems/shared/TableData.h"
#include "platform/Translation_p.h"

#include <algorithm>
#include <limits>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kCalendar = 14;

double order(const CalendarStore::Item &item)
{
    const PlannedTime start(item.start, item.startZone, PlannedTime::Kind::Moment);
    return start.seconds().value_or(std::numeric_limits<double>::max());
}

Row rowOf(const CalendarStore::Item &item)
{
    const auto kind = item.isAllDay ? PlannedTime::Kind::Day : PlannedTime::Kind::Moment;
    // Days without a zone are days on the clock.
    const auto zone = [&item](const QString &own) {
        return item.isAllDay && own.isEmpty() ? u"_float"_s : own;
    };
    const PlannedTime start(item.start, zone(item.startZone), kind);
    const PlannedTime end(
        item.end, zone(item.endZone.isEmpty() ? item.startZone : item.endZone), kind);
    QStringList notes;
    if (!item.description.isEmpty())
        notes.append(item.description);
    if (item.replaces) {
        const PlannedTime replaced(item.replaces, zone(item.startZone), kind);
        notes.append(tr("Instead of the repeated event on %1").arg(replaced.text()));
    }
    notes += item.remarks;

    Row row;
    row.cells = { item.title,   item.calendar,      item.location,
                  start.text(), end.endText(start), notes.join(u'\n') };
    row.date = PhoneTime::since2001(start.seconds());
    row.id = item.id;
    return row;
}

} // namespace

void readCalendar(Source &source, DataSets &sets)
{
    auto table = std::make_unique<TableData>(
        kCalendar,
        QStringList {
            tr("Title"), tr("Calendar"), tr("Location"), tr("Start"), tr("End"), tr("Notes") });
    std::optional<CalendarStore> store =
        CalendarStore::open(source, kCalendar, tr("Events may be missing."));
    if (store) {
        QList<CalendarStore::Item> items = store->items(CalendarStore::Kind::Event);
        std::stable_sort(items.begin(), items.end(), [](const auto &a, const auto &b) {
            return order(a) < order(b);
        });
        for (const CalendarStore::Item &item : std::as_const(items))
            table->add(rowOf(item));
    }
    sets[kCalendar] = std::move(table);
}

} // namespace PhoneBackup
