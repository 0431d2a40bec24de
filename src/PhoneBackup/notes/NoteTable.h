#ifndef PHONEBACKUP_NOTES_NOTETABLE_H
#define PHONEBACKUP_NOTES_NOTETABLE_H

#include "PhoneBackup/notes/NoteText.h"

#include <QByteArrayView>
#include <QList>
#include <QStringList>

#include <optional>

namespace PhoneBackup {

/*!
    \brief A table that stands in a note.

    The phone keeps tables so that several devices may change them at once: rows, columns and cells
    are objects that refer to each other by number and by identifier.
    \par Bytes
    Untrusted: references may lead nowhere or in circles. At most kMaxCells are read; time and
    memory are linear.
*/
struct NoteTable
{
    static constexpr qsizetype kMaxCells = 100'000;

    QList<QStringList> rows; //!< All of the same length, in the order of reading.
    bool isRightToLeft = false; //!< The first column is the right-most.
    bool isComplete = true; //!< false: cells are missing, because it is damaged or too long.

    //! The table in \a document, the unpacked record; none when there is no table in it. \a insets
    //! tells what to show for the attachments in its cells.
    static std::optional<NoteTable> read(QByteArrayView document, const NoteText::Insets &insets);

    /*!
        A line a row, its cells parted by bars; line ends in cells become blanks. Where text runs
        from right to left, characters that show nothing keep the columns in their order.
    */
    QString text() const;
};

} // namespace PhoneBackup

#endif
