#ifndef PHONEITEMS_NOTES_NOTES_H
#define PHONEITEMS_NOTES_NOTES_H

#include "PhoneItems/DataTypes.h"

namespace PhoneItems {

//! Data types 9 and 18: the notes of both stores, and the files that are kept in them.
void readNotes(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
