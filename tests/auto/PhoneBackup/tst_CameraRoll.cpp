#include "BackupFixture.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using Sample::FileTraits;

namespace {

const QString kDomain = u"CameraRollDomain"_s;
const QString kDatabase = u"Media/PhotoData/Photos.sqlite"_s;

constexpr const char *kAssetTable =
    "CREATE TABLE ZASSET (Z_PK INTEGER PRIMARY KEY, ZKIND INTEGER, ZTRASHEDSTATE INTEGER,"
    " ZDIRECTORY VARCHAR, ZFILENAME VARCHAR);";

// Two pictures, one with a film, an edited version and a copy; the second is in the trash.
void addUsualFiles(Sample::BackupWriter &writer)
{
    for (const char *path : { "Media/DCIM/100APPLE/IMG_0001.HEIC",
                              "Media/DCIM/100APPLE/IMG_0001.MOV",
                              "Media/DCIM/100APPLE/IMG_0001.AAE",
                              "Media/DCIM/100APPLE/IMG_0002.HEIC",
                              "Media/DCIM/100APPLE/IMG_0002.MOV",
                              "Media/PhotoData/Mutations/DCIM/100APPLE/IMG_0002/Adjustments/"
                              "FullSizeRender.jpg",
                              "Media/PhotoData/Mutations/DCIM/100APPLE/IMG_0002/Adjustments/"
                              "FullSizeRender.mov",
                              "Media/PhotoData/Mutations/DCIM/100APPLE/IMG_0002/Adjustments/"
                              "Adjustments.plist" })
        writer.addFile(kDomain, QString::fromLatin1(path), path);
}

const QStringList kUsualPhotos { u"100APPLE/IMG_0001.HEIC"_s,
                                 u"100APPLE/IMG_0002.HEIC [deleted]"_s,
                                 u"100APPLE/IMG_0002 FullSizeRender.jpg [deleted]"_s };
const QStringList kUsualVideos { u"100APPLE/IMG_0001.MOV"_s,
                                 u"100APPLE/IMG_0002.MOV [deleted]"_s,
                                 u"100APPLE/IMG_0002 FullSizeRender.mov [deleted]"_s };

QStringList withoutMarks(QStringList list)
{
    return list.replaceInStrings(u" [deleted]"_s, QString());
}

} // namespace

class tst_CameraRoll : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void marksDeletedFromTheDatabase_data();
    void marksDeletedFromTheDatabase();
    void keepsAllFilesWhateverTheDatabase_data();
    void keepsAllFilesWhateverTheDatabase();
    void marksDeletedFromTheRecords_data();
    void marksDeletedFromTheRecords();
    void tellsWhatIsForPeople_data();
    void tellsWhatIsForPeople();
    void ordersAndGroupsByFolder();
    void readsSharedAlbums();
};

void tst_CameraRoll::marksDeletedFromTheDatabase_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::addColumn<QStringList>("photos");
    QTest::addColumn<QStringList>("videos");

    const QByteArray table = kAssetTable;
    const QByteArray rows = "INSERT INTO ZASSET VALUES (1, 0, 0, 'DCIM/100APPLE', 'IMG_0001.HEIC'),"
                            " (2, 0, 1, 'DCIM/100APPLE', 'IMG_0002.HEIC'),"
                            " (3, 0, 1, 'DCIM/100APPLE', 'IMG_0009.HEIC')";
    QTest::newRow("newer table") << table + rows << kUsualPhotos << kUsualVideos;
    QTest::newRow("older table") << QByteArray(table + rows).replace("ZASSET", "ZGENERICASSET")
                                 << kUsualPhotos << kUsualVideos;
    QTest::newRow("a film that is a video of its own")
        << table + rows + ", (4, 1, 0, 'DCIM/100APPLE', 'IMG_0002.MOV')" << kUsualPhotos
        << QStringList { u"100APPLE/IMG_0001.MOV"_s,
                         u"100APPLE/IMG_0002.MOV"_s,
                         u"100APPLE/IMG_0002 FullSizeRender.mov [deleted]"_s };
    QTest::newRow("no column for the trash")
        << QByteArray("CREATE TABLE ZASSET (ZDIRECTORY VARCHAR, ZFILENAME VARCHAR);"
                      "INSERT INTO ZASSET VALUES ('DCIM/100APPLE', 'IMG_0002.HEIC')")
        << withoutMarks(kUsualPhotos) << withoutMarks(kUsualVideos);
    QTest::newRow("a text where a number is due")
        << table + "INSERT INTO ZASSET VALUES (1, 'x', 'no', 'DCIM/100APPLE', 'IMG_0002.HEIC')"
        << withoutMarks(kUsualPhotos) << withoutMarks(kUsualVideos);
    QTest::newRow("nulls") << table + "INSERT INTO ZASSET VALUES (1, NULL, NULL, NULL, NULL)"
                           << withoutMarks(kUsualPhotos) << withoutMarks(kUsualVideos);
}

void tst_CameraRoll::marksDeletedFromTheDatabase()
{
    QFETCH(QByteArray, sql);
    QFETCH(QStringList, photos);
    QFETCH(QStringList, videos);

    for (const bool onlyInLog : { false, true }) {
        BackupFixture fixture;
        addUsualFiles(fixture.writer);
        if (onlyInLog) {
            Sample::Database live({}, "CREATE TABLE other (a)");
            const QByteArray before = live.image();
            live.execute(sql.constData());
            fixture.writer.addFile(kDomain, kDatabase, before);
            fixture.writer.addFile(
                kDomain, kDatabase + u"-wal"_s, Sample::writeAheadLog(before, live.image()));
        } else {
            fixture.writer.addFile(kDomain, kDatabase, BackupFixture::database(sql.constData()));
        }
        QCOMPARE(fixture.list(0), photos);
        QCOMPARE(fixture.list(1), videos);
        QVERIFY(fixture.problems().isEmpty());
    }
}

void tst_CameraRoll::keepsAllFilesWhateverTheDatabase_data()
{
    QTest::addColumn<QByteArray>("content"); // null: there is no such file
    QTest::addColumn<bool>("problem");

    Sample::Database many({}, kAssetTable);
    Sample::Statement insert = many.prepare("INSERT INTO ZASSET VALUES (NULL, 0, 0, ?, ?)");
    for (int i = 0; i < 2000; ++i)
        insert.run({ u"DCIM/100APPLE"_s, u"IMG_%1.HEIC"_s.arg(i + 100) });
    const QByteArray whole = many.image();
    QTest::newRow("absent") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << true;
    QTest::newRow("garbage") << QByteArray(8192, 'g') << true;
    QTest::newRow("cut in half") << whole.first(whole.size() / 2) << true;
    QTest::newRow("no table") << BackupFixture::database("CREATE TABLE other (a)") << true;
    QTest::newRow("a column missing")
        << BackupFixture::database("CREATE TABLE ZASSET (ZFILENAME)") << true;
    QTest::newRow("a view that does not end") << BackupFixture::database(
        "CREATE VIEW ZASSET AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n)"
        " SELECT 'DCIM' AS ZDIRECTORY, i AS ZFILENAME FROM n")
                                              << true;
}

void tst_CameraRoll::keepsAllFilesWhateverTheDatabase()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, problem);

    BackupFixture fixture;
    addUsualFiles(fixture.writer);
    if (!content.isNull())
        fixture.writer.addFile(kDomain, kDatabase, content);
    QCOMPARE(fixture.list(0), withoutMarks(kUsualPhotos));
    QCOMPARE(fixture.list(1), withoutMarks(kUsualVideos));
    const QStringList expected { u"0 CameraRollDomain/"_s + kDatabase };
    QCOMPARE(fixture.problems(), problem ? expected : QStringList());
}

void tst_CameraRoll::marksDeletedFromTheRecords_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("deleted");
    QTest::newRow("byte") << QByteArray("\1") << true;
    QTest::newRow("digit") << QByteArray("1") << true;
    QTest::newRow("zero byte") << QByteArray("\0", 1) << false;
    QTest::newRow("zero digit") << QByteArray("0") << false;
}

void tst_CameraRoll::marksDeletedFromTheRecords()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, deleted);
    BackupFixture fixture;
    FileTraits traits;
    traits.extendedAttributes = { { u"com.apple.assetsd.trashed"_s, value } };
    fixture.writer.addFile(kDomain, u"Media/DCIM/100APPLE/IMG_0001.HEIC"_s, "a", traits);
    fixture.writer.addFile(kDomain, u"Media/DCIM/100APPLE/IMG_0001.MOV"_s, "a");
    fixture.writer.addFile(kDomain, u"Media/DCIM/100APPLE/IMG_0002.HEIC"_s, "a");
    const QString mark = deleted ? u" [deleted]"_s : QString();
    QCOMPARE(fixture.list(0),
             QStringList({ u"100APPLE/IMG_0001.HEIC"_s + mark, u"100APPLE/IMG_0002.HEIC"_s }));
    QCOMPARE(fixture.list(1), QStringList(u"100APPLE/IMG_0001.MOV"_s + mark)); // its film
}

void tst_CameraRoll::tellsWhatIsForPeople_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("dataType"); // -1: left out

    const auto row = [](const char *path, int dataType) {
        QTest::newRow(path) << QString::fromUtf8(path) << dataType;
    };
    row("Media/DCIM/100APPLE/IMG_1.heic", 0);
    row("Media/DCIM/100APPLE/IMG_1.DNG", 0);
    row("Media/DCIM/100APPLE/IMG_1.JXL", 0);
    row("Media/DCIM/IMG_1.PNG", 0);
    row("Media/DCIM/100APPLE/IMG_1.MP4", 1);
    row("Media/DCIM/100APPLE/IMG_1.webm", 1);
    row("Media/PhotoData/CPLAssets/group1/A-B.JPG", 0);
    row("Media/PhotoData/CPLAssets/group1/A-B.mov", 1);
    row("Media/DCIM/100APPLE/IMG_1.FUTURE", 0);
    row("Media/DCIM/100APPLE/film.FUTURE", 1); // the database says so
    row("Media/PhotoData/Elsewhere/known.JPG", 0); // likewise
    row("Media/PhotoData/Elsewhere/unknown.JPG", -1);
    row("Media/DCIM/100APPLE/IMG_1.AAE", -1);
    row("Media/DCIM/100APPLE/IMG_1.THM", -1);
    row("Media/DCIM/.MISC/IMG_1.JPG", -1);
    row("Media/DCIM/100APPLE/.hidden.JPG", -1);
    row("Media/PhotoData/Thumbnails/V2/DCIM/100APPLE/IMG_1.JPG/5005.JPG", -1);
    row("Media/PhotoData/Metadata/DCIM/100APPLE/IMG_1.JPG", -1);
    row("Media/PhotoData/Mutations/DCIM/100APPLE/IMG_1/Adjustments/Adjustments.data", -1);
    row("Media/PhotoData/PhotoCloudSharingData/1/A/100CLOUD/IMG_1.JPG", 2);
    row("Media/PhotoData/PhotoCloudSharingData/1/A/100CLOUD/IMG_1.MOV", 2);
    row("Media/PhotoData/PhotoCloudSharingData/1/A/100CLOUD/IMG_1.FUTURE", 2);
    row("Media/PhotoData/PhotoCloudSharingData/1/A/Info.plist", -1);
    row("Media/PhotoData/PhotoCloudSharingData/1/A/state.future", -1);
    row("Media/PhotoData/PhotoCloudSharingData/personInfo.JPG", -1);
}

void tst_CameraRoll::tellsWhatIsForPeople()
{
    QFETCH(QString, path);
    QFETCH(int, dataType);
    BackupFixture fixture;
    fixture.writer.addFile(kDomain, path, "content");
    fixture.writer.addFile(
        kDomain,
        kDatabase,
        BackupFixture::database(
            QByteArray(kAssetTable
                       + QByteArray("INSERT INTO ZASSET VALUES"
                                    "(1, 1, 0, 'DCIM/100APPLE', 'film.FUTURE'),"
                                    "(2, 0, 0, 'PhotoData/Elsewhere', 'known.JPG'),"
                                    "(3, 0, 0, 'PhotoData/Elsewhere', 'known.JPG'),"
                                    "(4, 0, 0, '../../etc', 'passwd')"))
                .constData()));
    for (const int code : { 0, 1, 2 })
        QCOMPARE(fixture.list(code).size(), code == dataType ? 1 : 0);
}

void tst_CameraRoll::ordersAndGroupsByFolder()
{
    BackupFixture fixture;
    for (const char *path : { "Media/DCIM/100APPLE/IMG_10.JPG",
                              "Media/DCIM/100APPLE/IMG_9.JPG",
                              "Media/DCIM/100APPLE/img_9.jpg",
                              "Media/DCIM/99APPLE/IMG_1.JPG",
                              "Media/PhotoData/CPLAssets/group10/B.JPG",
                              "Media/PhotoData/CPLAssets/group9/A.JPG",
                              "Media/PhotoData/CPLAssets/100APPLE/C.JPG",
                              "Media/PhotoData/Mutations/PhotoData/CPLAssets/group9/A/Adjustments/"
                              "FullSizeRender.heic" })
        fixture.writer.addFile(kDomain, QString::fromLatin1(path), "x");
    QCOMPARE(fixture.list(0),
             QStringList({ u"99APPLE/IMG_1.JPG"_s,
                           u"100APPLE/IMG_9.JPG"_s,
                           u"100APPLE/img_9 (2).jpg"_s,
                           u"100APPLE/IMG_10.JPG"_s,
                           u"100APPLE (2)/C.JPG"_s, // another folder of that name
                           u"group9/A.JPG"_s,
                           u"group9/A FullSizeRender.heic"_s,
                           u"group10/B.JPG"_s }));
}

void tst_CameraRoll::readsSharedAlbums()
{
    BackupFixture fixture;
    const QString shared = u"Media/PhotoData/PhotoCloudSharingData/77/%1/100CLOUD/IMG_%2.JPG"_s;
    for (const char *album : { "AAAA", "BBBB", "CCCC", "DDDD" }) {
        for (const int number : { 10, 9 })
            fixture.writer.addFile(
                kDomain, shared.arg(QString::fromLatin1(album)).arg(number), "x");
    }
    const QString info = u"Media/PhotoData/PhotoCloudSharingData/77/%1/Info.plist"_s;
    fixture.writer.addFile(kDomain,
                           info.arg(u"BBBB"_s),
                           Sample::binaryPropertyList(QVariantMap { { u"title"_s, u"Trip"_s } }));
    fixture.writer.addFile(kDomain, info.arg(u"CCCC"_s), "damaged");
    fixture.writer.addFile(
        kDomain,
        kDatabase,
        BackupFixture::database("CREATE TABLE ZGENERICALBUM (ZTITLE, ZCLOUDGUID);"
                                "INSERT INTO ZGENERICALBUM VALUES ('trip', 'aaaa'), (NULL, 'BBBB'),"
                                "('Other', NULL)"));
    QCOMPARE(fixture.list(2),
             QStringList({ u"CCCC/IMG_9.JPG"_s,
                           u"CCCC/IMG_10.JPG"_s,
                           u"DDDD/IMG_9.JPG"_s,
                           u"DDDD/IMG_10.JPG"_s,
                           u"Trip/IMG_9.JPG"_s,
                           u"Trip/IMG_10.JPG"_s,
                           u"trip (2)/IMG_9.JPG"_s,
                           u"trip (2)/IMG_10.JPG"_s }));
    QCOMPARE(fixture.problems(), QStringList(u"2 CameraRollDomain/"_s + info.arg(u"CCCC"_s)));
}

QTEST_GUILESS_MAIN(tst_CameraRoll)
#include "tst_CameraRoll.moc"
