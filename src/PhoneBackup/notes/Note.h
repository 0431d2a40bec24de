#ifndef PHONEBACKUP_NOTES_NOTE_H
#define PHONEBACKUP_NOTES_NOTE_H

#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/notes/NoteBody.h"

#include <QDateTime>
#include <QSize>

namespace PhoneBackup {

//! A file of an attachment that the backup has.
struct NoteFile
{
    enum class Shows {
        Original, //!< The file that was put into the note.
        Picture, //!< A picture that the phone made of the attachment.
        Pdf, //!< A PDF that the phone made of it.
    };

    FileIndex::Row row = FileIndex::kNone;
    Shows shows = Shows::Original;
};

//! Something that stands in a note: a file, a drawing, a table, a link, a hashtag.
struct NoteAttachment
{
    enum class Kind {
        Hashtag,
        Mention,
        NoteLink, //!< To another note.
        Calculation, //!< What comes behind "=".
        Word, //!< Any other that is a part of the text.
        Link, //!< Shown with title and picture.
        Table,
        Drawing,
        Scan,
        Pdf, //!< Drawn upon by the owner.
        Gallery, //!< A scan of several pages, which are attachments of their own.
        File,
        EmbeddedPicture, //!< A picture in a note from before iOS 9, which has no file.
        EmbeddedFile, //!< Likewise for any other file.
    };
    enum class Presence {
        NoFile, //!< It needs none.
        Present, //!< As files says.
        NeverDownloaded, //!< The phone itself does not have it.
        Locked, //!< It belongs to a locked note.
    };

    qint64 id = 0; //!< ROWID; 0: nothing but identifier and type are known.
    QString identifier;
    QString type; //!< Uniform type identifier: "public.jpeg".
    Kind kind = Kind::File;
    Presence presence = Presence::NoFile;
    bool isOwn = false; //!< It belongs to this note, whether it stands in the text or not.
    bool deleted = false;
    QString title; //!< That the owner gave it, else its own.
    QString fileName;
    QString text; //!< Of what is a part of the text: "#trip".
    QString target; //!< Of the same: the hashtag, the account or the note that it names.
    QString url;
    QString summary; //!< Of the page behind a link.
    QString words; //!< That were found in a picture, or written by hand.
    qint64 parent = 0; //!< The attachment whose page or part it is; 0: none.
    qint64 bytes = -1; //!< Size of the file as the phone states it; -1: not known.
    QSize size; //!< In pixels; empty when not known.
    double seconds = 0; //!< Duration of sound or film.
    QDateTime created;
    QDateTime modified;
    std::vector<NoteFile> files;
};

/*!
    \brief A note, whatever store it comes from.

    What the phone has deleted for good may be left as a deleted note without title and body.
*/
struct Note
{
    enum class Store {
        Current, //!< Since iOS 9.
        Old,
    };
    enum class BodyState {
        Whole,
        Cut, //!< Damaged or too long: the end of the body, or all of it, is missing.
        Unreadable, //!< It is there, but damaged.
        Elsewhere, //!< Nothing is there: it is in the cloud only, or empty.
        Locked,
    };

    Store store = Store::Current;
    qint64 id = -1; //!< ROWID, in its store.
    QString identifier; //!< The same in every backup.
    QString title; //!< Empty when the phone keeps none.
    QString snippet; //!< The beginning of its text as the phone's list of notes shows it.
    QString folder; //!< With those that it lies in: "Boats/Repairs".
    QString account;
    BodyState bodyState = BodyState::Elsewhere;
    bool pinned = false;
    bool shared = false;
    bool deleted = false;
    QString hint; //!< At the password of a locked note.
    QDateTime created;
    QDateTime modified;
    QDateTime opened; //!< When it was last looked at.
    NoteBody body;
    std::vector<NoteAttachment> attachments; //!< Those that the body names, then its others.

    bool isLocked() const { return bodyState == BodyState::Locked; }
    //! What a list of notes is ordered by, the newest first.
    const QDateTime &orderDate() const { return modified.isValid() ? modified : created; }
};

} // namespace PhoneBackup

#endif
