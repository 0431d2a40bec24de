#ifndef PHONEBACKUP_NOTES_HTMLBODY_H
#define PHONEBACKUP_NOTES_HTMLBODY_H

#include "PhoneBackup/notes/Note.h"

namespace PhoneBackup {

/*!
    The body that \a html, the text of an old note, shows: a block for each line, with what the
    tags say of its look. Tables are lines of text (NoteBlock::Kind::Row). Scripts and styles are
    left out; blanks are those that are shown. A text without any tag is taken as it is, its
    entities decoded. What pictures and files stand in it is added to \a attachments. Never fails;
    time is linear.
*/
NoteBody bodyOfHtml(const QString &html, std::vector<NoteAttachment> &attachments);

} // namespace PhoneBackup

#endif
