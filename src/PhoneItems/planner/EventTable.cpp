#include "PhoneItems/planner/EventTable.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/planner/Events.h"
#include "PhoneItems/planner/PlannedText.h"
#include "PhoneItems/shared/TableData.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

// Title and address, a line each.
QString placeText(const Event &event)
{
    if (!event.place)
        return {};
    QStringList lines { event.place->title, event.place->address };
    lines.removeAll(QString());
    lines.removeDuplicates();
    return lines.join(u'\n');
}

Row rowOf(const Event &event)
{
    QStringList notes;
    if (!event.description.isEmpty())
        notes.append(event.description);
    if (event.replaces.isValid()) {
        notes.append(tr("Instead of the repeated event on %1").arg(plannedText(event.replaces)));
    }
    if (event.details)
        notes += remarks(*event.details, event.description);

    Row row;
    row.cells = { event.title,
                  event.calendar ? event.calendar->title : QString(),
                  placeText(event),
                  plannedText(event.start),
                  plannedEndText(event.end, event.start),
                  notes.join(u'\n') };
    row.date = PhoneTime::withinBounds(event.start.moment());
    row.id = event.id;
    return row;
}

} // namespace

void readEventTable(Source &source, DataSets &sets)
{
    auto table = std::make_unique<TableData>(
        DataType::Calendar,
        QStringList {
            tr("Title"), tr("Calendar"), tr("Location"), tr("Start"), tr("End"), tr("Notes") });
    for (const Event &event : readEvents(source))
        table->add(rowOf(event));
    sets[DataType::Calendar] = std::move(table);
}

} // namespace PhoneItems
