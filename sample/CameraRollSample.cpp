#include "sample/CameraRollSample.h"

#include "sample/BackupWriter.h"
#include "sample/MediaPool.h"
#include "sample/PhotoLibrary.h"
#include "sample/PropertyList.h"
#include "sample/SampleDates.h"

#include <algorithm>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPlainFrom = 240; //!< From this photo on all are plain.
constexpr int kFilesPerFolder = 999;

enum class PhotoKind {
    Plain,
    Screenshot,
    Live,
    Edited,
    CounterClockwise,
    Clockwise,
    Favorite,
    Trashed,
    UpsideDown,
    Hidden,
    FromCloud,
    WithThumbnail,
};
constexpr int kPhotoKinds = 12;

class CameraRoll
{
public:
    CameraRoll(BackupWriter &writer, const Options &options)
        : m_writer(writer)
        , m_options(options)
        , m_random(options.seed, "camera roll")
        , m_pool(options, "camera roll pictures")
        , m_library(writer.contentPath(kDomain(), kDatabase()), options.oldStyle)
    {
    }

    void add();

private:
    static QString kDomain() { return u"CameraRollDomain"_s; }
    static QString kDatabase() { return u"Media/PhotoData/Photos.sqlite"_s; }

    Asset nextAsset(const char *extension, int index, int count);
    void addPhoto(int index);
    void addVideo(int index);
    void addMissingOriginal();
    void addEdited(const Asset &asset);
    void addSharedAlbum(const QString &id, const QString &title, bool inDatabase, int photos);
    void addFile(const Asset &asset, const QByteArray &content);
    QString pathOf(const Asset &asset) const;

    BackupWriter &m_writer;
    const Options &m_options;
    Random m_random;
    MediaPool m_pool;
    PhotoLibrary m_library;
    int m_filesNamed = 0;
    int m_sailing = 0;
    int m_weekend = 0;
};

QString stem(const Asset &asset)
{
    return asset.fileName.first(asset.fileName.lastIndexOf(u'.'));
}

QVariantMap adjustments(const QDateTime &edited)
{
    return {
        { u"adjustmentBaseVersion"_s, 0 },
        { u"adjustmentData"_s, QByteArray("\x01\x02\x03\x04", 4) },
        { u"adjustmentEditorBundleID"_s, u"com.apple.mobileslideshow"_s },
        { u"adjustmentFormatIdentifier"_s, u"com.apple.photo"_s },
        { u"adjustmentFormatVersion"_s, u"1.5"_s },
        { u"adjustmentTimestamp"_s, edited },
    };
}

void CameraRoll::add()
{
    m_library.addAlbum(PhotoLibrary::AlbumKind::RootFolder, QString(), m_random.uuid());
    m_sailing = m_library.addAlbum(PhotoLibrary::AlbumKind::Own, u"Sailing"_s, m_random.uuid());
    m_weekend = m_library.addAlbum(
        PhotoLibrary::AlbumKind::Own, u"Weekend in the Hills"_s, m_random.uuid());

    for (int i = 0; i < m_options.photos; ++i)
        addPhoto(i);
    if (m_options.photos > 0)
        addMissingOriginal();
    for (int i = 0; i < m_options.videos; ++i)
        addVideo(i);
    if (m_options.sharedPhotos > 0) {
        const int others = m_options.sharedPhotos / 3;
        addSharedAlbum(u"A1B6F0C2-3D4E-4F50-8A6B-7C8D9E0F1A2B"_s,
                       u"Regatta"_s,
                       true,
                       m_options.sharedPhotos - others);
        addSharedAlbum(u"C3D8B2E4-5F60-4172-9C8D-9E0F1A2B3C4D"_s, u"Garden Party"_s, false, others);
    }

    const QString database = kDatabase();
    if (!m_library.finish())
        m_writer.fail(database, m_library.error());
    m_writer.addWritten(kDomain(), database);
    // The phone leaves these behind when it has written all back into the database.
    m_writer.addFile(kDomain(), database + "-wal"_L1, QByteArray());
    m_writer.addFile(kDomain(), database + "-shm"_L1, QByteArray(32768, '\0'));
    m_writer.addFile(kDomain(), u"Media/DCIM/.MISC/Incoming"_s, QByteArray());
}

Asset CameraRoll::nextAsset(const char *extension, int index, int count)
{
    constexpr qint64 kMostApartSeconds = qint64(7) * 3600;
    constexpr qint64 kAllWithinSeconds = qint64(300) * 86400;
    const qint64 apart = std::min(kMostApartSeconds, kAllWithinSeconds / std::max(1, count));
    Asset asset;
    const int folder = m_filesNamed / kFilesPerFolder;
    const int number = m_filesNamed % kFilesPerFolder + 1 + folder % 10 * 1000;
    ++m_filesNamed;
    asset.directory = u"DCIM/%1APPLE"_s.arg(100 + folder);
    asset.fileName =
        u"IMG_%1.%2"_s.arg(number, 4, 10, QLatin1Char('0')).arg(QLatin1String(extension));
    asset.uuid = m_random.uuid();
    asset.taken = sampleStart().addSecs(apart * index + m_random.below(3600));
    return asset;
}

QString CameraRoll::pathOf(const Asset &asset) const
{
    return u"Media/%1/%2"_s.arg(asset.directory, asset.fileName);
}

void CameraRoll::addFile(const Asset &asset, const QByteArray &content)
{
    FileTraits traits;
    traits.modified = asset.taken;
    const QString name = asset.originalName.isEmpty() ? asset.fileName : asset.originalName;
    traits.extendedAttributes.insert(u"com.apple.assetsd.UUID"_s, asset.uuid.toLatin1());
    traits.extendedAttributes.insert(u"com.apple.assetsd.originalFilename"_s, name.toUtf8());
    if (asset.isFavorite)
        traits.extendedAttributes.insert(u"com.apple.assetsd.favorite"_s, QByteArray(1, '\1'));
    if (asset.isTrashed)
        traits.extendedAttributes.insert(u"com.apple.assetsd.trashed"_s, QByteArray(1, '\1'));
    m_writer.addFile(kDomain(), pathOf(asset), content, traits);
}

void CameraRoll::addPhoto(int index)
{
    const auto kind =
        index < kPlainFrom ? static_cast<PhotoKind>(index % kPhotoKinds) : PhotoKind::Plain;
    const bool isHeic = (kind == PhotoKind::Plain || kind == PhotoKind::Clockwise)
        && index >= kPhotoKinds && index < 2 * kPhotoKinds && m_options.fileSizesBytes.isEmpty();
    const char *extension = kind == PhotoKind::Screenshot ? "PNG" : isHeic ? "HEIC" : "JPG";
    Asset asset = nextAsset(extension, index, m_options.photos);
    int orientation = 1;
    switch (kind) {
    case PhotoKind::Screenshot:
        asset.kindSubtype = 10;
        break;
    case PhotoKind::Live: {
        asset.kindSubtype = 2;
        Asset film = asset;
        film.fileName = stem(asset) + ".MOV"_L1;
        addFile(film, m_pool.movie(asset.taken, true));
        break;
    }
    case PhotoKind::Edited:
        asset.isEdited = true;
        addEdited(asset);
        break;
    case PhotoKind::CounterClockwise:
        orientation = 8;
        break;
    case PhotoKind::Clockwise:
        orientation = 6;
        break;
    case PhotoKind::UpsideDown:
        orientation = 3;
        break;
    case PhotoKind::Trashed:
        asset.isTrashed = true;
        break;
    case PhotoKind::Hidden:
        asset.isHidden = true;
        break;
    case PhotoKind::Favorite:
        asset.isFavorite = true;
        break;
    case PhotoKind::FromCloud:
        asset.directory = u"PhotoData/CPLAssets/group%1"_s.arg(m_random.below(200));
        asset.originalName = asset.fileName;
        asset.fileName = asset.uuid + ".JPG"_L1;
        asset.savedType = 6;
        break;
    case PhotoKind::WithThumbnail:
        m_writer.addFile(
            kDomain(),
            u"Media/PhotoData/Thumbnails/V2/%1/%2/5005.JPG"_s.arg(asset.directory, asset.fileName),
            m_pool.thumbnail());
        break;
    case PhotoKind::Plain:
        break;
    }
    addFile(asset,
            kind == PhotoKind::Screenshot ? m_pool.screenshot()
                : isHeic                  ? m_pool.heic(asset.taken, orientation)
                                          : m_pool.jpeg(asset.taken, orientation));
    const int key = m_library.addAsset(asset);
    if (index % 5 == 0 && !asset.isTrashed)
        m_library.addToAlbum(index % 10 == 0 ? m_sailing : m_weekend, key);
}

void CameraRoll::addEdited(const Asset &asset)
{
    const QString folder =
        u"Media/PhotoData/Mutations/%1/%2/Adjustments"_s.arg(asset.directory, stem(asset));
    FileTraits traits;
    traits.modified = asset.taken.addDays(1);
    const QVariantMap changes = adjustments(traits.modified);
    m_writer.addFile(
        kDomain(), folder + "/FullSizeRender.jpg"_L1, m_pool.jpeg(asset.taken), traits);
    m_writer.addFile(
        kDomain(), folder + "/Adjustments.plist"_L1, binaryPropertyList(changes), traits);
    m_writer.addFile(kDomain(),
                     u"Media/%1/%2.AAE"_s.arg(asset.directory, stem(asset)),
                     xmlPropertyList(changes),
                     traits);
}

//! The original is in the cloud alone: the phone has a thumbnail and the backup no file.
void CameraRoll::addMissingOriginal()
{
    const Asset asset = nextAsset("JPG", m_options.photos, m_options.photos + 1);
    m_writer.addFile(
        kDomain(),
        u"Media/PhotoData/Thumbnails/V2/%1/%2/5005.JPG"_s.arg(asset.directory, asset.fileName),
        m_pool.thumbnail());
    m_library.addAsset(asset);
}

void CameraRoll::addVideo(int index)
{
    Asset asset = nextAsset("MOV", index, m_options.videos);
    asset.isVideo = true;
    asset.kindSubtype = index % 4 == 1 ? 101 : 100;
    asset.isTrashed = index % 4 == 2;
    addFile(asset, m_pool.movie(asset.taken, false));
    m_library.addAsset(asset);
}

void CameraRoll::addSharedAlbum(const QString &id,
                                const QString &title,
                                bool inDatabase,
                                int photos)
{
    constexpr auto kOwner = "10203040506"_L1;
    const QString albumFolder = u"PhotoData/PhotoCloudSharingData/%1/%2"_s.arg(kOwner, id);
    const QVariantMap info {
        { u"title"_s, title },
        { u"cloudOwnerFirstName"_s, u"Ada"_s },
        { u"cloudOwnerLastName"_s, u"Brookfield"_s },
        { u"cloudOwnerEmail"_s, u"ada@example.org"_s },
        { u"cloudOwnerIsWhitelisted"_s, true },
    };
    m_writer.addFile(
        kDomain(), u"Media/%1/Info.plist"_s.arg(albumFolder), binaryPropertyList(info));

    int album = 0;
    if (inDatabase)
        album = m_library.addAlbum(PhotoLibrary::AlbumKind::Shared, title, m_random.uuid(), id);
    for (int i = 0; i < photos; ++i) {
        Asset asset;
        asset.directory = albumFolder + u"/%1CLOUD"_s.arg(100 + i / kFilesPerFolder);
        asset.isVideo = i % 6 == 3;
        asset.fileName = u"IMG_%1.%2"_s.arg(i % kFilesPerFolder + 1, 4, 10, QLatin1Char('0'))
                             .arg(asset.isVideo ? "MOV"_L1 : "JPG"_L1);
        asset.uuid = m_random.uuid();
        asset.taken = sampleStart().addSecs(qint64(3600) * (i + 1));
        asset.savedType = 4;
        addFile(asset, asset.isVideo ? m_pool.movie(asset.taken, true) : m_pool.jpeg(asset.taken));
        if (inDatabase)
            m_library.addToAlbum(album, m_library.addAsset(asset));
    }
}

} // namespace

void addCameraRoll(BackupWriter &writer, const Options &options)
{
    if (options.photos + options.videos + options.sharedPhotos > 0)
        CameraRoll(writer, options).add();
}

} // namespace Sample
