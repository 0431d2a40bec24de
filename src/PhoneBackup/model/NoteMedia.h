#ifndef PHONEBACKUP_MODEL_NOTEMEDIA_H
#define PHONEBACKUP_MODEL_NOTEMEDIA_H

#include "folder/FileIndex.h"

#include <QHash>
#include <QList>
#include <QSet>

namespace PhoneBackup {

/*!
    \brief The files of notes, found by the identifier that is a part of their path:
    "…/Media/<identifier>/…/<name>", and "…/FallbackImages/<identifier>…" for what is drawn.
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

    //! The picture that stands for the drawing \a identifier, likewise.
    FileIndex::Row takeDrawing(const QString &identifier);

    //! Does not offer the files of the medium \a identifier: they are of no use.
    void leaveOut(const QString &identifier);

    //! The media that nobody asked for, in the order of the index.
    QList<FileIndex::Row> unused() const;

private:
    const FileIndex &m_index;
    QHash<QByteArray, QList<FileIndex::Row>> m_media;
    QHash<QByteArray, FileIndex::Row> m_drawings;
    QList<FileIndex::Row> m_all;
    QSet<FileIndex::Row> m_used;
};

} // namespace PhoneBackup

#endif
