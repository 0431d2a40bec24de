#ifndef PHONEBACKUP_PLANNER_REMINDERS_H
#define PHONEBACKUP_PLANNER_REMINDERS_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 13: the reminders, list by list.
void readReminders(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
