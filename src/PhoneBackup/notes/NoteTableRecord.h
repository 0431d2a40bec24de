#ifndef PHONEBACKUP_NOTES_NOTETABLERECORD_H
#define PHONEBACKUP_NOTES_NOTETABLERECORD_H

#include "PhoneBackup/notes/NoteText.h"

#include <optional>

namespace PhoneBackup {

/*!
    \brief The record of a table that stands in a note.

    The phone keeps tables so that several devices may change them at once: rows, columns and cells
    are objects that refer to each other by number and by identifier.
    \par Bytes
    Untrusted: references may lead nowhere or in circles. At most kMaxCells are read; time and
    memory are linear.
*/
struct NoteTableRecord
{
    static constexpr qsizetype kMaxCells = 100'000;

    NoteTable table;
    bool isComplete = true; //!< false: cells are missing, because it is damaged or too long.

    //! The table in \a document, the unpacked record; none when there is no table in it. \a insets
    //! tells what stands in its cells.
    static std::optional<NoteTableRecord> read(QByteArrayView document,
                                               const NoteText::Insets &insets);
};

} // namespace PhoneBackup

#endif
