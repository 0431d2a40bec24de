#ifndef PHONEBACKUP_MODEL_CALENDAR_H
#define PHONEBACKUP_MODEL_CALENDAR_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Data type 14: the events of the calendar, those that repeat once and with their rule.
void readCalendar(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
