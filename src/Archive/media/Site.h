#ifndef ARCHIVE_MEDIA_SITE_H
#define ARCHIVE_MEDIA_SITE_H

#include "Archive/html/LocalClock.h"
#include "Archive/html/Page.h"
#include "Archive/media/ExportedFiles.h"
#include "Archive/media/Thumbnails.h"
#include "Archive/output/OutputTree.h"
#include "Archive/search/SearchIndex.h"

namespace PhoneBackup {
class Source;
}

namespace Archive {

//! What all rooms of the archive write with. Everything is borrowed.
struct Site
{
    PhoneBackup::Source &source;
    OutputTree &tree;
    const ExportedFiles &files;
    Thumbnails &thumbnails;
    SearchIndex &search;
    LocalClock &clock;
    const Frame &frame;
    QHash<QByteArray, QByteArray> &tiles; //!< What the entrance shows of a section, by its folder.

    //! Writes \a page with \a body at \a path in the archive.
    void write(const QString &path, const Page &page, const QByteArray &body)
    {
        tree.write(path, page.html(frame, body));
    }
};

//! The inside of the tile of a section with \a count entries of \a period ("2021 – 2024"): the
//! number, and a line for each of its latest entries.
QByteArray tile(qint64 count, const QString &period, const QStringList &latest);

} // namespace Archive

#endif
