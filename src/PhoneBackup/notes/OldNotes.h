#ifndef PHONEBACKUP_NOTES_OLDNOTES_H
#define PHONEBACKUP_NOTES_OLDNOTES_H

#include "PhoneBackup/notes/Note.h"

namespace PhoneBackup {

class Source;

//! The notes in the store of systems before iOS 9, which newer ones keep for accounts that have
//! not been upgraded. In the order of the store; empty when the backup has none.
std::vector<Note> readOldNotes(Source &source);

} // namespace PhoneBackup

#endif
