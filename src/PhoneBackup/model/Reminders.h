#ifndef PHONEBACKUP_MODEL_REMINDERS_H
#define PHONEBACKUP_MODEL_REMINDERS_H

#include "model/DataTypes.h"

namespace PhoneBackup {

//! Data type 13: the reminders, list by list.
void readReminders(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
