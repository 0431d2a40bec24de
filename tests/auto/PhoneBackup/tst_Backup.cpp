#include "BackupFixture.h"
#include "PhoneBackup/folder/BackupFinder.h"
#include "PhoneItems/words/Words.h"

#include <QCryptographicHash>
#include <QScopeGuard>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using PhoneBackup::Fault;
using PhoneItems::Backup;
using Sample::BackupWriter;

namespace {

const QString kCamera = u"CameraRollDomain"_s;

QString picture(int number)
{
    return u"Media/DCIM/100APPLE/IMG_%1.JPG"_s.arg(number, 4, 10, QLatin1Char('0'));
}

void addPictures(BackupWriter &writer, int count)
{
    for (int i = 1; i <= count; ++i)
        writer.addFile(kCamera, picture(i), QByteArray::number(i));
}

// Everything that can be seen of \a entries from outside; what changes when they are written to,
// and the access times.
QStringList footprint(const QString &root, const QStringList &entries, bool accessTimes)
{
    QStringList lines;
    for (const QString &entry : entries) {
        struct stat status
        {
        };
        ::lstat(QFile::encodeName(root + u'/' + entry).constData(), &status);
        lines.append(u"%1 %2 %3 %4.%5 %6.%7 %8"_s.arg(entry)
                         .arg(status.st_mode)
                         .arg(status.st_size)
                         .arg(status.st_mtim.tv_sec)
                         .arg(status.st_mtim.tv_nsec)
                         .arg(status.st_ctim.tv_sec)
                         .arg(status.st_ctim.tv_nsec)
                         .arg(accessTimes ? status.st_atim.tv_sec : 0));
    }
    return lines;
}

QByteArray contentHash(const QString &root)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString &entry : Files::tree(root))
        hash.addData(Files::read(root + u'/' + entry));
    return hash.result();
}

// Access times older than the last change: only then does a read change them at all.
void ageAccessTimes(const QString &root, const QStringList &entries)
{
    for (const QString &entry : entries) {
        const timespec times[2] = { { 1'600'000'000, 0 }, { 1'700'000'000, 0 } };
        ::utimensat(AT_FDCWD, QFile::encodeName(root + u'/' + entry).constData(), times, 0);
    }
}

} // namespace

class tst_Backup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();
    void refusesAnIndexThatMayNotBeRead();
    void warnsAndGoesOn_data();
    void warnsAndGoesOn();
    void findsContents_data();
    void findsContents();
    void readsRowsOfTheIndexThatAreOnlyInItsLog();
    void keepsWhatIsLeftOfATruncatedIndex();
    void keepsRowsBehindADamagedPage();
    void survivesAnIndexOfOddValues();
    void changesNothing_data();
    void changesNothing();
    void stopsWhenAsked();
    void namesOwnerAndTypes();
};

void tst_Backup::refusesWhatItCannotRead_data()
{
    QTest::addColumn<QStringList>("remove");
    QTest::addColumn<QVariantMap>("write"); // file name → content
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QString>("words");

    const QStringList none;
    const auto file = [](const QString &name, const QByteArray &content) {
        return QVariantMap { { name, content } };
    };
    const QByteArray encrypted =
        Sample::binaryPropertyList(QVariantMap { { u"IsEncrypted"_s, true } });
    QTest::newRow("no index") << QStringList { u"Manifest.db"_s } << QVariantMap() << Fault::Corrupt
                              << u"“Manifest.db” is missing"_s;
    QTest::newRow("nothing of a backup")
        << QStringList { u"Manifest.db"_s, u"Manifest.plist"_s, u"Info.plist"_s, u"Status.plist"_s }
        << QVariantMap() << Fault::NotABackup << u"both “Manifest.db” and “Manifest.plist”"_s;
    QTest::newRow("older index, damaged")
        << QStringList { u"Manifest.db"_s } << file(u"Manifest.mbdb"_s, "mbdx\5") << Fault::Corrupt
        << u"Manifest.mbdb"_s;
    QTest::newRow("oldest index") << QStringList { u"Manifest.db"_s }
                                  << file(u"Manifest.mbdx"_s, "mbdx") << Fault::NotSupported
                                  << u"too old"_s;
    QTest::newRow("no index yet") << QStringList { u"Manifest.db"_s } << file(u"0123.mddata"_s, "x")
                                  << Fault::NotSupported << u"too old"_s;
    QTest::newRow("encrypted") << none << file(u"Manifest.plist"_s, encrypted) << Fault::Encrypted
                               << u"password"_s;
    QTest::newRow("index empty") << none << file(u"Manifest.db"_s, "") << Fault::Corrupt
                                 << u"damaged"_s;
    QTest::newRow("index garbage") << none << file(u"Manifest.db"_s, QByteArray(9000, 'g'))
                                   << Fault::Corrupt << u"Copy the backup again"_s;
    QTest::newRow("index garbage, encryption not known")
        << QStringList { u"Manifest.plist"_s } << file(u"Manifest.db"_s, QByteArray(9000, 'g'))
        << Fault::Corrupt << u"Or it is encrypted"_s;
    QTest::newRow("index of another kind")
        << none
        << file(u"Manifest.db"_s, BackupFixture::database("CREATE TABLE Files (fileID TEXT)"))
        << Fault::Corrupt << u"Manifest.db"_s;
}

void tst_Backup::refusesWhatItCannotRead()
{
    QFETCH(QStringList, remove);
    QFETCH(QVariantMap, write);
    QFETCH(Fault, fault);
    QFETCH(QString, words);

    BackupFixture fixture;
    addPictures(fixture.writer, 1);
    QVERIFY(fixture.finish());
    for (const QString &name : remove)
        QVERIFY(QFile::remove(fixture.root() + u'/' + name));
    for (auto it = write.cbegin(); it != write.cend(); ++it)
        QVERIFY(Files::write(fixture.root() + u'/' + it.key(), it->toByteArray()));

    const auto opened = Backup::open(fixture.root());
    QVERIFY(!opened);
    QCOMPARE(opened.error().fault, fault);
    QVERIFY2(PhoneItems::words(opened.error().what).contains(words),
             qPrintable(PhoneItems::words(opened.error().what)));
    QVERIFY(opened.error().path.startsWith(fixture.root()));
}

void tst_Backup::refusesAnIndexThatMayNotBeRead()
{
    BackupFixture fixture;
    addPictures(fixture.writer, 1);
    QVERIFY(fixture.finish());
    const QString index = fixture.root() + u"/Manifest.db"_s;
    QFile::setPermissions(QFileInfo(fixture.root()).path(), QFile::Permissions(0x7777));
    QVERIFY(QFile::setPermissions(index, {}));
    const bool lowered = ::geteuid() == 0 && ::seteuid(65534) == 0;
    const auto opened = Backup::open(fixture.root());
    if (lowered)
        QCOMPARE(::seteuid(0), 0);
    QCOMPARE(opened.error().fault, Fault::Io);
    QCOMPARE(opened.error().path, index);

    QFile::setPermissions(index, QFile::ReadOwner);
    QVERIFY(QFile::rename(index, index + u".real"_s) && QFile::link(index + u".real"_s, index));
    QVERIFY(PhoneItems::words(Backup::open(fixture.root()).error().what)
                .contains(u"is a symbolic link"_s));

    QVERIFY(QFile::remove(index));
    QVERIFY(QDir().mkdir(index));
    QCOMPARE(Backup::open(fixture.root()).error().fault, Fault::Io);
}

void tst_Backup::warnsAndGoesOn_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<QByteArray>("content"); // null: the file is removed
    QTest::addColumn<bool>("finished");

    for (const char *name : { "Info.plist", "Manifest.plist", "Status.plist" }) {
        const auto row = [name](const char *what) { return QByteArray(name) + ", " + what; };
        const QString list = QString::fromLatin1(name);
        QTest::newRow(row("missing")) << list << QByteArray() << true;
        QTest::newRow(row("empty")) << list << QByteArray("") << true;
        QTest::newRow(row("an array"))
            << list << Sample::binaryPropertyList(QVariantList { 1, 2 }) << true;
        QTest::newRow(row("cut off"))
            << list << Sample::binaryPropertyList(QVariantMap { { u"a"_s, 1 } }).chopped(9) << true;
    }
    QTest::newRow("interrupted") << u"Status.plist"_s
                                 << Sample::xmlPropertyList(
                                        QVariantMap { { u"SnapshotState"_s, u"uploading"_s } })
                                 << false;
}

void tst_Backup::warnsAndGoesOn()
{
    QFETCH(QString, list);
    QFETCH(QByteArray, content);
    QFETCH(bool, finished);

    BackupFixture fixture;
    addPictures(fixture.writer, 2);
    QVERIFY(fixture.finish());
    const QString path = fixture.root() + u'/' + list;
    QVERIFY(content.isNull() ? QFile::remove(path) : Files::write(path, content));
    Backup *backup = fixture.open();
    QVERIFY(backup);
    QCOMPARE(fixture.problems(), QStringList(u"-1 "_s + list));
    QCOMPARE(backup->info().finished, finished);
    QCOMPARE(fixture.list(0).size(), 2);
}

void tst_Backup::findsContents_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("path");

    QTest::newRow("two levels") << u"folder"_s << qint64(5) << true;
    QTest::newRow("flat") << u"flat"_s << qint64(5) << true;
    QTest::newRow("both: the folder goes first") << u"both"_s << qint64(5) << true;
    QTest::newRow("a folder in its place, but flat") << u"folder+flat"_s << qint64(5) << true;
    QTest::newRow("missing") << u"missing"_s << qint64(0) << true;
    QTest::newRow("a folder in its place") << u"directory"_s << qint64(0) << true;
    QTest::newRow("a link in its place") << u"link"_s << qint64(0) << false;
    QTest::newRow("a link in its folder's place") << u"linked folder"_s << qint64(0) << false;
}

void tst_Backup::findsContents()
{
    QFETCH(QString, where);
    QFETCH(qint64, size);
    QFETCH(bool, path);

    BackupFixture fixture;
    fixture.writer.addFile(kCamera, picture(1), "right");
    QVERIFY(fixture.finish());
    const QString content = fixture.contentPath(kCamera, picture(1));
    const QString flat = fixture.root() + u'/' + QFileInfo(content).fileName();
    if (where == u"both"_s)
        QVERIFY(Files::write(flat, "wrong one"));
    else if (where.endsWith(u"flat"_s))
        QVERIFY(QFile::rename(content, flat));
    else if (where == u"linked folder"_s)
        QVERIFY(QFile::rename(QFileInfo(content).path(), fixture.root() + u"/elsewhere"_s)
                && QFile::link(fixture.root() + u"/elsewhere"_s, QFileInfo(content).path()));
    else if (where != u"folder"_s)
        QVERIFY(QFile::remove(content));
    if (where == u"folder+flat"_s || where == u"directory"_s)
        QVERIFY(QDir().mkdir(content));
    if (where == u"link"_s)
        QVERIFY(QFile::link(u"/etc/passwd"_s, content));

    Backup *backup = fixture.open();
    QVERIFY(backup);
    const QList<BkAbstractItem *> items = backup->getBkData(0)->recoverFileList();
    QCOMPARE(items.size(), 1); // an item all the same: the export says that its file is missing
    const auto *item = dynamic_cast<const BkFileItem *>(items.constFirst());
    QCOMPARE(item->sizeBytes(), size);
    QCOMPARE(!item->filePath().isEmpty(), path);
    if (size > 0)
        QCOMPARE(Files::read(item->filePath()), QByteArray("right"));
}

void tst_Backup::readsRowsOfTheIndexThatAreOnlyInItsLog()
{
    BackupFixture half;
    addPictures(half.writer, 1);
    QVERIFY(half.finish());
    BackupFixture whole;
    addPictures(whole.writer, 1);
    // Enough for new pages, so that the log has to be applied as a whole.
    for (int i = 2; i <= 40; ++i)
        whole.writer.addFile(kCamera, picture(i), "x");
    QVERIFY(whole.finish());

    const QByteArray before = Files::read(half.root() + u"/Manifest.db"_s);
    const QByteArray after = Files::read(whole.root() + u"/Manifest.db"_s);
    QVERIFY(
        Files::write(half.root() + u"/Manifest.db-wal"_s, Sample::writeAheadLog(before, after)));
    QCOMPARE(half.list(0).size(), 40);
    QVERIFY(half.problems().isEmpty());

    // An empty log is as good as none.
    QVERIFY(Files::write(half.root() + u"/Manifest.db-wal"_s, ""));
    QVERIFY(half.open());
    QCOMPARE(half.list(0).size(), 1);
}

void tst_Backup::keepsWhatIsLeftOfATruncatedIndex()
{
    constexpr int kPictures = 300;
    constexpr qsizetype kPage = 4096;
    BackupFixture fixture;
    addPictures(fixture.writer, kPictures);
    QVERIFY(fixture.finish());
    const QString path = fixture.root() + u"/Manifest.db"_s;
    const QByteArray whole = Files::read(path);

    int most = 0;
    int opened = 0;
    for (qsizetype size = 0; size < whole.size(); size += kPage) {
        QVERIFY(Files::write(path, whole.first(size)));
        const auto backup = Backup::open(fixture.root());
        if (!backup) {
            QCOMPARE(backup.error().fault, Fault::Corrupt);
            continue;
        }
        ++opened;
        const int found = backup.value()->getBkData(0)->recoverCount();
        most = std::max(most, found);
        const QList<PhoneBackup::Problem> problems = backup.value()->problems();
        QCOMPARE(problems.size(), 1); // never silently
        QCOMPARE(problems.constFirst().loss, true);
        QCOMPARE(problems.constFirst().source, u"Manifest.db"_s);
    }
    QVERIFY(opened > 5);
    QVERIFY(most > kPictures / 2);
}

void tst_Backup::keepsRowsBehindADamagedPage()
{
    constexpr int kPictures = 400;
    constexpr qsizetype kPage = 4096;
    BackupFixture fixture;
    addPictures(fixture.writer, kPictures);
    QVERIFY(fixture.finish());
    const QString path = fixture.root() + u"/Manifest.db"_s;
    const QByteArray whole = Files::read(path);

    int damaged = 0;
    for (qsizetype page = 2; (page + 1) * kPage <= whole.size(); ++page) {
        QByteArray content = whole;
        content.replace(page * kPage, kPage, QByteArray(kPage, '\x33'));
        QVERIFY(Files::write(path, content));
        const auto backup = Backup::open(fixture.root());
        if (!backup)
            continue;
        const int found = backup.value()->getBkData(0)->recoverCount();
        if (found == kPictures)
            continue; // a page of one of the look-up tables, which are not used
        ++damaged;
        QVERIFY2(found > kPictures * 8 / 10, qPrintable(QString::number(found)));
        QCOMPARE(backup.value()->problems().size(), 1);
    }
    QVERIFY(damaged > 5);
}

void tst_Backup::survivesAnIndexOfOddValues()
{
    BackupFixture fixture;
    BackupWriter &writer = fixture.writer;
    const QString id = BackupWriter::fileId(kCamera, picture(1));
    writer.addFile(kCamera, picture(1), "one");
    writer.addIndexRow(u"../../../../etc/passwd"_s, kCamera, picture(2), 1, "no record");
    writer.addIndexRow(QString(40, u'b'), kCamera, u"Media/DCIM/100APPLE/../x.JPG"_s, 1, {});
    writer.addIndexRow(QString(40, u'c'), kCamera, u"/Media/DCIM/100APPLE/abs.JPG"_s, 1, {});
    writer.addIndexRow(QString(40, u'd'), kCamera, picture(4), 4, {});
    writer.addIndexRow(QString(40, u'e'), kCamera, picture(5), 16, {});
    writer.addIndexRow(QString(40, u'f'), kCamera, u"Media/DCIM/100APPLE/"_s, 1, {});
    QCOMPARE(fixture.list(0),
             QStringList({ u"100APPLE/_"_s,
                           u"100APPLE/IMG_0001.JPG"_s,
                           u"100APPLE/IMG_0002.JPG"_s,
                           u"_/x.JPG"_s }));
    QCOMPARE(fixture.problems(),
             QStringList({ u"-1 Manifest.db: fileID"_s, u"-1 Manifest.db: flags"_s }));
    for (const BkAbstractItem *item : fixture.open()->getBkData(0)->recoverFileList()) {
        const auto *file = dynamic_cast<const BkFileItem *>(item);
        QVERIFY(file->filePath().startsWith(fixture.root() + u'/'));
        QVERIFY(!file->filePath().contains(u".."_s));
        QCOMPARE(file->fileDate().isValid(), file->filePath().endsWith(id));
    }
}

void tst_Backup::changesNothing_data()
{
    QTest::addColumn<bool>("own");
    QTest::newRow("one's own backup") << true;
    // Others may not ask for access times to stay, nor write anything.
    QTest::newRow("somebody else's") << false;
}

void tst_Backup::changesNothing()
{
    QFETCH(bool, own);
    if (!own && ::geteuid() != 0)
        QSKIP("Only the administrator can become somebody else.");
    BackupFixture fixture;
    BackupWriter &writer = fixture.writer;
    addPictures(writer, 3);
    // Databases with and without a log, and one that is damaged.
    Sample::Database live({}, "CREATE TABLE voicemail (ROWID INTEGER PRIMARY KEY, date INTEGER)");
    const QByteArray before = live.image();
    live.execute("INSERT INTO voicemail VALUES (7, 1650000000)");
    writer.addFile(u"HomeDomain"_s, u"Library/Voicemail/voicemail.db"_s, before);
    writer.addFile(u"HomeDomain"_s,
                   u"Library/Voicemail/voicemail.db-wal"_s,
                   Sample::writeAheadLog(before, live.image()));
    writer.addFile(u"HomeDomain"_s, u"Library/Voicemail/7.amr"_s, "#!AMR");
    writer.addFile(kCamera,
                   u"Media/PhotoData/Photos.sqlite"_s,
                   BackupFixture::database("CREATE TABLE ZASSET (ZDIRECTORY, ZFILENAME)"));
    writer.addFile(u"MediaDomain"_s,
                   u"Media/Recordings/CloudRecordings.db"_s,
                   BackupFixture::database("CREATE TABLE ZCLOUDRECORDING (ZPATH)").first(4096));
    writer.addFile(u"BooksDomain"_s, u"A.epub/mimetype"_s, "application/epub+zip");
    QVERIFY(fixture.finish());

    const QByteArray hash = contentHash(fixture.root());
    const QStringList tree = Files::tree(fixture.root());
    const QStringList entries = tree + QStringList { u"."_s, u".."_s };
    const QString parent = QFileInfo(fixture.root()).path();
    QFile::setPermissions(parent, QFile::Permissions(0x7755));
    ageAccessTimes(fixture.root(), entries);
    const QStringList seen = footprint(fixture.root(), entries, own);
    if (!own)
        QCOMPARE(::seteuid(65534), 0);
    const auto administrator = qScopeGuard([own] {
        if (!own && ::seteuid(0) != 0)
            qFatal("cannot become the administrator again");
    });

    QCOMPARE(PhoneBackup::findBackups(parent).value().size(), 1);
    QVERIFY(PhoneBackup::backupSizeBytes(fixture.root()) > 0);
    int items = 0;
    {
        const auto opened = Backup::open(fixture.root());
        QVERIFY(opened);
        for (const int code : Backup::dataTypes()) {
            const BkData *data = opened.value()->getBkData(code);
            for (int i = 0; i < data->count(1); ++i) {
                const auto *file = dynamic_cast<const BkFileItem *>(data->at(i, true));
                if (!file)
                    continue;
                QVERIFY(QFileInfo::exists(file->filePath()));
                QVERIFY(file->sizeBytes() > 0);
                file->fileDate();
                items += 1;
            }
        }
        const QString voicemail = opened.value()->getBkData(16)->at(0, true)->value(0);
        QVERIFY(voicemail.startsWith(u"2022-04-15"_s)); // from the row in the log
    }
    QCOMPARE(items, 5);
    QCOMPARE(footprint(fixture.root(), entries, own), seen);
    QCOMPARE(Files::tree(fixture.root()), tree);
    QCOMPARE(contentHash(fixture.root()), hash);
}

void tst_Backup::stopsWhenAsked()
{
    BackupFixture fixture;
    addPictures(fixture.writer, 10);
    QVERIFY(fixture.finish());
    const auto opened = Backup::open(fixture.root(), [] { return false; });
    QVERIFY(!opened);
    QCOMPARE(opened.error().fault, Fault::Cancelled);
}

void tst_Backup::namesOwnerAndTypes()
{
    BackupFixture fixture;
    fixture.writer.setInfo(u"Display Name"_s, u"../Ann: \"phone\"\n"_s + QString(200, u'\u00E4'));
    fixture.writer.setManifest(u"Lockdown"_s, QVariant());
    addPictures(fixture.writer, 1);
    Backup *backup = fixture.open();
    const QString owner = backup->backupProperty(0);
    QVERIFY2(owner.startsWith(u"_Ann_ _phone_"_s), qPrintable(owner));
    QVERIFY(owner.size() <= 100 && owner.size() > 90);
    QVERIFY(backup->backupProperty(1).isEmpty());
    QCOMPARE(backup->dataTypeName(10), u"App Documents"_s);
    QCOMPARE(backup->dataTypeName(18), u"Note Attachments"_s);
    QVERIFY(backup->dataTypeName(19).isEmpty());
    QVERIFY(backup->dataTypeName(-1).isEmpty());
    QVERIFY(!backup->getBkData(19));
    for (const int code : Backup::dataTypes()) {
        QVERIFY(backup->getBkData(code));
        QCOMPARE(backup->getBkData(code), backup->getBkData(code));
        QCOMPARE(backup->getBkData(code)->dataType(), code);
    }
    // The three ways of walking a set agree.
    const BkData *photos = backup->getBkData(0);
    QCOMPARE(photos->count(1), 1);
    QCOMPARE(photos->recoverList(), QList<int>(1, 0));
    QCOMPARE(photos->at(0, true), photos->recoverFileList().constFirst());
    QVERIFY(photos->recover(photos->at(0, true)));
    QVERIFY(!backup->getBkData(1)->recover(photos->at(0, true)));
    QVERIFY(!photos->recover(nullptr));
    QVERIFY(!photos->at(1, true));
    QVERIFY(!photos->at(-1, true));
}

QTEST_GUILESS_MAIN(tst_Backup)
#include "tst_Backup.moc"
