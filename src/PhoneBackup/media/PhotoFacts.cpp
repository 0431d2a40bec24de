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

// The columns that are looked up, in the order of the lists below.
enum Asset {
    Uuid,
    IsVideo,
    SubKind,
    IsScreenshot,
    Taken,
    Added,
    Favourite,
    Hidden,
    Trashed,
    TrashedOn,
    HasAdjustments, // up to iOS 17
    AdjustmentsState, // since
    Width,
    Height,
    Seconds,
    Latitude,
    Longitude,
    BurstUuid,
    BurstPick,
};
enum Attribute { OriginalName, Title, ZoneSeconds, Description };

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

PhotoFacts::PhotoFacts(Source &source, DataType::Code type)
    : m_source(source)
    , m_type(type)
    , m_database(PhotosDatabase::open(source, type))
{
    if (!m_database)
        return;
    m_table = PhotosDatabase::assetTable(*m_database);
    if (!prepare(m_asset,
                 m_table,
                 { "ZUUID",
                   "ZKIND",
                   "ZKINDSUBTYPE",
                   "ZISDETECTEDSCREENSHOT",
                   "ZDATECREATED",
                   "ZADDEDDATE",
                   "ZFAVORITE",
                   "ZHIDDEN",
                   "ZTRASHEDSTATE",
                   "ZTRASHEDDATE",
                   "ZHASADJUSTMENTS",
                   "ZADJUSTMENTSSTATE",
                   "ZWIDTH",
                   "ZHEIGHT",
                   "ZDURATION",
                   "ZLATITUDE",
                   "ZLONGITUDE",
                   "ZAVALANCHEUUID",
                   "ZAVALANCHEPICKTYPE" }))
        return;
    readFiles();
    readAttributes();
    readAlbums();
}

PhotoFacts::~PhotoFacts() = default;

// A look-up in \a table by the number of the row; columns that it lacks are null.
bool PhotoFacts::prepare(std::optional<Statement> &statement,
                         const QString &table,
                         std::initializer_list<const char *> columns)
{
    const QStringList known = m_database->columns(table);
    if (!known.contains("Z_PK"_L1))
        return false;
    QStringList wanted;
    for (const char *column : columns)
        wanted.append(columnOrNull(known, QString::fromLatin1(column)));
    Result<Statement> prepared =
        m_database->prepare(u"SELECT %1 FROM %2 WHERE Z_PK = ?"_s.arg(wanted.join(u", "_s), table));
    if (!prepared) {
        m_source.addDatabaseProblem(m_type, *m_database, prepared.error().what);
        return false;
    }
    statement.emplace(prepared.take());
    return true;
}

bool PhotoFacts::find(std::optional<Statement> &statement, qint64 row)
{
    if (!statement)
        return false;
    statement->reset();
    statement->bind(1, row);
    const Statement::Step step = statement->step();
    if (step == Statement::Step::Failed) {
        if (statement->isStopped())
            m_source.stop();
        else
            m_source.addDatabaseProblem(
                m_type, *m_database, Notice("media.damagedRow", { statement->error() }));
    }
    return step == Statement::Step::Row;
}

void PhotoFacts::readPairs(const QString &sql, Pairs &pairs)
{
    m_source.query(m_type, *m_database, sql, [&pairs](const Statement &row) {
        pairs.emplace_back(row.integer(0), row.integer(1));
    });
    std::sort(pairs.begin(), pairs.end());
}

void PhotoFacts::readFiles()
{
    const QStringList columns = m_database->columns(m_table);
    if (!columns.contains("ZDIRECTORY"_L1) || !columns.contains("ZFILENAME"_L1))
        return;
    const QString sql = u"SELECT Z_PK, ZDIRECTORY, ZFILENAME FROM %1"_s.arg(m_table);
    m_source.query(m_type, *m_database, sql, [this](const Statement &row) {
        const QByteArray path = PhotosDatabase::path(row.bytes(1), row.bytes(2));
        const FileIndex::Row file =
            m_source.index().find(QByteArrayView(PhotosDatabase::kDomain), QByteArrayView(path));
        if (file != FileIndex::kNone) // else it lies in the cloud only
            m_rows.emplace_back(file, row.integer(0));
    });
    std::sort(m_rows.begin(), m_rows.end());
}

void PhotoFacts::readAttributes()
{
    const QString table = u"ZADDITIONALASSETATTRIBUTES"_s;
    if (!prepare(m_attribute,
                 table,
                 { "ZORIGINALFILENAME", "ZTITLE", "ZTIMEZONEOFFSET", "ZASSETDESCRIPTION" })
        || !m_database->columns(table).contains("ZASSET"_L1))
        return;
    readPairs(u"SELECT ZASSET, Z_PK FROM "_s + table, m_attributes);
    prepare(m_description, u"ZASSETDESCRIPTION"_s, { "ZLONGDESCRIPTION" });
}

// The table that joins assets and albums bears the number of the albums in the model, and its
// columns that of the albums and of the assets: "Z_27ASSETS (Z_27ALBUMS, Z_3ASSETS)". Both change
// with every release.
void PhotoFacts::readAlbums()
{
    constexpr int kHighestNumber = 99;
    const QStringList columns = m_database->columns(u"ZGENERICALBUM"_s);
    if (!columns.contains("Z_PK"_L1) || !columns.contains("ZTITLE"_L1))
        return;
    const QString sql =
        u"SELECT Z_PK, ZTITLE, %1 FROM ZGENERICALBUM WHERE ZKIND IN (%2, %3) AND %4 IS NOT 1"_s
            .arg(columnOrNull(columns, u"ZUUID"_s))
            .arg(kOwnAlbum)
            .arg(kSharedAlbum)
            .arg(columnOrNull(columns, u"ZTRASHEDSTATE"_s));
    m_source.query(m_type, *m_database, sql, [this](const Statement &row) {
        if (const QString title = row.text(1).trimmed(); !title.isEmpty())
            m_albums.insert(row.integer(0), { row.text(2), title });
    });
    for (int number = 1; number <= kHighestNumber; ++number) {
        const QString table = u"Z_%1ASSETS"_s.arg(number);
        const QString albums = u"Z_%1ALBUMS"_s.arg(number);
        const QStringList joined = m_database->columns(table);
        if (!joined.contains(albums))
            continue;
        for (const QString &assets : joined) {
            if (assets.endsWith("ASSETS"_L1) && !assets.contains("FOK"_L1))
                readPairs(u"SELECT %1, %2 FROM %3"_s.arg(assets, albums, table), m_albumsOf);
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
    if (find(m_asset, photo.row))
        fillAsset(photo);
    const auto attributes = std::lower_bound(
        m_attributes.cbegin(), m_attributes.cend(), std::pair(photo.row, qint64(0)));
    if (attributes != m_attributes.cend() && attributes->first == photo.row
        && find(m_attribute, attributes->second))
        fillAttributes(photo);
    for (auto album = std::lower_bound(
             m_albumsOf.cbegin(), m_albumsOf.cend(), std::pair(photo.row, qint64(0)));
         album != m_albumsOf.cend() && album->first == photo.row;
         ++album) {
        if (m_albums.contains(album->second))
            photo.albums.push_back(m_albums.value(album->second));
    }
}

void PhotoFacts::fillAsset(Photo &photo)
{
    constexpr int kVideo = 1;
    const Statement &asset = *m_asset;
    photo.identifier = asset.text(Uuid);
    photo.kind = kindOf(
        asset.integer(IsVideo) == kVideo, asset.integer(SubKind), asset.integer(IsScreenshot) != 0);
    photo.taken = PhoneTime::since2001(asset.number(Taken));
    photo.added = PhoneTime::since2001(asset.number(Added));
    photo.favourite = asset.integer(Favourite) != 0;
    photo.hidden = asset.integer(Hidden) != 0;
    photo.deleted = asset.integer(Trashed) != 0;
    photo.deletedOn = PhoneTime::since2001(asset.number(TrashedOn));
    photo.edited = asset.integer(HasAdjustments) != 0 || asset.integer(AdjustmentsState) > 0;
    photo.widthPx = pixels(asset.integer(Width));
    photo.heightPx = pixels(asset.integer(Height));
    if (photo.isVideo())
        photo.seconds = asset.number(Seconds);
    photo.place = placeOf(asset.number(Latitude), asset.number(Longitude));
    if (const QString burst = asset.text(BurstUuid); !burst.isEmpty()) {
        const qint64 pick = asset.integer(BurstPick);
        photo.burst = Photo::Burst { burst, (pick & kChosen) != 0, (pick & kOnTop) != 0 };
    }
}

void PhotoFacts::fillAttributes(Photo &photo)
{
    const Statement &attributes = *m_attribute;
    photo.originalName = attributes.text(OriginalName);
    photo.title = attributes.text(Title).trimmed();
    const std::optional<double> zone = attributes.number(ZoneSeconds);
    if (zone && std::abs(*zone) <= kFarthestZone)
        photo.zoneSeconds = int(*zone);
    const qint64 description = attributes.integer(Description);
    if (description > 0 && find(m_description, description))
        photo.caption = m_description->text(0).trimmed();
}

} // namespace PhoneBackup
