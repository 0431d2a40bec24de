#ifndef PHONEITEMS_MESSAGES_MESSAGES_H
#define PHONEITEMS_MESSAGES_MESSAGES_H

#include "PhoneItems/DataTypes.h"

namespace PhoneItems {

//! Data type 6: the phone's own messages, newest conversation first.
void readMessages(PhoneBackup::Source &source, DataSets &sets);

/*!
    Data type 7: the files sent in messages, under the name they were sent with; a group a
    conversation. Files that no message tells of come last, in a group of their own.
*/
void readMessageFiles(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
