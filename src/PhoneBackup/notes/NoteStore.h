#ifndef PHONEBACKUP_NOTES_NOTESTORE_H
#define PHONEBACKUP_NOTES_NOTESTORE_H

#include "PhoneBackup/notes/Note.h"

namespace PhoneBackup {

class NoteMedia;
class Source;

/*!
    The notes in the store that phones have since iOS 9: one wide table of notes, folders and
    attachments, told apart by their kind, and a packed record of each note's text. In the order of
    the store; empty when the backup has no such store. \a media finds the files of attachments.

    Links between the objects are not trusted: they may lead nowhere or in circles.
    \see NoteBodies for what all notes together may hold
*/
std::vector<Note> readNoteStore(Source &source, NoteMedia &media);

} // namespace PhoneBackup

#endif
