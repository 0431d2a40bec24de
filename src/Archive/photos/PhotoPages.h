#ifndef ARCHIVE_PHOTOS_PHOTOPAGES_H
#define ARCHIVE_PHOTOS_PHOTOPAGES_H

#include "Archive/media/MediaHtml.h"
#include "Archive/records/RecordTaker.h"

#include <QHash>

#include <map>
#include <vector>

namespace Archive {

//! Photos and videos by month and by album; shared albums.
class PhotoPages final : public TakerOf<PhotoPages>
{
public:
    //! \a site is borrowed. \a photos, \a videos: which are shown.
    PhotoPages(Site &site, bool photos, bool videos);

    void take(const PhoneBackup::Photo &photo);
    void take(const PhoneBackup::SharedAlbum &album);

    //! Writes the pages.
    void finish();

private:
    struct Entry
    {
        Media media;
        qint64 takenMs;
        QString about;
    };
    struct Album
    {
        QString title;
        std::vector<std::size_t> entries;
    };

    void writeGrid(const QString &path,
                   const QByteArray &section,
                   const QString &title,
                   const std::vector<std::size_t> &entries);
    void putCover(class Html &html,
                  const QString &href,
                  const QString &title,
                  const std::vector<std::size_t> &entries);
    void finishPhotos();
    void finishShared();

    Site &m_site;
    bool m_photos;
    bool m_videos;
    std::vector<Entry> m_entries;
    std::vector<std::size_t> m_roll; // those of the camera roll
    QHash<QString, std::size_t> m_albumNumbers; // by identifier
    std::vector<Album> m_albums;
    std::vector<Album> m_shared;
    bool m_isShared = false;
    int m_place = -1;
};

} // namespace Archive

#endif
