#ifndef PHONEBACKUP_NOTES_NOTEATTACHMENTS_H
#define PHONEBACKUP_NOTES_NOTEATTACHMENTS_H

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

namespace PhoneBackup {

//! Something that stands in a note: a file, a drawing, a table, a link, a hashtag.
struct NoteAttachment
{
    enum class Kind { Word, Link, Table, Drawing, Scan, Pdf, Gallery, File };

    qint64 key = 0;
    qint64 note = 0; //!< 0: see NoteAttachments::noteOf().
    qint64 medium = 0;
    qint64 parent = 0; //!< Another attachment.
    QString identifier;
    QString type;
    QString title;
    QString alternative; //!< What stands for it in a text.
    QString url;
    QString imageGeneration; //!< Folder of the picture that shows it.
    QString pdfGeneration; //!< Folder of the PDF that shows it.
    QDateTime created;
    bool isDeleted = false;

    Kind kind() const;

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
    };

    //! Adds \a attachment, unless one of its key is known.
    void add(const NoteAttachment &attachment);

    //! Adds a medium; \a attachment is the key of what it belongs to, 0 when only that knows.
    void addMedium(qint64 key, const Medium &medium, qint64 attachment);

    //! Says that the attachment \a identifier stands in \a note, unless it says itself where.
    void place(const QString &identifier, qint64 note);

    //! All of them, in the order in which they were added.
    const QList<NoteAttachment> &all() const { return m_attachments; }

    //! The attachment \a identifier; one of \a type that nothing else is known of, if need be.
    NoteAttachment find(const QString &identifier, const QString &type) const;

    Medium mediumOf(const NoteAttachment &attachment) const;

    //! The note of \a attachment or of what it is a part of; 0 when there is none.
    qint64 noteOf(const NoteAttachment &attachment) const;

    //! What stands for \a attachment in a text: a name in brackets, or its own words.
    QString label(const NoteAttachment &attachment) const;

    //! What a file that shows \a attachment is to be called; \a extension is that of the file.
    QString renderingName(const NoteAttachment &attachment, const QString &extension) const;

private:
    QList<NoteAttachment> m_attachments;
    QHash<qint64, qsizetype> m_byKey;
    QHash<QString, qsizetype> m_byIdentifier;
    QHash<qint64, Medium> m_media;
    QHash<qint64, qint64> m_mediumOfAttachment;
};

} // namespace PhoneBackup

#endif
