#include "BackupFixture.h"
#include "PhoneBackup/folder/ManifestMbdb.h"
#include "PhoneItems/words/Words.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using PhoneBackup::Fault;
using PhoneBackup::FileIndex;
using PhoneBackup::FileRecord;
using PhoneBackup::ManifestMbdb;
using Sample::FileTraits;
using Layout = Sample::BackupWriter::Layout;

namespace {

constexpr int kPhotos = 0;
constexpr int kVoiceMemos = 3;
const QString kCamera = u"CameraRollDomain"_s;

QString picture(int number)
{
    return u"Media/DCIM/100APPLE/IMG_%1.JPG"_s.arg(number, 4, 10, QChar(u'0'));
}

} // namespace

//! Backups with the index Manifest.mbdb.
class tst_OldLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsRecorded();
    void exportsLikeANewOne();
    void readsDatabasesOfTheTime();
    void keepsWhatIsLeft_data();
    void keepsWhatIsLeft();
    void survivesEveryCut();
    void refusesWhatIsNoIndex_data();
    void refusesWhatIsNoIndex();

private:
    QByteArray index(int pictures);
    QStringList load(const QByteArray &bytes, QString *damage = nullptr);

    QTemporaryDir m_dir;
};

// The bytes of an index with that many pictures.
QByteArray tst_OldLayout::index(int pictures)
{
    BackupFixture fixture(Layout::Records);
    for (int i = 0; i < pictures; ++i)
        fixture.writer.addFile(kCamera, picture(i), "picture");
    return fixture.finish() ? Files::read(fixture.root() + u"/Manifest.mbdb"_s) : QByteArray();
}

// The paths of all files in such an index.
QStringList tst_OldLayout::load(const QByteArray &bytes, QString *damage)
{
    const QString path = m_dir.filePath(u"Manifest.mbdb"_s);
    if (!Files::write(path, bytes))
        return {};
    auto manifest = ManifestMbdb::open(path);
    if (!manifest)
        return { PhoneItems::words(manifest.error().what) };
    FileIndex files;
    const auto findings = manifest.value()->load(files, {});
    if (damage)
        *damage = PhoneItems::words(findings.value().damage);
    QStringList paths;
    for (FileIndex::Row row = 0; row < files.count(); ++row) {
        if (files.kind(row) == FileIndex::Kind::File)
            paths += QString::fromUtf8(files.path(row));
        static_cast<void>(manifest.value()->record(files.recordKey(row)));
    }
    return paths;
}

void tst_OldLayout::readsWhatIsRecorded()
{
    FileTraits traits;
    traits.modified = QDateTime(QDate(2014, 2, 3), QTime(4, 5, 6), Qt::UTC);
    traits.extendedAttributes.insert(u"com.apple.assetsd.favorite"_s, QByteArray(1, '\1'));
    BackupFixture fixture(Layout::Records);
    fixture.writer.addFile(kCamera, u"Media/Grüße.JPG"_s, "picture", traits);
    fixture.writer.addFolder(kCamera, u"Media/Empty"_s);
    QVERIFY(fixture.finish());

    auto manifest = ManifestMbdb::open(fixture.root() + u"/Manifest.mbdb"_s);
    QVERIFY(manifest);
    FileIndex files;
    QVERIFY(manifest.value()->load(files, {}));
    const FileIndex::Row row = files.find(kCamera.toUtf8(), u"Media/Grüße.JPG"_s);
    QVERIFY(row != FileIndex::kNone);
    QCOMPARE(files.kind(row), FileIndex::Kind::File);
    QCOMPARE(files.kind(files.find(kCamera.toUtf8(), u"Media/Empty"_s)), FileIndex::Kind::Folder);
    const FileRecord record = manifest.value()->record(files.recordKey(row));
    QCOMPARE(record.mode, 0100644U);
    QCOMPARE(record.sizeBytes, 7);
    QCOMPARE(record.modified, traits.modified);
    QCOMPARE(record.extendedAttributes(), traits.extendedAttributes);
    QVERIFY(manifest.value()->mentions(files.recordKey(row), "com.apple.assetsd.favorite"));
    QVERIFY(!manifest.value()->mentions(files.recordKey(row), "com.apple.assetsd.trashed"));
}

void tst_OldLayout::exportsLikeANewOne()
{
    BackupFixture fixture(Layout::Records);
    fixture.writer.addFile(kCamera, picture(1), "one");
    fixture.writer.addFile(kCamera, picture(2), "two");
    QVERIFY(fixture.open());
    QCOMPARE(fixture.list(kPhotos),
             (QStringList { u"100APPLE/IMG_0001.JPG"_s, u"100APPLE/IMG_0002.JPG"_s }));
    QCOMPARE(fixture.problems(), QStringList());
    const auto *item = dynamic_cast<const BkFileItem *>(
        fixture.open()->getBkData(kPhotos)->recoverFileList().value(1));
    QVERIFY(!item->isStreamed());
    QCOMPARE(Files::read(item->filePath()), QByteArray("two"));
    QCOMPARE(QFileInfo(item->filePath()).path(), fixture.root());
}

void tst_OldLayout::readsDatabasesOfTheTime()
{
    BackupFixture fixture(Layout::Records);
    fixture.writer.addFile(kCamera, picture(1), "kept");
    fixture.writer.addFile(kCamera, picture(2), "trashed");
    fixture.writer.addFile(
        kCamera,
        u"Media/PhotoData/Photos.sqlite"_s,
        BackupFixture::database(
            "CREATE TABLE ZGENERICASSET (Z_PK INTEGER PRIMARY KEY, ZKIND INTEGER, "
            "ZTRASHEDSTATE INTEGER, ZDIRECTORY VARCHAR, ZFILENAME VARCHAR);"
            "INSERT INTO ZGENERICASSET VALUES (1, 0, 1, 'DCIM/100APPLE', 'IMG_0002.JPG')"));
    fixture.writer.addFile(u"MediaDomain"_s, u"Media/Recordings/a.m4a"_s, "sound");
    fixture.writer.addFile(
        u"MediaDomain"_s,
        u"Media/Recordings/Recordings.db"_s,
        BackupFixture::database(
            "CREATE TABLE ZRECORDING (Z_PK INTEGER PRIMARY KEY, ZCUSTOMLABEL VARCHAR, ZPATH "
            "VARCHAR);"
            "INSERT INTO ZRECORDING VALUES (1, 'Shanty', '/var/mobile/Media/Recordings/a.m4a')"));
    QVERIFY(fixture.open());
    QCOMPARE(fixture.list(kPhotos),
             (QStringList { u"100APPLE/IMG_0001.JPG"_s, u"100APPLE/IMG_0002.JPG [deleted]"_s }));
    QCOMPARE(fixture.list(kVoiceMemos), QStringList { u"Shanty.m4a"_s });
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_OldLayout::keepsWhatIsLeft_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<int>>("missing");
    QTest::addColumn<QString>("words");

    const QByteArray whole = index(4);
    const qsizetype second = whole.indexOf(picture(1).toUtf8());
    const qsizetype last = whole.indexOf(picture(3).toUtf8());
    QByteArray longer = whole; // the length in front of the second path
    longer[second - 1] = static_cast<char>(longer[second - 1] + 5);
    QByteArray beyond = whole; // it leads past the end
    beyond[second - 2] = '\x70';
    QByteArray noise = whole;
    noise.replace(second - 10, 30, QByteArray(30, '\xEE'));
    QTest::newRow("whole") << whole << QList<int>() << QString();
    QTest::newRow("cut in the last entry")
        << whole.first(last + 5) << QList<int> { 3 } << u"middle"_s;
    QTest::newRow("a length too long") << longer << QList<int> { 1 } << u"cannot be read"_s;
    QTest::newRow("a length past the end") << beyond << QList<int> { 1 } << u"cannot be read"_s;
    QTest::newRow("noise") << noise << QList<int> { 1 } << u"cannot be read"_s;
    QTest::newRow("zeros behind") << whole + QByteArray(1000, '\0') << QList<int>() << u"middle"_s;
}

void tst_OldLayout::keepsWhatIsLeft()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QList<int>, missing);
    QFETCH(QString, words);
    QString damage;
    const QStringList paths = load(bytes, &damage);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(paths.contains(picture(i)), !missing.contains(i));
    QVERIFY2(damage.contains(words), qPrintable(damage));
    QCOMPARE(damage.isEmpty(), words.isEmpty());
}

void tst_OldLayout::survivesEveryCut()
{
    const QByteArray whole = index(3);
    qsizetype most = 0;
    for (qsizetype size = 6; size <= whole.size(); ++size) {
        const QStringList paths = load(whole.first(size));
        QVERIFY(paths.size() >= most); // what is whole stays
        most = paths.size();
    }
    QCOMPARE(most, 3);
    for (qsizetype i = 6 * 8; i < whole.size() * 8; i += 5) {
        QByteArray damaged = whole;
        damaged[i / 8] = static_cast<char>(damaged[i / 8] ^ (1 << (i % 8)));
        QVERIFY(load(damaged).size() >= 2); // one entry at most is lost
    }
}

void tst_OldLayout::refusesWhatIsNoIndex_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut") << QByteArray("mbdb\5");
    QTest::newRow("another version") << QByteArray("mbdb\7\0", 6);
    QTest::newRow("database") << BackupFixture::database("CREATE TABLE t (a)");
}

void tst_OldLayout::refusesWhatIsNoIndex()
{
    QFETCH(QByteArray, bytes);
    BackupFixture fixture(Layout::Records);
    fixture.writer.addFile(kCamera, picture(1), "picture");
    QVERIFY(fixture.finish());
    QVERIFY(Files::write(fixture.root() + u"/Manifest.mbdb"_s, bytes));
    const auto opened = PhoneItems::Backup::open(fixture.root());
    QCOMPARE(opened.error().fault, Fault::Corrupt);
    QVERIFY(PhoneItems::words(opened.error().what).contains(u"Manifest.mbdb"_s));
}

QTEST_GUILESS_MAIN(tst_OldLayout)
#include "tst_OldLayout.moc"
