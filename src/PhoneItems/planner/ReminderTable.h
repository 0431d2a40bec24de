#ifndef PHONEITEMS_PLANNER_REMINDERTABLE_H
#define PHONEITEMS_PLANNER_REMINDERTABLE_H

#include "PhoneItems/DataTypes.h"

namespace PhoneItems {

//! Data type 13: the reminders, list by list.
void readReminderTable(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
