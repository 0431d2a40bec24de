#include "PhoneItems/planner/ReminderTable.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/planner/Reminders.h"
#include "PhoneItems/planner/PlannedText.h"
#include "PhoneItems/shared/TableData.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QHash>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

QString priorityText(Reminder::Priority priority)
{
    switch (priority) {
    case Reminder::Priority::None:
        return {};
    case Reminder::Priority::High:
        return tr("Priority: high");
    case Reminder::Priority::Medium:
        return tr("Priority: medium");
    case Reminder::Priority::Low:
        break;
    }
    return tr("Priority: low");
}

QString completedText(const Reminder &reminder)
{
    if (!reminder.isCompleted)
        return {};
    return reminder.completed.isValid() ? CCommonUtils::datetimeToMinute(reminder.completed, true)
                                        : tr("Yes");
}

// The whole that a reminder is a part of goes by its title among \a titles.
Row rowOf(const Reminder &reminder, const QHash<qint64, QString> &titles)
{
    QStringList notes { reminder.notes };
    const QString parent = titles.value(reminder.parent);
    if (reminder.parent != 0 && !parent.isEmpty())
        notes.append(tr("Part of “%1”").arg(parent));
    if (reminder.isFlagged)
        notes.append(tr("Flagged"));
    notes.append(priorityText(reminder.priority));
    if (reminder.details)
        notes += remarks(*reminder.details, reminder.notes);
    notes.removeAll(QString());

    Row row;
    row.cells = { reminder.title,
                  reminder.list ? reminder.list->title : QString(),
                  plannedText(reminder.due),
                  completedText(reminder),
                  notes.join(u'\n') };
    row.date = PhoneTime::withinBounds(reminder.due.moment());
    row.id = reminder.id;
    row.deleted = reminder.deleted;
    return row;
}

} // namespace

void readReminderTable(Source &source, DataSets &sets)
{
    auto table = std::make_unique<TableData>(
        DataType::Reminders,
        QStringList { tr("Title"), tr("List"), tr("Due"), tr("Completed"), tr("Notes") });
    const std::vector<Reminder> reminders = readReminders(source);
    QHash<qint64, QString> titles;
    for (const Reminder &reminder : reminders)
        titles.insert(reminder.id, reminder.title);
    for (const Reminder &reminder : reminders)
        table->add(rowOf(reminder, titles));
    sets[DataType::Reminders] = std::move(table);
}

} // namespace PhoneItems
