#ifndef PHONEBACKUP_NOTES_NOTETEXT_H
#define PHONEBACKUP_NOTES_NOTETEXT_H

#include "PhoneBackup/notes/NoteBody.h"

#include <QByteArrayView>

#include <functional>

namespace PhoneBackup {

/*!
    \brief The body of a note, from the record that the phone keeps of it.
    \par Bytes
    Untrusted: what is damaged ends the body, or leaves the rest of it without looks.
    \par Memory
    At most what NoteBodyWriter allows, whatever the record says. Time is linear in both.
*/
struct NoteText
{
    //! What stands in place of a character.
    struct Inset
    {
        qint32 attachment = -1; //!< Its number in the note.
        std::shared_ptr<const NoteTable> table; //!< Stands as a block; none: the attachment does.
    };
    //! The attachment of an identifier and a type.
    using Insets = std::function<Inset(const QString &identifier, const QString &type)>;

    NoteBody body;
    bool isComplete = true; //!< false: the record is damaged, or too long.

    //! The body in \a document: the unpacked record of a note.
    static NoteText read(QByteArrayView document, const Insets &insets);

    //! The same for \a body, the part of a record that holds text and runs: as cells of tables do.
    static NoteText readBody(QByteArrayView body, const Insets &insets);
};

} // namespace PhoneBackup

#endif
