#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>

using namespace CliTest;
using namespace Qt::StringLiterals;

//! A disk that fills up half-way, for real: a small file system of its own.
class tst_FullDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void leavesWholeFilesOnly_data();
    void leavesWholeFilesOnly();
    void refusesToStartWithoutRoom();
    void countsTheRoomForJpegs();
    void saysWhenTheDiskTurnsReadOnly();
    void cleanup();

private:
    bool mountDisk(const QString &options);
    QString disk() const { return m_dir.filePath(u"disk"_s); }
    QString output() const { return m_dir.filePath(u"disk/out"_s); }
    QString backup() const { return m_dir.filePath(u"backup"_s); }

    QTemporaryDir m_dir;
    ExpectedFiles m_expected;
};

void tst_FullDisk::initTestCase()
{
    // Mounts of this process and its children only; they go with the last of them.
    if (::unshare(CLONE_NEWNS) != 0
        || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        QSKIP("mounting is not possible for this user");
    m_expected = writeUsualBackup(backup());
    QVERIFY(!m_expected.isEmpty());
    QVERIFY(QDir().mkpath(disk()));
}

bool tst_FullDisk::mountDisk(const QString &options)
{
    return ::mount("tmpfs",
                   QFile::encodeName(disk()).constData(),
                   "tmpfs",
                   0,
                   options.toLatin1().constData())
        == 0;
}

void tst_FullDisk::cleanup()
{
    ::umount(QFile::encodeName(disk()).constData());
}

void tst_FullDisk::leavesWholeFilesOnly_data()
{
    QTest::addColumn<QString>("options");
    // The files take 436 KB, in blocks of 4 KB.
    for (int kilobytes = 4; kilobytes < 430; kilobytes += kilobytes < 80 ? 8 : 44)
        QTest::addRow("%d KB", kilobytes) << u"size=%1k"_s.arg(kilobytes);
    for (int files = 2; files < 12; files += 3)
        QTest::addRow("%d files", files) << u"size=10m,nr_inodes=%1"_s.arg(files);
}

void tst_FullDisk::leavesWholeFilesOnly()
{
    QFETCH(QString, options);
    QVERIFY2(mountDisk(options), std::strerror(errno));

    const Result result = run({ u"--no-space-check"_s, u"--json"_s, backup(), output() });
    QCOMPARE(result.exitCode, 12);
    QVERIFY2(result.err.startsWith("Backup: "), result.err.constData());
    QVERIFY2(result.err.contains("Error: "), result.err.constData());
    QVERIFY2(result.err.contains(disk().toUtf8()), result.err.constData());
    QCOMPARE(result.json().value(u"status"_s).toString(), u"output"_s);

    ExpectedFiles found = filesBelow(output());
    const QByteArray report = found.take(u"export-report.csv"_s).content;
    QVERIFY2(report.isEmpty() || report.endsWith('\n'), report.constData());
    for (auto it = found.begin(); it != found.end(); ++it) {
        QVERIFY2(m_expected.contains(it.key()), qPrintable(it.key()));
        QVERIFY2(it->content == m_expected.value(it.key()).content, qPrintable(it.key()));
    }
    QCOMPARE(result.json().value(u"exported"_s).toInt(), static_cast<int>(found.size()));
    QVERIFY(found.size() < m_expected.size());
}

void tst_FullDisk::refusesToStartWithoutRoom()
{
    QVERIFY2(mountDisk(u"size=300k"_s), std::strerror(errno));
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 12);
    QVERIFY2(result.err.contains("are needed, 300.0 KB are available"), result.err.constData());
    QVERIFY(Files::tree(disk()).isEmpty());
}

void tst_FullDisk::countsTheRoomForJpegs()
{
    const QString photos = m_dir.filePath(u"photos"_s);
    Sample::BackupWriter writer(photos);
    writer.addFile(
        u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/IMG_1.HEIC"_s, noise(1, 200 * 1024));
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
    QVERIFY2(mountDisk(u"size=500k"_s), std::strerror(errno));
    const Result refused = run({ u"--convert-heic"_s, photos, output() });
    QCOMPARE(refused.exitCode, 12);
    QVERIFY2(refused.err.contains("800.0 KB are needed"), refused.err.constData());
    QVERIFY(Files::tree(disk()).isEmpty());
    QCOMPARE(run({ photos, output() }).exitCode, 0);
}

void tst_FullDisk::saysWhenTheDiskTurnsReadOnly()
{
    QVERIFY2(mountDisk(u"size=10m"_s), std::strerror(errno));
    QVERIFY(QDir().mkpath(output()));
    QVERIFY2(::mount(nullptr,
                     QFile::encodeName(disk()).constData(),
                     nullptr,
                     MS_REMOUNT | MS_RDONLY,
                     nullptr)
                 == 0,
             std::strerror(errno));
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 12);
    QVERIFY2(result.err.contains("cannot be written"), result.err.constData());
}

QTEST_GUILESS_MAIN(tst_FullDisk)
#include "tst_FullDisk.moc"
