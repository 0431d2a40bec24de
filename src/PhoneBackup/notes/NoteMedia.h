#ifndef PHONEBACKUP_NOTES_NOTEMEDIA_H
#define PHONEBACKUP_NOTES_NOTEMEDIA_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QHash>
#include <QList>
#include <QSet>

namespace PhoneBackup {

/*!
    \brief The files of notes, found by the identifier that is a part of their path:
    "…/Media/<identifier>/…/<name>"; "…/FallbackImages/<identifier>…" and
    "…/FallbackPDFs/<identifier>…" for what is drawn and scanned.

    Changing an attachment makes a new folder for its file, a generation; older ones may stay.
*/
class NoteMedia
{
public:
    static constexpr QByteArrayView kDomain = "AppDomainGroup-group.com.apple.notes";

    explicit NoteMedia(const FileIndex &index);

    /*!
        The file of the medium \a identifier, the one that is called \a name when there are several;
        kNone when the backup has none. It counts as used.
    */
    FileIndex::Row take(const QString &identifier, const QString &name);

    enum class Rendering { Picture, Pdf };

    /*!
        The file that shows the attachment \a identifier as \a rendering: that of \a generation,
        else the newest; kNone when the backup has none. All that show it count as used.
    */
    FileIndex::Row
    takeRendering(Rendering rendering, const QString &identifier, const QString &generation);

    //! Does not offer the files of the medium or attachment \a identifier: they are of no use.
    void leaveOut(const QString &identifier);

    //! The files that nobody asked for, in the order of the index.
    QList<FileIndex::Row> unused() const;

private:
    using Files = QHash<QByteArray, QList<FileIndex::Row>>; // by identifier

    const FileIndex &m_index;
    Files m_media;
    Files m_pictures;
    Files m_pdfs;
    QList<FileIndex::Row> m_all;
    QSet<FileIndex::Row> m_used;
};

} // namespace PhoneBackup

#endif
