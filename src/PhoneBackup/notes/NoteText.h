#ifndef PHONEBACKUP_NOTES_NOTETEXT_H
#define PHONEBACKUP_NOTES_NOTETEXT_H

#include <QByteArrayView>
#include <QString>

#include <functional>

namespace PhoneBackup {

/*!
    \brief The text of a note as a person reads it, from the record that the phone keeps of it.

    Lists have their marks and numbers, checklists their boxes, quotes their bars; what is indented
    stays so; links and attachments are named where they stand. Bold, italic and the like are not
    kept.
    \par Bytes
    Untrusted: what is damaged ends the text, or leaves the rest of it without marks.
    \par Memory
    At most kMaxCharacters of text, whatever the record says. Time is linear in both.
*/
struct NoteText
{
    static constexpr qsizetype kMaxCharacters = qsizetype(8) << 20;

    //! What stands in place of an attachment: a name in brackets, or lines of a table.
    struct Inset
    {
        QString text;
        bool isBlock = false; //!< Stands on lines of its own.
    };
    //! What to show for the attachment of an identifier and a type.
    using Insets = std::function<Inset(const QString &identifier, const QString &type)>;

    QString text;
    bool isComplete = true; //!< false: the record is damaged, or too long.

    //! The text of \a document: the unpacked record of a note.
    static NoteText read(QByteArrayView document, const Insets &insets);

    //! The same for \a body, the part of a record that holds text and runs: as cells of tables do.
    static NoteText readBody(QByteArrayView body, const Insets &insets);

    /*!
        What to add behind a link that is shown as \a shown: its target, empty when that is what is
        shown.
    */
    static QString linkTarget(const QString &shown, const QString &target);
};

} // namespace PhoneBackup

#endif
