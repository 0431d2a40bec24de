#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "planner.eventsMayBeMissing", QT_TRANSLATE_NOOP("DataExport", "Events may be missing.") },
    { "planner.noEvents", QT_TRANSLATE_NOOP("DataExport", "It has no readable table of events.") },
    { "planner.remindersMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport", "Reminders may be missing.") },
    { "planner.noReminders",
      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of reminders.") },
};

} // namespace

std::span<const NoticeWords> plannerNotices()
{
    return kNotices;
}

} // namespace PhoneItems
