#include "PhoneBackup/media/CameraRoll.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/media/PhotosDatabase.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>

namespace PhoneBackup {

namespace {

constexpr QByteArrayView kDeletedAttribute = "com.apple.assetsd.trashed";

// The folder of an edited version lacks the "Media/" that that of its original has.
QByteArrayView withoutRoot(QByteArrayView folder)
{
    constexpr QByteArrayView kRoot = "Media/";
    return folder.startsWith(kRoot) ? folder.sliced(kRoot.size()) : folder;
}

QByteArray originalPath(const CameraFile &shot)
{
    return "Media/" + shot.folder.toByteArray() + '/' + shot.stem.toByteArray();
}

class CameraRoll
{
public:
    explicit CameraRoll(Source &source)
        : m_source(source)
        , m_index(source.index())
    {
    }

    std::vector<CameraFile> read()
    {
        m_assets = PhotosDatabase(m_source, DataType::Photos).assets();
        collect(PhotosDatabase::kCamera, false);
        collect(PhotosDatabase::kCloud, false);
        collect(PhotosDatabase::kEdited, true);
        std::sort(m_assets.elsewhere.begin(), m_assets.elsewhere.end());
        const auto end = std::unique(m_assets.elsewhere.begin(), m_assets.elsewhere.end());
        std::for_each(
            m_assets.elsewhere.begin(), end, [this](FileIndex::Row row) { collect(row, false); });
        markDeleted();
        sort();
        return std::move(m_shots);
    }

private:
    void collect(QByteArrayView folder, bool edited)
    {
        const FileIndex::Range range = m_index.walk(PhotosDatabase::kDomain, folder);
        for (FileIndex::Row row = range.first; row < range.last && m_source.keepGoing(); ++row) {
            if (m_index.kind(row) == FileIndex::Kind::File)
                collect(row, edited);
        }
    }

    void collect(FileIndex::Row row, bool edited)
    {
        const QByteArrayView path = m_index.path(row);
        if (PathParts::isHidden(path))
            return;
        MediaKind kind = mediaKind(path);
        if (kind == MediaKind::Unknown && !edited) {
            // A format of tomorrow is a picture sooner than nothing.
            kind = m_assets.kinds.isEmpty()
                ? MediaKind::Picture
                : m_assets.kinds.value(path.toByteArray(), MediaKind::Picture);
        }
        if (kind != MediaKind::Picture && kind != MediaKind::Video)
            return;
        CameraFile shot { row,
                          withoutRoot(PathParts::folder(path)),
                          PathParts::stem(path),
                          0,
                          edited,
                          kind == MediaKind::Video,
                          false };
        if (edited)
            placeBesideOriginal(shot, path);
        m_shots.push_back(shot);
    }

    // …/Mutations/DCIM/100APPLE/IMG_0001/Adjustments/FullSizeRender.jpg belongs to
    // DCIM/100APPLE/IMG_0001.
    static void placeBesideOriginal(CameraFile &shot, QByteArrayView path)
    {
        const QByteArrayView inner = path.sliced(QByteArrayView(PhotosDatabase::kEdited).size());
        const qsizetype adjustments = inner.lastIndexOf("/Adjustments/");
        const QByteArrayView original =
            adjustments < 0 ? PathParts::folder(inner) : inner.first(adjustments);
        shot.stem = PathParts::name(original);
        shot.folder = withoutRoot(PathParts::folder(original));
    }

    void markDeleted()
    {
        // What the database does not tell, the index may.
        if (!m_assets.complete)
            readAttributes();
        if (m_assets.deletedStems.isEmpty())
            return;
        for (CameraFile &shot : m_shots) {
            if (!m_assets.deletedStems.contains(originalPath(shot)))
                continue;
            const QByteArray path = m_index.path(shot.row).toByteArray();
            // The film of a deleted live photo goes with it, but not a file that the phone itself
            // lists on its own and has not deleted.
            shot.deleted = m_assets.deleted.contains(path) || !m_assets.kept.contains(path);
        }
    }

    void readAttributes()
    {
        for (const CameraFile &shot : m_shots) {
            if (!m_source.keepGoing())
                return;
            if (!m_source.files().hasAttribute(shot.row, kDeletedAttribute))
                continue;
            const QByteArray value = m_source.files().record(shot.row).extendedAttributes().value(
                QString::fromLatin1(kDeletedAttribute));
            const bool deleted = std::any_of(
                value.cbegin(), value.cend(), [](char c) { return c != '\0' && c != '0'; });
            if (!deleted)
                continue;
            m_assets.deleted.insert(m_index.path(shot.row).toByteArray());
            m_assets.deletedStems.insert(originalPath(shot));
        }
    }

    // There are few folders and many files: they are compared by name once, then by rank.
    void rankFolders()
    {
        std::vector<QByteArrayView> folders;
        for (const CameraFile &shot : m_shots) {
            if (folders.empty() || folders.back() != shot.folder)
                folders.push_back(shot.folder);
        }
        const auto before = [](QByteArrayView a, QByteArrayView b) {
            return PathParts::compareNatural(a, b) < 0;
        };
        std::sort(folders.begin(), folders.end(), before);
        QByteArrayView last;
        int rank = -1;
        for (CameraFile &shot : m_shots) {
            if (rank < 0 || shot.folder != last) {
                last = shot.folder;
                rank = int(std::lower_bound(folders.cbegin(), folders.cend(), last, before)
                           - folders.cbegin());
            }
            shot.folderRank = rank;
        }
    }

    void sort()
    {
        rankFolders();
        // Stable: it profits from the index's order, which is nearly this one.
        std::stable_sort(
            m_shots.begin(), m_shots.end(), [this](const CameraFile &a, const CameraFile &b) {
                if (a.folderRank != b.folderRank)
                    return a.folderRank < b.folderRank;
                int order = PathParts::compareNatural(a.stem, b.stem);
                if (order == 0)
                    order = int(a.edited) - int(b.edited);
                if (order == 0)
                    order = PathParts::compareNatural(m_index.path(a.row), m_index.path(b.row));
                return order < 0;
            });
    }

    Source &m_source;
    const FileIndex &m_index;
    PhotoAssets m_assets;
    std::vector<CameraFile> m_shots;
};

} // namespace

std::vector<CameraFile> cameraFiles(Source &source)
{
    return CameraRoll(source).read();
}

} // namespace PhoneBackup
