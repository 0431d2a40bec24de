#ifndef PHONEBACKUP_NOTES_NOTEDRAFTS_H
#define PHONEBACKUP_NOTES_NOTEDRAFTS_H

#include "PhoneBackup/notes/NoteAttachments.h"
#include "PhoneBackup/notes/NoteFolders.h"

namespace PhoneBackup {

//! A note while its store is read, and what it refers to by key.
struct NoteDraft
{
    Note note;
    qint64 folder = 0;
    qint64 account = 0;
    QHash<qint64, qint32> attachments; //!< Places in the note, by key.
    QHash<QString, qint32> unknownAttachments; //!< Likewise, by identifier and type.
};

//! What the store has found so far of notes and of all that they refer to.
struct NoteDrafts
{
    //! An owner's account of notes.
    struct Account
    {
        QString name;
        QString hint; //!< At the password of its locked notes.
    };

    //! The place of \a attachment in the note of \a draft, to which it is added if need be.
    qint32 place(const StoredAttachment &attachment, NoteDraft &draft) const;

    //! The same for the attachment \a identifier, which the text of \a draft says is of \a type.
    qint32 placeInText(const QString &identifier, const QString &type, NoteDraft &draft);

    //! The notes in the order of the store, complete.
    std::vector<Note> take();

    QHash<qint64, NoteDraft> drafts; //!< By key; that of a note of which only the text is left is
                                     //!< the complement of the text's.
    QList<qint64> order; //!< Of the drafts in the store.
    QHash<qint64, qint64> noteOfText; //!< By the key of its text.
    QHash<qint64, Account> accounts;
    NoteFolders folders;
    NoteAttachments attachments;
};

} // namespace PhoneBackup

#endif
