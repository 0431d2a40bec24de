#ifndef ARCHIVE_MEDIA_MEDIAHTML_H
#define ARCHIVE_MEDIA_MEDIAHTML_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QSize>
#include <QString>

#include <vector>

namespace Archive {

class Html;
struct Page;
struct Site;

//! A file that a page shows.
struct Media
{
    enum class Kind : quint8 { Picture, Film, Sound, Other };

    Kind kind = Kind::Other;
    bool isSticker = false;
    PhoneBackup::FileIndex::Row file = PhoneBackup::FileIndex::kNone;
    PhoneBackup::FileIndex::Row preview = PhoneBackup::FileIndex::kNone; //!< A small picture of it.
    QString name;
    QString missing; //!< Why it is not there, in words; empty when it is.
    QString transcript; //!< Of speech.
    qint64 bytes = 0; //!< 0: not known.
    double seconds = -1; //!< Less than 0: not known.

    //! The kind of a file with this name, by its extension.
    static Kind kindOf(QStringView name);

    //! Adds the rows of which the page will want small pictures.
    void addWanted(std::vector<PhoneBackup::FileIndex::Row> &rows) const;
};

//! Shows files in pages: pictures as small ones that lead to the original, films and sound to be
//! played in place, all others with a link.
class MediaHtml
{
public:
    //! For pages like \a page; both are borrowed.
    MediaHtml(const Site &site, const Page &page);

    //! Shows \a media, whose small pictures are prepared.
    void put(Html &html, const Media &media) const;

    //! The same as a square in a grid, with \a anchor for its address unless that is empty.
    void putTile(Html &html, const Media &media, const QByteArray &anchor, QStringView about) const;

    //! A small picture at \a path in the archive, which says nothing by itself.
    void putAvatar(Html &html, const QString &path, QStringView name) const;

private:
    bool putPicture(Html &html, const Media &media) const;
    void putFilm(Html &html, const Media &media, const QString &path) const;
    void putSound(Html &html, const Media &media, const QString &path) const;
    void putFile(Html &html, const Media &media, const QString &path) const;

    const Site &m_site;
    const QByteArray m_toArchive;
    const QByteArray m_toOutput;
};

} // namespace Archive

#endif
