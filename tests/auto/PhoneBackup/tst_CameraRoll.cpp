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

QTEST_GUILESS_MAIN(tst_CameraRoll)
#include "tst_CameraRoll.moc"
