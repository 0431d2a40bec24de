#include "PhoneBackup/media/PhotosDatabase.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kKindVideo = 1;

bool liesInCameraRoll(QByteArrayView path)
{
    return path.startsWith(PhotosDatabase::kCamera) || path.startsWith(PhotosDatabase::kCloud)
        || path.startsWith(PhotosDatabase::kEdited);
}

QByteArray withoutExtension(const QByteArray &path)
{
    const qsizetype extension = PathParts::extension(path).size();
    return extension > 0 ? path.chopped(extension + 1) : path;
}

} // namespace

std::optional<RowDatabase> PhotosDatabase::open(Source &source, int dataType)
{
    return RowDatabase::open(source,
                             dataType,
                             kDomain,
                             u"Media/PhotoData/Photos.sqlite"_s,
                             RowDatabase::Consequence::filesStay());
}

QString PhotosDatabase::assetTable(const RowDatabase &database)
{
    return database.hasTable(u"ZASSET"_s) ? u"ZASSET"_s : u"ZGENERICASSET"_s; // up to iOS 13
}

QByteArray PhotosDatabase::path(QByteArrayView folder, QByteArrayView name)
{
    return "Media/" + folder.toByteArray() + '/' + name.toByteArray();
}

PhotosDatabase::PhotosDatabase(Source &source, int dataType)
    : m_source(source)
    , m_database(open(source, dataType))
{
}

PhotoAssets PhotosDatabase::assets()
{
    PhotoAssets assets;
    if (!m_database)
        return assets;
    Table table(*m_database, assetTable(*m_database));
    if (!table.hasColumn(u"ZDIRECTORY"_s) || !table.hasColumn(u"ZFILENAME"_s)) {
        m_database->addLoss(Notice("media.noPhotoTable"));
        return assets;
    }
    const auto [directory, file, kind, trashed] =
        table.columns(u"ZDIRECTORY"_s, u"ZFILENAME"_s, u"ZKIND"_s, u"ZTRASHEDSTATE"_s);
    const auto pathOf = [directory = directory, file = file](const Table::Row &row) {
        return path(row.bytes(directory), row.bytes(file));
    };
    const bool isMarked = table.forEach(
        [&](const Table::Row &row) {
            const QByteArray path = pathOf(row);
            assets.deleted.insert(path);
            assets.deletedStems.insert(withoutExtension(path));
        },
        u"CAST(%1 AS INTEGER) <> 0"_s.arg(table.sql(u"ZTRASHEDSTATE"_s)));
    const auto add = [&, directory = directory, file = file, kind = kind, trashed = trashed](
                         const Table::Row &row) {
        const QByteArrayView name = row.bytes(file);
        const QByteArrayView folder = row.bytes(directory);
        if (name.isEmpty() || folder.isEmpty())
            return;
        const bool known = mediaKind(name) != MediaKind::Unknown;
        if (known && assets.deletedStems.isEmpty() && folder.startsWith("DCIM/"))
            return; // nothing to be learned: the usual case, and there are many
        const QByteArray path = pathOf(row);
        if (row.integer(trashed) == 0 && assets.deletedStems.contains(withoutExtension(path)))
            assets.kept.insert(path);
        if (!known) {
            assets.kinds.insert(
                path, row.integer(kind) == kKindVideo ? MediaKind::Video : MediaKind::Picture);
        }
        if (!liesInCameraRoll(path) && !path.startsWith(kShared)) {
            const FileIndex::Row found = m_source.files().findFile(kDomain, PathParts::text(path));
            if (found != FileIndex::kNone)
                assets.elsewhere.push_back(found);
        }
    };
    assets.complete = table.forEach(add) && isMarked && m_database->isComplete();
    return assets;
}

QHash<QByteArray, QString> PhotosDatabase::sharedAlbumTitles()
{
    QHash<QByteArray, QString> titles;
    if (!m_database)
        return titles;
    Table albums(*m_database, u"ZGENERICALBUM"_s);
    const auto [title, identifier] = albums.columns(u"ZTITLE"_s, u"ZCLOUDGUID"_s);
    albums.forEach([&, title = title, identifier = identifier](const Table::Row &row) {
        if (!row.bytes(identifier).isEmpty() && !row.bytes(title).isEmpty()) {
            titles.insert(row.bytes(identifier).toByteArray().toLower(), row.text(title).trimmed());
        }
    });
    return titles;
}

} // namespace PhoneBackup
