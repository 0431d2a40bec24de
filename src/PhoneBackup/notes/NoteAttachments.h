#ifndef PHONEBACKUP_NOTES_NOTEATTACHMENTS_H
#define PHONEBACKUP_NOTES_NOTEATTACHMENTS_H

#include "PhoneBackup/notes/Note.h"

#include <QHash>
#include <QList>

namespace PhoneBackup {

//! An attachment as the store has it: the record, and what it refers to by key.
struct StoredAttachment
{
    NoteAttachment record;
    qint64 note = 0; //!< 0: see NoteAttachments::noteOf().
    qint64 medium = 0;
    QString imageGeneration; //!< Folder of the picture that shows it.
    QString pdfGeneration; //!< Folder of the PDF that shows it.

    //! Whether the phone keeps a picture or PDF of it, which is all that others can open.
    bool isKeptAsRendering() const;
};

/*!
    \brief The attachments of all notes, and the media that hold their files.

    Links between them are not trusted: they may lead nowhere or in circles.
*/
class NoteAttachments
{
public:
    //! The object that a file belongs to.
    struct Medium
    {
        QString identifier;
        QString name;
        qint64 bytes = -1;
    };

    //! What an attachment of \a type is.
    static NoteAttachment::Kind kindOf(const QString &type);

    //! Adds \a attachment, unless one of its key is known.
    void add(const StoredAttachment &attachment);

    //! Adds a medium; \a attachment is the key of what it belongs to, 0 when only that knows.
    void addMedium(qint64 key, const Medium &medium, qint64 attachment);

    //! Says that the attachment \a identifier stands in \a note, unless it says itself where.
    void place(const QString &identifier, qint64 note);

    //! All of them, in the order in which they were added.
    const QList<StoredAttachment> &all() const { return m_attachments; }

    //! The attachment \a identifier; null when the store has none.
    const StoredAttachment *find(const QString &identifier) const;

    //! The record of \a attachment, with what its medium knows.
    NoteAttachment record(const StoredAttachment &attachment) const;

    Medium mediumOf(const StoredAttachment &attachment) const;

    //! The note of \a attachment or of what it is a part of; 0 when there is none.
    qint64 noteOf(const StoredAttachment &attachment) const;

private:
    QList<StoredAttachment> m_attachments;
    QHash<qint64, qsizetype> m_byKey;
    QHash<QString, qsizetype> m_byIdentifier;
    QHash<qint64, Medium> m_media;
    QHash<qint64, qint64> m_mediumOfAttachment;
};

} // namespace PhoneBackup

#endif
