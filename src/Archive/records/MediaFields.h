#ifndef ARCHIVE_RECORDS_MEDIAFIELDS_H
#define ARCHIVE_RECORDS_MEDIAFIELDS_H

#include "Archive/records/FieldWriter.h"
#include "PhoneBackup/media/AppDocuments.h"
#include "PhoneBackup/media/Books.h"
#include "PhoneBackup/media/Photo.h"
#include "PhoneBackup/media/SharedAlbums.h"
#include "PhoneBackup/media/Songs.h"
#include "PhoneBackup/media/VoiceMemos.h"

namespace Archive {

template <>
inline constexpr std::array kNames<PhoneBackup::Photo::Kind> {
    "still", "panorama", "live", "screenshot", "video", "slowMotion", "timeLapse", "screenRecording"
};
template <>
inline constexpr std::array kNames<PhoneBackup::Book::Kind> { "epub", "pdf", "authored" };

inline void fields(FieldWriter &field, const PhoneBackup::PhotoAlbum &album)
{
    field("id", album.identifier);
    field("title", album.title);
}

inline void fields(FieldWriter &field, const PhoneBackup::Photo::Place &place)
{
    field("latitude", place.latitude);
    field("longitude", place.longitude);
}

inline void fields(FieldWriter &field, const PhoneBackup::Photo::Burst &burst)
{
    field("id", burst.identifier);
    field("chosen", burst.chosen);
    field("onTop", burst.onTop);
}

inline void fields(FieldWriter &field, const PhoneBackup::Photo &photo)
{
    field("id", photo.identifier);
    field("row", photo.row, -1);
    field("kind", photo.kind);
    field("file", File { photo.file });
    field("film", File { photo.film });
    field("editedFile", File { photo.editedFile });
    field("editedFilm", File { photo.editedFilm });
    field("title", photo.title);
    field("caption", photo.caption);
    field("originalName", photo.originalName);
    field("taken", photo.taken);
    field("zoneSeconds", photo.zoneSeconds);
    field("added", photo.added);
    field("seconds", photo.seconds);
    field("size", QSize(photo.widthPx, photo.heightPx));
    field("place", photo.place);
    field("burst", photo.burst);
    field("albums", photo.albums);
    field("favourite", photo.favourite);
    field("hidden", photo.hidden);
    field("edited", photo.edited);
    field("deleted", photo.deleted);
    field("deletedOn", photo.deletedOn);
}

// Its pictures are records of their own.
inline void fields(FieldWriter &field, const PhoneBackup::SharedAlbum &album)
{
    field("id", album.identifier);
    field("owner", album.owner);
    field("title", album.title);
}

inline void fields(FieldWriter &field, const PhoneBackup::VoiceMemo &memo)
{
    field("id", memo.identifier);
    field("row", memo.row, -1);
    field("file", File { memo.file });
    field("title", memo.title);
    field("stem", memo.stem);
    field("folder", memo.folder);
    field("date", memo.date);
    field("seconds", memo.seconds);
    field("deleted", memo.deleted);
    field("deletedOn", memo.deletedOn);
}

inline void fields(FieldWriter &field, const PhoneBackup::Book &book)
{
    field("id", book.identifier);
    field("path", book.path);
    field("parts", qint64(book.parts.size()), 0);
    field("kind", book.kind);
    field("title", book.title);
    field("author", book.author);
}

inline void fields(FieldWriter &field, const PhoneBackup::Song &song)
{
    field("id", song.identifier);
    field("file", File { song.file });
    field("ringtone", song.ringtone);
    field("title", song.title);
    field("artist", song.artist);
    field("album", song.album);
    field("seconds", song.seconds);
}

inline void fields(FieldWriter &field, const PhoneBackup::AppDocument &document)
{
    field("domain", document.domain);
    field("app", document.app);
    field("path", document.path);
    field("file", File { document.file });
}

} // namespace Archive

#endif
