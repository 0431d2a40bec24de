#include "PhoneBackup/media/SharedAlbums.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/media/PhotosDatabase.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// The folder of the album that \a path lies in; files above the albums have none.
QByteArrayView albumFolder(QByteArrayView path)
{
    const qsizetype owner = path.indexOf('/', QByteArrayView(PhotosDatabase::kShared).size());
    const qsizetype album = owner < 0 ? -1 : path.indexOf('/', owner + 1);
    return album < 0 ? QByteArrayView() : path.first(album + 1);
}

bool isForPeople(QByteArrayView path)
{
    if (PathParts::isHidden(path))
        return false;
    switch (mediaKind(path)) {
    case MediaKind::Picture:
    case MediaKind::Video:
        return true;
    case MediaKind::Unknown:
        // A format of tomorrow, where only pictures lie; beside those there are helper files.
        return PathParts::folder(path).endsWith("CLOUD");
    default:
        return false;
    }
}

QString titleInFolder(Source &source, const SharedAlbum &album)
{
    const QByteArrayView path = source.index().path(album.files.front());
    return source
        .propertyList(DataType::SharedAlbums,
                      PhotosDatabase::kDomain,
                      PathParts::text(albumFolder(path)) + "Info.plist"_L1)
        .value("title")
        .toString()
        .trimmed();
}

std::vector<SharedAlbum> albumsInIndex(Source &source)
{
    std::vector<SharedAlbum> albums;
    QByteArrayView last;
    const FileIndex &index = source.index();
    const FileIndex::Range range = index.walk(PhotosDatabase::kDomain, PhotosDatabase::kShared);
    for (FileIndex::Row row = range.first; row < range.last && source.keepGoing(); ++row) {
        const QByteArrayView path = index.path(row);
        const QByteArrayView folder = albumFolder(path);
        if (folder.isEmpty() || index.kind(row) != FileIndex::Kind::File || !isForPeople(path))
            continue;
        if (folder != last) {
            const QByteArrayView inner = folder.chopped(1);
            albums.push_back({ PathParts::name(inner).toByteArray(),
                               PathParts::name(PathParts::folder(inner)).toByteArray(),
                               {},
                               {} });
            last = folder;
        }
        albums.back().files.push_back(row);
    }
    return albums;
}

} // namespace

std::vector<SharedAlbum> sharedAlbums(Source &source)
{
    std::vector<SharedAlbum> albums = albumsInIndex(source);
    if (albums.empty())
        return albums;
    const QHash<QByteArray, QString> titles =
        PhotosDatabase(source, DataType::SharedAlbums).sharedAlbumTitles();
    const FileIndex &index = source.index();
    for (SharedAlbum &album : albums) {
        album.title = titles.value(album.identifier.toLower());
        if (album.title.isEmpty())
            album.title = titleInFolder(source, album);
        std::sort(album.files.begin(), album.files.end(), [&index](auto a, auto b) {
            const int order = PathParts::compareNatural(index.path(a), index.path(b));
            return order != 0 ? order < 0 : a < b;
        });
    }
    const auto name = [](const SharedAlbum &album) {
        return (album.title.isEmpty() ? PathParts::text(album.identifier) : album.title).toUtf8();
    };
    std::stable_sort(albums.begin(), albums.end(), [&name](const auto &a, const auto &b) {
        return PathParts::compareNatural(name(a), name(b)) < 0;
    });
    return albums;
}

} // namespace PhoneBackup
