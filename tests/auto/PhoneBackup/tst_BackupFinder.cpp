#include "BackupFixture.h"
#include "PhoneBackup/folder/BackupFinder.h"
#include "PhoneItems/words/Words.h"

#include <QtTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using PhoneBackup::BackupInfo;
using PhoneBackup::Fault;
using PhoneBackup::findBackups;

namespace {

bool makeBackup(const QString &root, const QString &name, const QDateTime &date)
{
    Sample::BackupWriter writer(root);
    writer.setInfo(u"Display Name"_s, name);
    writer.setInfo(u"Last Backup Date"_s, date);
    writer.addFile(u"HomeDomain"_s, u"a"_s, QByteArray(1000, 'a'));
    return writer.finish();
}

QDateTime year(int number)
{
    return QDateTime(QDate(number, 5, 1), QTime(12, 0), Qt::UTC);
}

} // namespace

class tst_BackupFinder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsBackupsNewestFirst_data();
    void findsBackupsNewestFirst();
    void saysWhatWasLookedFor_data();
    void saysWhatWasLookedFor();
    void readsInfoFromWhereverItIs_data();
    void readsInfoFromWhereverItIs();
    void countsBytes();
};

void tst_BackupFinder::findsBackupsNewestFirst_data()
{
    QTest::addColumn<QString>("inside"); // where the backups lie, below the folder that is named
    QTest::newRow("direct children") << QString();
    QTest::newRow("in Backup") << u"Backup/"_s;
    QTest::newRow("in MobileSync/Backup") << u"MobileSync/Backup/"_s;
}

void tst_BackupFinder::findsBackupsNewestFirst()
{
    QFETCH(QString, inside);
    QTemporaryDir dir;
    const QString place = dir.filePath(inside);
    QVERIFY(makeBackup(place + u"/old"_s, u"Old"_s, year(2019)));
    QVERIFY(makeBackup(place + u"/undated"_s, u"Undated"_s, QDateTime()));
    QVERIFY(makeBackup(place + u"/new"_s, u"New"_s, year(2024)));
    QVERIFY(Files::write(place + u"/notes.txt"_s, "no backup"));
    QVERIFY(QDir(place).mkdir(u"empty"_s));

    const auto found = findBackups(dir.path());
    QVERIFY(found);
    QStringList names;
    for (const BackupInfo &info : found.value())
        names.append(info.displayName);
    // A backup always has a date in its other lists; that of the sample is between the two.
    QCOMPARE(names.size(), 3);
    QVERIFY(names.indexOf(u"New"_s) < names.indexOf(u"Old"_s));
    QCOMPARE(found.value().constFirst().path.isEmpty(), false);

    const auto one = findBackups(place + u"/old"_s);
    QCOMPARE(one.value().size(), 1);
    QCOMPARE(one.value().constFirst().date, year(2019));
}

void tst_BackupFinder::saysWhatWasLookedFor_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QString>("words");

    QTest::newRow("missing") << u"nowhere"_s << Fault::NotFound << u"nowhere"_s;
    QTest::newRow("empty folder") << u"empty"_s << Fault::NotABackup << u"Manifest.db"_s;
    QTest::newRow("file") << u"file"_s << Fault::NotABackup << u"is a file"_s;
    QTest::newRow("not readable") << u"locked"_s << Fault::Io << u"ermission"_s;
}

void tst_BackupFinder::saysWhatWasLookedFor()
{
    QFETCH(QString, name);
    QFETCH(Fault, fault);
    QFETCH(QString, words);

    QTemporaryDir dir;
    QDir(dir.path()).mkdir(u"empty"_s);
    QVERIFY(Files::write(dir.filePath(u"file"_s), "x"));
    QDir(dir.path()).mkdir(u"locked"_s);
    QVERIFY(QFile::setPermissions(dir.filePath(u"locked"_s), {}));
    QVERIFY(QFile::setPermissions(dir.path(), QFile::Permissions(0x7777)));

    // The administrator may read everything: become somebody else for this.
    const bool lowered = ::geteuid() == 0 && ::seteuid(65534) == 0;
    const auto found = findBackups(dir.filePath(name));
    if (lowered)
        QCOMPARE(::seteuid(0), 0);
    QVERIFY(!found);
    QCOMPARE(found.error().fault, fault);
    QVERIFY2(PhoneItems::words(found.error().what).contains(words),
             qPrintable(PhoneItems::words(found.error().what)));
    QFile::setPermissions(dir.filePath(u"locked"_s), QFile::Permissions(0x7777));
}

void tst_BackupFinder::readsInfoFromWhereverItIs_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<QVariantMap>("manifest");
    QTest::addColumn<QVariantMap>("status");
    QTest::addColumn<QString>("expected"); // display name, device, product, version, date, state

    const QVariantMap lockdown { { u"DeviceName"_s, u"Pocket"_s },
                                 { u"ProductType"_s, u"iPhone12,1"_s },
                                 { u"ProductVersion"_s, u"14.3"_s } };
    QTest::newRow("all from Info.plist")
        << QVariantMap { { u"Display Name"_s, u"Ann's phone"_s },
                         { u"Device Name"_s, u"Ann"_s },
                         { u"Product Name"_s, u"iPhone 11"_s },
                         { u"Product Version"_s, u"17.1"_s },
                         { u"Last Backup Date"_s, year(2023) } }
        << QVariantMap { { u"Lockdown"_s, lockdown } } << QVariantMap()
        << u"Ann's phone;Ann;iPhone 11;17.1;2023;finished"_s;
    QTest::newRow("from Lockdown and Status.plist")
        << QVariantMap() << QVariantMap { { u"Lockdown"_s, lockdown } }
        << QVariantMap { { u"Date"_s, year(2022) }, { u"SnapshotState"_s, u"finished"_s } }
        << u"Pocket;Pocket;iPhone12,1;14.3;2022;finished"_s;
    QTest::newRow("nothing known") << QVariantMap() << QVariantMap { { u"Lockdown"_s, u"odd"_s } }
                                   << QVariantMap() << u"folder;;;;;finished"_s;
    QTest::newRow("values of the wrong type")
        << QVariantMap { { u"Display Name"_s, 5 },
                         { u"Device Name"_s, QVariantList { u"x"_s } },
                         { u"Last Backup Date"_s, u"today"_s } }
        << QVariantMap() << QVariantMap { { u"SnapshotState"_s, 7 } } << u"folder;;;;;finished"_s;
    QTest::newRow("interrupted") << QVariantMap { { u"Device Name"_s, u"  "_s } } << QVariantMap()
                                 << QVariantMap { { u"SnapshotState"_s, u"uploading"_s } }
                                 << u"folder;;;;;interrupted"_s;
}

void tst_BackupFinder::readsInfoFromWhereverItIs()
{
    QFETCH(QVariantMap, info);
    QFETCH(QVariantMap, manifest);
    QFETCH(QVariantMap, status);
    QFETCH(QString, expected);

    QTemporaryDir dir;
    const QString root = dir.filePath(u"folder"_s);
    QVERIFY(Files::write(root + u"/Manifest.db"_s, "x")); // the index is not needed for this
    QVERIFY(Files::write(root + u"/Info.plist"_s, Sample::xmlPropertyList(info)));
    QVERIFY(Files::write(root + u"/Manifest.plist"_s, Sample::binaryPropertyList(manifest)));
    QVERIFY(Files::write(root + u"/Status.plist"_s, Sample::binaryPropertyList(status)));
    const auto found = findBackups(root);
    QVERIFY(found);
    const BackupInfo &backup = found.value().constFirst();
    QCOMPARE(QStringList({ backup.displayName,
                           backup.deviceName,
                           backup.productName,
                           backup.productVersion,
                           backup.date.toString(u"yyyy"_s),
                           backup.finished ? u"finished"_s : u"interrupted"_s })
                 .join(u';'),
             expected);
}

void tst_BackupFinder::countsBytes()
{
    QTemporaryDir dir;
    QVERIFY(Files::write(dir.filePath(u"a/b/c"_s), QByteArray(1234, 'c')));
    QVERIFY(Files::write(dir.filePath(u"d"_s), QByteArray(766, 'd')));
    QVERIFY(QFile::link(dir.filePath(u"d"_s), dir.filePath(u"link"_s)));
    QVERIFY(QFile::link(dir.path(), dir.filePath(u"a/circle"_s)));
    QCOMPARE(PhoneBackup::backupSizeBytes(dir.path()), 2000);
    QCOMPARE(PhoneBackup::backupSizeBytes(dir.filePath(u"nowhere"_s)), 0);
}

QTEST_GUILESS_MAIN(tst_BackupFinder)
#include "tst_BackupFinder.moc"
