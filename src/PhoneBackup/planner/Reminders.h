#ifndef PHONEBACKUP_PLANNER_REMINDERS_H
#define PHONEBACKUP_PLANNER_REMINDERS_H

#include "PhoneBackup/planner/Reminder.h"

#include <vector>

namespace PhoneBackup {

class Source;

//! The reminders of the phone, list by list, the parts of each behind it.
std::vector<Reminder> readReminders(Source &source);

} // namespace PhoneBackup

#endif
