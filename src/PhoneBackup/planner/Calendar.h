#ifndef PHONEBACKUP_PLANNER_CALENDAR_H
#define PHONEBACKUP_PLANNER_CALENDAR_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 14: the events of the calendar, those that repeat once and with their rule.
void readCalendar(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
