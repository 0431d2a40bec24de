#include "PhoneBackup/media/SharedAlbums.h"

#include "PhoneBackup/media/PhotosDatabase.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/FileData.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kSharedAlbums = 2;

struct Album
{
    QByteArray folder; // "Media/PhotoData/PhotoCloudSharingData/<owner>/<album>/"
    QString title;
    std::vector<FileIndex::Row> rows;
};

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

class SharedAlbums
{
public:
    explicit SharedAlbums(Source &source)
        : m_source(source)
    {
    }

    void read(DataSets &sets)
    {
        collect();
        if (!m_albums.empty())
            nameAlbums();
        auto data = std::make_unique<FileData>(kSharedAlbums, m_source.files());
        FileEntry entry;
        for (Album &album : m_albums) {
            entry.group = data->addGroup(album.title);
            const FileIndex &index = m_source.index();
            std::sort(album.rows.begin(), album.rows.end(), [&](auto a, auto b) {
                const int order = PathParts::compareNatural(index.path(a), index.path(b));
                return order != 0 ? order < 0 : a < b;
            });
            for (const FileIndex::Row row : album.rows) {
                entry.row = row;
                data->add(entry);
            }
        }
        sets[kSharedAlbums] = std::move(data);
    }

private:
    void collect()
    {
        const FileIndex &index = m_source.index();
        const FileIndex::Range range = index.walk(PhotosDatabase::kDomain, PhotosDatabase::kShared);
        for (FileIndex::Row row = range.first; row < range.last && m_source.keepGoing(); ++row) {
            const QByteArrayView path = index.path(row);
            const QByteArrayView folder = albumFolder(path);
            if (folder.isEmpty() || index.kind(row) != FileIndex::Kind::File || !isForPeople(path))
                continue;
            if (m_albums.empty() || QByteArrayView(m_albums.back().folder) != folder)
                m_albums.push_back({ folder.toByteArray(), {}, {} });
            m_albums.back().rows.push_back(row);
        }
    }

    void nameAlbums()
    {
        const QHash<QByteArray, QString> titles =
            PhotosDatabase(m_source, kSharedAlbums).sharedAlbumTitles();
        for (Album &album : m_albums) {
            const QByteArray identifier = PathParts::name(album.folder.chopped(1)).toByteArray();
            album.title = titles.value(identifier.toLower());
            if (album.title.isEmpty()) {
                album.title = m_source
                                  .propertyList(kSharedAlbums,
                                                PhotosDatabase::kDomain,
                                                PathParts::text(album.folder) + "Info.plist"_L1)
                                  .value("title")
                                  .toString()
                                  .trimmed();
            }
            if (album.title.isEmpty())
                album.title = PathParts::text(identifier);
        }
        std::stable_sort(m_albums.begin(), m_albums.end(), [](const Album &a, const Album &b) {
            return PathParts::compareNatural(a.title.toUtf8(), b.title.toUtf8()) < 0;
        });
    }

    Source &m_source;
    std::vector<Album> m_albums;
};

} // namespace

void readSharedAlbums(Source &source, DataSets &sets)
{
    SharedAlbums(source).read(sets);
}

} // namespace PhoneBackup
