#ifndef PHONEBACKUP_MESSAGES_MESSAGEFILES_H
#define PHONEBACKUP_MESSAGES_MESSAGEFILES_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

/*!
    Data type 7: the files sent in messages, under the name they were sent with; a group a
    conversation. Files that no message tells of come last, in a group of their own.
*/
void readMessageFiles(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
