#ifndef PHONEBACKUP_CALLS_CALLHISTORY_H
#define PHONEBACKUP_CALLS_CALLHISTORY_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 15: calls with name, number, type, date and duration, newest first.
void readCallHistory(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
