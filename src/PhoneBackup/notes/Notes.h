#ifndef PHONEBACKUP_NOTES_NOTES_H
#define PHONEBACKUP_NOTES_NOTES_H

#include "PhoneBackup/notes/Note.h"

#include <functional>

namespace PhoneBackup {

class Source;

/*!
    Calls \a sink for each note of both stores, the newest first; upgrading may leave a copy in the
    old one, which is left out.

    \return The files of the app for notes that belong to no note, in the order of the index.
*/
QList<FileIndex::Row> readNotes(Source &source, const std::function<void(const Note &)> &sink);

} // namespace PhoneBackup

#endif
