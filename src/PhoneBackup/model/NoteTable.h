#ifndef PHONEBACKUP_MODEL_NOTETABLE_H
#define PHONEBACKUP_MODEL_NOTETABLE_H

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
    Untrusted: references may lead nowhere or in circles, which are cells that stay empty. At most
    kMaxCells are read; time and memory are linear.
*/
struct NoteTable
{
    static constexpr qsizetype kMaxCells = 100'000;

    QList<QStringList> rows; //!< All of the same length, in the order of reading.
    bool isComplete = true; //!< false: it has more cells than are read, or is damaged.

    //! The table in \a document, the unpacked record; none when there is no table in it.
    static std::optional<NoteTable> read(QByteArrayView document);

    //! A line a row, its cells parted by bars; line ends in cells become blanks.
    QString text() const;
};

} // namespace PhoneBackup

#endif
