#include "sample/PhotoLibrary.h"

#include "sample/SampleDates.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

// The table of assets was named anew with system version 14.
constexpr const char *kTables = R"(
CREATE TABLE %ASSETS% (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZADJUSTMENTSSTATE INTEGER,
  ZBUNDLESCOPE INTEGER, ZFAVORITE INTEGER, ZHIDDEN INTEGER, ZKIND INTEGER, ZKINDSUBTYPE INTEGER,
  ZSAVEDASSETTYPE INTEGER, ZTRASHEDSTATE INTEGER, ZVISIBILITYSTATE INTEGER, ZADDITIONALATTRIBUTES INTEGER,
  ZADDEDDATE TIMESTAMP, ZDATECREATED TIMESTAMP, ZMODIFICATIONDATE TIMESTAMP, ZTRASHEDDATE TIMESTAMP,
  ZLATITUDE FLOAT, ZLONGITUDE FLOAT, ZDIRECTORY VARCHAR, ZFILENAME VARCHAR,
  ZUNIFORMTYPEIDENTIFIER VARCHAR, ZUUID VARCHAR);
CREATE TABLE ZADDITIONALASSETATTRIBUTES (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZASSET INTEGER,
  ZTIMEZONEOFFSET INTEGER, ZORIGINALFILENAME VARCHAR, ZTIMEZONENAME VARCHAR, ZTITLE VARCHAR);
CREATE TABLE ZGENERICALBUM (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZKIND INTEGER,
  ZTRASHEDSTATE INTEGER, ZPARENTFOLDER INTEGER, ZTITLE VARCHAR, ZUUID VARCHAR, ZCLOUDGUID VARCHAR);
CREATE TABLE Z_26ASSETS (Z_26ALBUMS INTEGER, Z_3ASSETS INTEGER, Z_FOK_3ASSETS INTEGER,
  PRIMARY KEY (Z_26ALBUMS, Z_3ASSETS));
CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);
CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB);
)";

constexpr int kAssetEntity = 3;
constexpr int kAttributesEntity = 1;
constexpr int kAlbumEntity = 26;
constexpr int kMemberStep = 1024;

QString uniformType(const QString &fileName)
{
    if (fileName.endsWith(".MOV"_L1, Qt::CaseInsensitive))
        return u"com.apple.quicktime-movie"_s;
    return fileName.endsWith(".PNG"_L1, Qt::CaseInsensitive) ? u"public.png"_s : u"public.jpeg"_s;
}

} // namespace

PhotoLibrary::PhotoLibrary(const QString &path, bool oldStyle)
    : m_assetTable(oldStyle ? "ZGENERICASSET" : "ZASSET")
    , m_database(path, QByteArray(kTables).replace("%ASSETS%", m_assetTable).constData())
    , m_insertAsset(m_database.prepare(
          QByteArray("INSERT INTO " + m_assetTable
                     + " VALUES (?,?,1,?,0,?,?,?,?,?,?,0,?,?,?,?,?,-180,-180,?,?,?,?)")
              .constData()))
    , m_insertAttributes(m_database.prepare(
          "INSERT INTO ZADDITIONALASSETATTRIBUTES VALUES (?,?,1,?,7200,?,'Europe/Berlin',NULL)"))
    , m_insertAlbum(m_database.prepare("INSERT INTO ZGENERICALBUM VALUES (?,?,1,?,0,?,?,?,?)"))
    , m_insertMember(m_database.prepare("INSERT INTO Z_26ASSETS VALUES (?,?,?)"))
{
}

int PhotoLibrary::addAsset(const Asset &asset)
{
    const int key = ++m_assets;
    const double taken = cocoaSeconds(asset.taken);
    constexpr double kDay = 86400;
    m_insertAsset.run({ key,
                        kAssetEntity,
                        asset.isEdited ? 2 : 0,
                        asset.isFavorite,
                        asset.isHidden,
                        asset.isVideo,
                        asset.kindSubtype,
                        asset.savedType,
                        asset.isTrashed,
                        key,
                        taken,
                        taken,
                        taken,
                        asset.isTrashed ? QVariant(taken + kDay) : QVariant(),
                        asset.directory,
                        asset.fileName,
                        uniformType(asset.fileName),
                        asset.uuid });
    m_insertAttributes.run({ key,
                             kAttributesEntity,
                             key,
                             asset.originalName.isEmpty() ? asset.fileName : asset.originalName });
    return key;
}

int PhotoLibrary::addAlbum(AlbumKind kind,
                           const QString &title,
                           const QString &uuid,
                           const QString &cloudId)
{
    const int key = ++m_albums;
    const bool isRoot = kind == AlbumKind::RootFolder;
    m_insertAlbum.run({ key,
                        kAlbumEntity,
                        static_cast<int>(kind),
                        isRoot ? QVariant() : QVariant(1),
                        isRoot ? QVariant() : QVariant(title),
                        uuid,
                        cloudId.isEmpty() ? QVariant() : QVariant(cloudId) });
    return key;
}

void PhotoLibrary::addToAlbum(int album, int asset)
{
    m_insertMember.run({ album, asset, ++m_members * kMemberStep });
}

bool PhotoLibrary::finish()
{
    Statement entity = m_database.prepare("INSERT INTO Z_PRIMARYKEY VALUES (?,?,0,?)");
    entity.run({ kAttributesEntity, u"AdditionalAssetAttributes"_s, m_assets });
    entity.run({ kAssetEntity, u"Asset"_s, m_assets });
    entity.run({ kAlbumEntity, u"GenericAlbum"_s, m_albums });
    m_database.execute(
        "INSERT INTO Z_METADATA VALUES (1,'0B6E2D4C-8F13-4A57-9C20-6D7E8F901234',NULL)");
    m_database.execute(
        QByteArray("CREATE INDEX Z_Asset_byDateCreated ON " + m_assetTable + "(ZDATECREATED)")
            .constData());
    return m_database.finish();
}

} // namespace Sample
