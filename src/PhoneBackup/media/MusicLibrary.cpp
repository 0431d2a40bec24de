#include "PhoneBackup/media/MusicLibrary.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kDomain = "MediaDomain";

// Texts by the numbers of their rows.
QHash<qint64, QString> texts(RowDatabase &database, const QString &table, const QString &column)
{
    QHash<qint64, QString> texts;
    Table stored(database, table);
    const auto text = stored.column(column);
    stored.forEach(
        [&](const Table::Row &row) { texts.insert(row.id(), row.text(text).trimmed()); });
    return texts;
}

} // namespace

// item_extra.location is the name of a file in the folder base_location.path below "Media/".
MusicLibrary::MusicLibrary(Source &source)
{
    constexpr double kMsPerSecond = 1000;
    std::optional<RowDatabase> database =
        RowDatabase::open(source,
                          DataType::Music,
                          kDomain,
                          u"Media/iTunes_Control/iTunes/MediaLibrary.sqlitedb"_s,
                          RowDatabase::Consequence::filesStay());
    if (!database)
        return;
    const QHash<qint64, QString> folders = texts(*database, u"base_location"_s, u"path"_s);
    const QHash<qint64, QString> artists = texts(*database, u"item_artist"_s, u"item_artist"_s);
    const QHash<qint64, QString> albums = texts(*database, u"album"_s, u"album"_s);
    Table extras(*database, u"item_extra"_s);
    const auto [name, title, durationMs] =
        extras.columns(u"location"_s, u"title"_s, u"total_time_ms"_s);
    Table::Lookup extraOf = extras.lookup();
    Table items(*database, u"item"_s);
    const auto [folder, artist, album] =
        items.columns(u"base_location_id"_s, u"item_artist_pid"_s, u"album_pid"_s);
    items.forEach([&,
                   this,
                   name = name,
                   title = title,
                   durationMs = durationMs,
                   folder = folder,
                   artist = artist,
                   album = album](const Table::Row &row) {
        const Table::Row *extra = extraOf.find(row.id());
        if (!extra)
            return;
        const FileIndex::Row file = source.index().find(
            kDomain, "Media/"_L1 + folders.value(row.integer(folder)) + u'/' + extra->text(name));
        if (file == FileIndex::kNone) // streamed, or a film's chapter
            return;
        Song song;
        song.identifier = QString::number(row.id());
        song.title = extra->text(title).trimmed();
        song.artist = artists.value(row.integer(artist));
        song.album = albums.value(row.integer(album));
        if (const double ms = extra->number(durationMs).value_or(0); ms > 0)
            song.seconds = ms / kMsPerSecond;
        m_songs.insert(file, song);
    });
}

void MusicLibrary::describe(Song &song) const
{
    const auto known = m_songs.constFind(song.file);
    if (known == m_songs.cend())
        return;
    const Song own = song;
    song = *known;
    song.file = own.file;
    song.ringtone = own.ringtone;
}

} // namespace PhoneBackup
