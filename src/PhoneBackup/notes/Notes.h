#ifndef PHONEBACKUP_NOTES_NOTES_H
#define PHONEBACKUP_NOTES_NOTES_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

//! Data types 9 and 18: the notes of both stores, and the files that are kept in them.
void readNotes(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
