#include "PhoneBackup/media/PhotosDatabase.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

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

std::optional<Database> PhotosDatabase::open(Source &source, int dataType)
{
    return source.openDatabase(dataType, kDomain, u"Media/PhotoData/Photos.sqlite"_s);
}

QString PhotosDatabase::assetTable(const Database &database)
{
    return database.hasTable(u"ZASSET"_s) ? u"ZASSET"_s : u"ZGENERICASSET"_s; // up to iOS 13
}

QByteArray PhotosDatabase::path(QByteArrayView folder, QByteArrayView name)
{
    return "Media/" + folder.toByteArray() + '/' + name.toByteArray();
}

PhotosDatabase::PhotosDatabase(Source &source, int dataType)
    : m_source(source)
    , m_dataType(dataType)
    , m_database(open(source, dataType))
{
}

PhotoAssets PhotosDatabase::assets()
{
    PhotoAssets assets;
    if (!m_database)
        return assets;
    const QString table = assetTable(*m_database);
    const QStringList columns = m_database->columns(table);
    if (!columns.contains("ZDIRECTORY"_L1) || !columns.contains("ZFILENAME"_L1)) {
        m_source.addDatabaseProblem(m_dataType, *m_database, Notice("media.noPhotoTable"));
        return assets;
    }
    const QString fields = u"SELECT ZDIRECTORY, ZFILENAME, %1, %2 FROM %3"_s.arg(
        columnOrNull(columns, u"ZKIND"_s), columnOrNull(columns, u"ZTRASHEDSTATE"_s), table);
    const auto pathOf = [](const Statement &row) { return path(row.bytes(0), row.bytes(1)); };

    bool complete = true;
    if (columns.contains("ZTRASHEDSTATE"_L1)) {
        complete = m_source.query(m_dataType,
                                  *m_database,
                                  fields + " WHERE CAST(ZTRASHEDSTATE AS INTEGER) <> 0"_L1,
                                  [&](const Statement &row) {
                                      const QByteArray path = pathOf(row);
                                      assets.deleted.insert(path);
                                      assets.deletedStems.insert(withoutExtension(path));
                                  });
    }
    complete &= m_source.query(m_dataType, *m_database, fields, [&](const Statement &row) {
        const QByteArrayView name = row.bytes(1);
        const QByteArrayView folder = row.bytes(0);
        if (name.isEmpty() || folder.isEmpty())
            return;
        const bool known = mediaKind(name) != MediaKind::Unknown;
        if (known && assets.deletedStems.isEmpty() && folder.startsWith("DCIM/"))
            return; // nothing to be learned: the usual case, and there are many
        const QByteArray path = pathOf(row);
        if (row.integer(3) == 0 && assets.deletedStems.contains(withoutExtension(path)))
            assets.kept.insert(path);
        if (!known) {
            assets.kinds.insert(
                path, row.integer(2) == kKindVideo ? MediaKind::Video : MediaKind::Picture);
        }
        if (!liesInCameraRoll(path) && !path.startsWith(kShared)) {
            const FileIndex::Row found = m_source.files().findFile(kDomain, PathParts::text(path));
            if (found != FileIndex::kNone)
                assets.elsewhere.push_back(found);
        }
    });
    assets.complete = complete;
    return assets;
}

QHash<QByteArray, QString> PhotosDatabase::sharedAlbumTitles()
{
    QHash<QByteArray, QString> titles;
    const QStringList columns =
        m_database ? m_database->columns(u"ZGENERICALBUM"_s) : QStringList();
    if (!columns.contains("ZTITLE"_L1) || !columns.contains("ZCLOUDGUID"_L1))
        return titles;
    m_source.query(m_dataType,
                   *m_database,
                   u"SELECT ZCLOUDGUID, ZTITLE FROM ZGENERICALBUM WHERE ZCLOUDGUID <> '' AND "
                   "ZTITLE <> ''"_s,
                   [&titles](const Statement &row) {
                       titles.insert(row.bytes(0).toByteArray().toLower(), row.text(1).trimmed());
                   });
    return titles;
}

} // namespace PhoneBackup
