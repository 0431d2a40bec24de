#ifndef PHONEBACKUP_MESSAGES_MESSAGES_H
#define PHONEBACKUP_MESSAGES_MESSAGES_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data type 6: the phone's own messages, newest conversation first.
void readMessages(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
