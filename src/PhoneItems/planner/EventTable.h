#ifndef PHONEITEMS_PLANNER_EVENTTABLE_H
#define PHONEITEMS_PLANNER_EVENTTABLE_H

#include "PhoneItems/DataTypes.h"

namespace PhoneItems {

//! Data type 14: the events of the calendar, those that repeat once and with their rule.
void readEventTable(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
