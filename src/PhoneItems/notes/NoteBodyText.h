#ifndef PHONEITEMS_NOTES_NOTEBODYTEXT_H
#define PHONEITEMS_NOTES_NOTEBODYTEXT_H

#include "PhoneBackup/notes/Note.h"

namespace PhoneItems {

/*!
    \brief The body of a note as plain text.

    Lists have their marks and numbers, checklists their boxes, quotes their bars; what is indented
    stays so; links and attachments are named where they stand, and tables are lines with bars
    between the cells. Old notes are kept as HTML, whose blanks stand for nothing and whose quotes
    are indented by the browser: they have neither fixed blanks nor bars.
    \par Memory
    At most kMaxCharacters: one long name may stand in every place of a note.
*/
struct NoteBodyText
{
    static constexpr qsizetype kMaxCharacters = qsizetype(8) << 20;

    QString text;
    bool isComplete = true; //!< false: it was longer.

    //! The text of the body of \a note.
    static NoteBodyText of(const PhoneBackup::Note &note);

    /*!
        A line for each row of \a table, which stands in \a note; line ends in cells become blanks.
        Where text runs from right to left, characters that show nothing keep the columns in their
        order.
    */
    static NoteBodyText of(const PhoneBackup::NoteTable &table, const PhoneBackup::Note &note);
};

} // namespace PhoneItems

#endif
