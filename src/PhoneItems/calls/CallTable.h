#ifndef PHONEITEMS_CALLS_CALLTABLE_H
#define PHONEITEMS_CALLS_CALLTABLE_H

#include "PhoneBackup/source/Call.h"
#include "PhoneItems/DataTypes.h"

#include <vector>

namespace PhoneItems {

/*!
    Data type 15: calls with name, number, type, date and duration, newest first. \a ofLogs come
    from the logs of apps.
*/
void readCallTable(PhoneBackup::Source &source,
                   DataSets &sets,
                   std::vector<PhoneBackup::Call> ofLogs);

//! Data type 16: voicemail recordings, named after date and caller, newest first.
void readVoicemailFiles(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
