#include "PhoneBackup/media/PhotoFacts.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/media/PhotosDatabase.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// ZGENERICALBUM.ZKIND of what the phone's owner sees as albums; others are folders and the phone's
// own collections.
constexpr int kOwnAlbum = 2;
constexpr int kSharedAlbum = 1505;

// Bits of ZAVALANCHEPICKTYPE, which occur together.
constexpr qint64 kChosen = 4 | 8; // by the phone, by its owner
constexpr qint64 kOnTop = 16;

constexpr double kFarthestZone = 24 * 3600; // seconds

// Where there is no place, both degrees are this.
constexpr double kNowhere = -180;

// ZKINDSUBTYPE, with the screenshots that newer releases mark elsewhere.
Photo::Kind kindOf(bool video, qint64 subKind, bool screenshot)
{
    switch (subKind) {
    case 101:
        return Photo::Kind::SlowMotion;
    case 102:
        return Photo::Kind::TimeLapse;
    case 103:
        return Photo::Kind::ScreenRecording;
    default:
        break;
    }
    if (video)
        return Photo::Kind::Video;
    if (screenshot || subKind == 10)
        return Photo::Kind::Screenshot;
    return subKind == 1 ? Photo::Kind::Panorama
        : subKind == 2  ? Photo::Kind::Live
                        : Photo::Kind::Still;
}

int pixels(qint64 stored)
{
    return int(std::clamp<qint64>(stored, 0, std::numeric_limits<int>::max()));
}

std::optional<Photo::Place> placeOf(std::optional<double> latitude, std::optional<double> longitude)
{
    if (!latitude || !longitude || (*latitude == kNowhere && *longitude == kNowhere)
        || (*latitude == 0 && *longitude == 0))
        return std::nullopt;
    return Photo::Place { *latitude, *longitude };
}

} // namespace

struct PhotoFacts::Assets
{
    explicit Assets(RowDatabase &database)
        : table(database, PhotosDatabase::assetTable(database))
    {
    }

    Table table;
    Table::Column uuid = table.column(u"ZUUID"_s);
    Table::Column kind = table.column(u"ZKIND"_s);
    Table::Column subKind = table.column(u"ZKINDSUBTYPE"_s);
    Table::Column isScreenshot = table.column(u"ZISDETECTEDSCREENSHOT"_s);
    Table::Column taken = table.column(u"ZDATECREATED"_s);
    Table::Column added = table.column(u"ZADDEDDATE"_s);
    Table::Column favourite = table.column(u"ZFAVORITE"_s);
    Table::Column hidden = table.column(u"ZHIDDEN"_s);
    Table::Column trashed = table.column(u"ZTRASHEDSTATE"_s);
    Table::Column trashedOn = table.column(u"ZTRASHEDDATE"_s);
    Table::Column hasAdjustments = table.column(u"ZHASADJUSTMENTS"_s); // up to iOS 17
    Table::Column adjustmentsState = table.column(u"ZADJUSTMENTSSTATE"_s); // since
    Table::Column width = table.column(u"ZWIDTH"_s);
    Table::Column height = table.column(u"ZHEIGHT"_s);
    Table::Column seconds = table.column(u"ZDURATION"_s);
    Table::Column latitude = table.column(u"ZLATITUDE"_s);
    Table::Column longitude = table.column(u"ZLONGITUDE"_s);
    Table::Column burstUuid = table.column(u"ZAVALANCHEUUID"_s);
    Table::Column burstPick = table.column(u"ZAVALANCHEPICKTYPE"_s);
    Table::Lookup lookup = table.lookup();
};

struct PhotoFacts::Attributes
{
    explicit Attributes(RowDatabase &database)
        : table(database, u"ZADDITIONALASSETATTRIBUTES"_s)
    {
    }

    Table table;
    Table::Column originalName = table.column(u"ZORIGINALFILENAME"_s);
    Table::Column title = table.column(u"ZTITLE"_s);
    Table::Column zoneSeconds = table.column(u"ZTIMEZONEOFFSET"_s);
    Table::Column caption = table.column(u"ZASSETDESCRIPTION"_s);
    Table::Lookup lookup = table.lookup();
};

struct PhotoFacts::Captions
{
    explicit Captions(RowDatabase &database)
        : table(database, u"ZASSETDESCRIPTION"_s)
    {
    }

    Table table;
    Table::Column text = table.column(u"ZLONGDESCRIPTION"_s);
    Table::Lookup lookup = table.lookup();
};

PhotoFacts::PhotoFacts(Source &source, DataType::Code type)
    : m_source(source)
    , m_database(PhotosDatabase::open(source, type))
{
    if (!m_database)
        return;
    m_assets = std::make_unique<Assets>(*m_database);
    m_details = std::make_unique<Attributes>(*m_database);
    m_captions = std::make_unique<Captions>(*m_database);
    readFiles();
    readPairs(u"ZADDITIONALASSETATTRIBUTES"_s, u"ZASSET"_s, {}, m_attributes);
    readAlbums();
}

PhotoFacts::~PhotoFacts() = default;

// Without a column \a to it is the number of the row.
void PhotoFacts::readPairs(const QString &table,
                           const QString &from,
                           const QString &to,
                           Pairs &pairs)
{
    Table stored(*m_database, table);
    const auto first = stored.column(from);
    const auto second = stored.expression(to.isEmpty() ? u"ROWID"_s : stored.sql(to));
    stored.forEach([&](const Table::Row &row) {
        pairs.emplace_back(row.integer(first), row.integer(second));
    });
    std::sort(pairs.begin(), pairs.end());
}

void PhotoFacts::readFiles()
{
    Table files(*m_database, PhotosDatabase::assetTable(*m_database));
    const auto [folder, name] = files.columns(u"ZDIRECTORY"_s, u"ZFILENAME"_s);
    files.forEach([&, this, folder = folder, name = name](const Table::Row &row) {
        const QByteArray path = PhotosDatabase::path(row.bytes(folder), row.bytes(name));
        const FileIndex::Row file =
            m_source.index().find(QByteArrayView(PhotosDatabase::kDomain), QByteArrayView(path));
        if (file != FileIndex::kNone) // else it lies in the cloud only
            m_rows.emplace_back(file, row.id());
    });
    std::sort(m_rows.begin(), m_rows.end());
}

// The table that joins assets and albums bears the number of the albums in the model, and its
// columns that of the albums and of the assets: "Z_27ASSETS (Z_27ALBUMS, Z_3ASSETS)". Both change
// with every release.
void PhotoFacts::readAlbums()
{
    constexpr int kHighestNumber = 99;
    Table albums(*m_database, u"ZGENERICALBUM"_s);
    const auto [title, uuid] = albums.columns(u"ZTITLE"_s, u"ZUUID"_s);
    albums.forEach(
        [&, this, title = title, uuid = uuid](const Table::Row &row) {
            if (const QString name = row.text(title).trimmed(); !name.isEmpty())
                m_albums.insert(row.id(), { row.text(uuid), name });
        },
        u"%1 IN (%2, %3) AND %4 IS NOT 1"_s.arg(albums.sql(u"ZKIND"_s),
                                                QString::number(kOwnAlbum),
                                                QString::number(kSharedAlbum),
                                                albums.sql(u"ZTRASHEDSTATE"_s)));
    for (int number = 1; number <= kHighestNumber; ++number) {
        const QString table = u"Z_%1ASSETS"_s.arg(number);
        const QString album = u"Z_%1ALBUMS"_s.arg(number);
        const QStringList joined = m_database->columns(table);
        if (!joined.contains(album))
            continue;
        for (const QString &assets : joined) {
            if (assets.endsWith("ASSETS"_L1) && !assets.contains("FOK"_L1))
                readPairs(table, assets, album, m_albumsOf);
        }
    }
}

qint64 PhotoFacts::rowOf(FileIndex::Row file) const
{
    const auto found =
        std::lower_bound(m_rows.cbegin(), m_rows.cend(), std::pair(qint64(file), qint64(0)));
    return found != m_rows.cend() && found->first == file ? found->second : -1;
}

void PhotoFacts::describe(FileIndex::Row file, Photo &photo)
{
    photo.row = rowOf(file);
    if (photo.row < 0)
        return;
    if (const Table::Row *asset = m_assets->lookup.find(photo.row))
        fillAsset(*asset, photo);
    const auto attributes = std::lower_bound(
        m_attributes.cbegin(), m_attributes.cend(), std::pair(photo.row, qint64(0)));
    if (attributes != m_attributes.cend() && attributes->first == photo.row) {
        if (const Table::Row *row = m_details->lookup.find(attributes->second))
            fillAttributes(*row, photo);
    }
    for (auto album = std::lower_bound(
             m_albumsOf.cbegin(), m_albumsOf.cend(), std::pair(photo.row, qint64(0)));
         album != m_albumsOf.cend() && album->first == photo.row;
         ++album) {
        if (m_albums.contains(album->second))
            photo.albums.push_back(m_albums.value(album->second));
    }
}

void PhotoFacts::fillAsset(const Table::Row &row, Photo &photo) const
{
    constexpr int kVideo = 1;
    const Assets &assets = *m_assets;
    photo.identifier = row.text(assets.uuid);
    photo.kind = kindOf(row.integer(assets.kind) == kVideo,
                        row.integer(assets.subKind),
                        row.integer(assets.isScreenshot) != 0);
    photo.taken = PhoneTime::since2001(row.number(assets.taken));
    photo.added = PhoneTime::since2001(row.number(assets.added));
    photo.favourite = row.integer(assets.favourite) != 0;
    photo.hidden = row.integer(assets.hidden) != 0;
    photo.deleted = row.integer(assets.trashed) != 0;
    photo.deletedOn = PhoneTime::since2001(row.number(assets.trashedOn));
    photo.edited =
        row.integer(assets.hasAdjustments) != 0 || row.integer(assets.adjustmentsState) > 0;
    photo.widthPx = pixels(row.integer(assets.width));
    photo.heightPx = pixels(row.integer(assets.height));
    if (photo.isVideo())
        photo.seconds = row.number(assets.seconds);
    photo.place = placeOf(row.number(assets.latitude), row.number(assets.longitude));
    if (const QString burst = row.text(assets.burstUuid); !burst.isEmpty()) {
        const qint64 pick = row.integer(assets.burstPick);
        photo.burst = Photo::Burst { burst, (pick & kChosen) != 0, (pick & kOnTop) != 0 };
    }
}

void PhotoFacts::fillAttributes(const Table::Row &row, Photo &photo) const
{
    photo.originalName = row.text(m_details->originalName);
    photo.title = row.text(m_details->title).trimmed();
    const std::optional<double> zone = row.number(m_details->zoneSeconds);
    if (zone && std::abs(*zone) <= kFarthestZone)
        photo.zoneSeconds = int(*zone);
    if (const qint64 caption = row.integer(m_details->caption); caption > 0) {
        if (const Table::Row *text = m_captions->lookup.find(caption))
            photo.caption = text->text(m_captions->text).trimmed();
    }
}

} // namespace PhoneBackup
