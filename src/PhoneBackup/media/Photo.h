#ifndef PHONEBACKUP_MEDIA_PHOTO_H
#define PHONEBACKUP_MEDIA_PHOTO_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

namespace PhoneBackup {

//! An album of the photos.
struct PhotoAlbum
{
    QString identifier; //!< The same from backup to backup.
    QString title;
};

/*!
    \brief A photo or a video: its files, and what the phone's database tells of it.

    What the database does not tell, or is not there to tell, is empty, invalid or unset.
*/
struct Photo
{
    enum class Kind {
        Still,
        Panorama,
        Live, //!< A photo with a short film.
        Screenshot,
        Video,
        SlowMotion,
        TimeLapse,
        ScreenRecording,
    };

    struct Place
    {
        double latitude; //!< Degrees, north is positive.
        double longitude; //!< Degrees, east is positive.
    };

    //! One of several that were taken by keeping the button down.
    struct Burst
    {
        QString identifier; //!< The same for all of them.
        bool chosen; //!< By the phone or its owner.
        bool onTop; //!< The one that is shown for all of them.
    };

    // Entries of the index; kNone for what there is not.
    FileIndex::Row file = FileIndex::kNone; //!< The original.
    FileIndex::Row film = FileIndex::kNone; //!< Of a live photo.
    FileIndex::Row editedFile = FileIndex::kNone; //!< What it looks like since it was edited.
    FileIndex::Row editedFilm = FileIndex::kNone; //!< The same of a live photo's film.

    QString identifier; //!< The same from backup to backup.
    qint64 row = -1; //!< Number of its row in the phone's database; -1 without one.
    Kind kind = Kind::Still;
    QString title;
    QString caption;
    QString originalName; //!< What its file was called before it came to the phone.
    QDateTime taken;
    std::optional<int> zoneSeconds; //!< What the photographer's clock was ahead of UTC.
    QDateTime added;
    std::optional<double> seconds; //!< How long a video plays.
    int widthPx = 0; //!< As it is shown; 0: unknown.
    int heightPx = 0;
    std::optional<Place> place;
    std::optional<Burst> burst;
    std::vector<PhotoAlbum> albums;
    bool favourite = false;
    bool hidden = false;
    bool edited = false;
    bool deleted = false; //!< In "recently deleted".
    QDateTime deletedOn;

    bool isVideo() const { return kind >= Kind::Video; }
};

} // namespace PhoneBackup

#endif
