#ifndef ARCHIVE_MEDIA_THUMBNAILS_H
#define ARCHIVE_MEDIA_THUMBNAILS_H

#include "PhoneBackup/base/KeepGoing.h"
#include "PhoneBackup/folder/FileIndex.h"

#include <QByteArray>
#include <QHash>
#include <QSize>
#include <QString>

#include <functional>
#include <vector>

namespace PhoneBackup {
class BackupFiles;
}

namespace Archive {

class OutputTree;

//! A small picture as bytes of a file.
struct SmallPicture
{
    QByteArray bytes; //!< Empty when it could not be made.
    QSize size;
    bool isPng = false; //!< Else it is a JPEG.
};

/*!
    Makes a small picture of the file \a bytes, which is untrusted: at most \a sidePx wide and high,
    never larger than it is. Called by several threads at once.
*/
using PictureMaker = std::function<SmallPicture(const QByteArray &bytes, int sidePx)>;

/*!
    \brief Small pictures of the backup's pictures, each made once and kept for the next export.

    They are made on all processors; the backup is read by the caller's thread alone.
*/
class Thumbnails
{
public:
    static constexpr int kSidePx = 480;
    static constexpr int kAvatarPx = 96;

    //! One of them. Its path is relative to the archive.
    struct Thumb
    {
        QString path;
        QSize size;

        bool isNull() const { return path.isEmpty(); }
    };

    //! All are borrowed or kept.
    Thumbnails(PhoneBackup::BackupFiles &files,
               OutputTree &tree,
               PictureMaker maker,
               PhoneBackup::KeepGoing keepGoing);

    //! Makes those of \a rows that are not there yet.
    void prepare(const std::vector<PhoneBackup::FileIndex::Row> &rows);

    //! That of a row that was prepared; null for what is no picture.
    Thumb of(PhoneBackup::FileIndex::Row row) const;

    //! One of a picture that is no file of its own, kAvatarPx wide and high. \a key is unlike that
    //! of all others.
    Thumb ofBytes(const QByteArray &picture, const QByteArray &key);

private:
    struct Known
    {
        quint64 key = 0;
        QSize size;
        bool isPng = false;
    };

    static QString pathOf(const Known &known);
    quint64 keyOf(PhoneBackup::FileIndex::Row row);
    void findEarlier();

    PhoneBackup::BackupFiles &m_files;
    OutputTree &m_tree;
    PictureMaker m_maker;
    PhoneBackup::KeepGoing m_keepGoing;
    QHash<PhoneBackup::FileIndex::Row, Known> m_known;
    QHash<quint64, Known> m_earlier; // that an earlier export made
};

} // namespace Archive

#endif
