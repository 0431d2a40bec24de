#include "PhoneBackup/media/MusicLibrary.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kDomain = "MediaDomain";

// Names are kept apart from what bears them: "SELECT \a column" of \a table by the number \a key.
QString
nameIn(const Database &database, const QString &table, const QString &key, const QString &column)
{
    const QStringList columns = database.columns(table);
    return columns.contains(key) && columns.contains(column)
        ? u"(SELECT %1 FROM %2 WHERE %2.%3 = item.%3)"_s.arg(column, table, key)
        : u"NULL"_s;
}

bool hasColumns(const Database &database, const QString &table, const QStringList &wanted)
{
    const QStringList columns = database.columns(table);
    return std::all_of(wanted.cbegin(), wanted.cend(), [&columns](const QString &column) {
        return columns.contains(column);
    });
}

} // namespace

// item_extra.location is the name of a file in the folder base_location.path below "Media/".
MusicLibrary::MusicLibrary(Source &source)
{
    enum Column { Folder, File, Number, Title, DurationMs, Artist, Album };
    constexpr double kMsPerSecond = 1000;
    const std::optional<Database> database = source.openDatabase(
        DataType::Music, kDomain, u"Media/iTunes_Control/iTunes/MediaLibrary.sqlitedb"_s);
    if (!database
        || !hasColumns(
            *database,
            u"item"_s,
            { u"item_pid"_s, u"base_location_id"_s, u"item_artist_pid"_s, u"album_pid"_s })
        || !hasColumns(*database, u"item_extra"_s, { u"item_pid"_s, u"location"_s, u"title"_s })
        || !hasColumns(*database, u"base_location"_s, { u"base_location_id"_s, u"path"_s }))
        return;
    const QString sql =
        u"SELECT base_location.path, item_extra.location, item.item_pid, item_extra.title, %1, %2, "
        "%3 FROM item JOIN item_extra USING (item_pid) JOIN base_location USING (base_location_id)"_s
            .arg(columnOrNull(database->columns(u"item_extra"_s), u"total_time_ms"_s),
                 nameIn(*database, u"item_artist"_s, u"item_artist_pid"_s, u"item_artist"_s),
                 nameIn(*database, u"album"_s, u"album_pid"_s, u"album"_s));
    source.query(DataType::Music, *database, sql, [&](const Statement &row) {
        const FileIndex::Row file =
            source.index().find(kDomain, "Media/"_L1 + row.text(Folder) + u'/' + row.text(File));
        if (file == FileIndex::kNone) // streamed, or a film's chapter
            return;
        Song song;
        song.identifier = QString::number(row.integer(Number));
        song.title = row.text(Title).trimmed();
        song.artist = row.text(Artist).trimmed();
        song.album = row.text(Album).trimmed();
        if (const double ms = row.number(DurationMs).value_or(0); ms > 0)
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
