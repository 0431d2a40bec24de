#ifndef PHONEITEMS_NOTES_ATTACHMENTWORDS_H
#define PHONEITEMS_NOTES_ATTACHMENTWORDS_H

#include "PhoneBackup/notes/Note.h"

namespace PhoneItems {

//! What stands for \a attachment in a text: a name in brackets, or its own words.
QString label(const PhoneBackup::NoteAttachment &attachment);

//! What a file that shows \a attachment is to be called; \a extension is that of the file.
QString renderingName(const PhoneBackup::NoteAttachment &attachment, const QString &extension);

} // namespace PhoneItems

#endif
