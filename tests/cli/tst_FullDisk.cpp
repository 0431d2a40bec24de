#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/Database.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

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
    void namesTheTemporaryFolder_data();
    void namesTheTemporaryFolder();
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
    qunsetenv("TMPDIR");
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

void tst_FullDisk::namesTheTemporaryFolder_data()
{
    QTest::addColumn<bool>("encrypted");
    QTest::addColumn<QString>("disk"); // empty: a folder that is not there
    QTest::addColumn<int>("longestFile");
    QTest::addColumn<int>("exitCode");
    for (const bool encrypted : { false, true }) {
        const char *kind = encrypted ? "encrypted" : "plain";
        const auto row = [&](const char *name, const QString &options, int longestFile, int code) {
            QTest::addRow("%s, %s", kind, name) << encrypted << options << longestFile << code;
        };
        row("no folder", {}, 0, 12);
        row("no room", u"size=100k"_s, 0, 12);
        row("no files", u"size=10m,nr_inodes=2"_s, 0, 12);
        row("the copy fails", u"size=10m"_s, 8000, 12);
        row("the index of the log fails", u"size=10m"_s, 25000, 12); // it takes 32 KB
        row("room enough", u"size=10m"_s, 0, 0);
    }
}

void tst_FullDisk::namesTheTemporaryFolder()
{
    QFETCH(bool, encrypted);
    QFETCH(QString, disk);
    QFETCH(int, longestFile);
    QFETCH(int, exitCode);
    const QTemporaryDir dir;
    Sample::Database memos({},
                           "CREATE TABLE ZCLOUDRECORDING (Z_PK INTEGER PRIMARY KEY, ZPATH VARCHAR, "
                           "ZENCRYPTEDTITLE VARCHAR);"
                           "INSERT INTO ZCLOUDRECORDING VALUES (1, 'a.m4a', 'old')");
    const QByteArray before = memos.image();
    memos.execute("UPDATE ZCLOUDRECORDING SET ZENCRYPTEDTITLE = 'new'");
    Sample::BackupWriter writer(dir.filePath(u"backup"_s));
    if (encrypted)
        writer.setEncryption({ u"secret"_s });
    const QString domain = u"MediaDomain"_s;
    const QString path = u"Media/Recordings/CloudRecordings.db"_s;
    writer.addFile(domain, u"Media/Recordings/a.m4a"_s, "sound");
    writer.addFile(domain, path, before);
    writer.addFile(domain, path + u"-wal"_s, Sample::writeAheadLog(before, memos.image()));
    QVERIFY(writer.finish());
    const QString place = disk.isEmpty() ? dir.filePath(u"nowhere"_s) : this->disk();
    QVERIFY2(disk.isEmpty() || mountDisk(disk), std::strerror(errno));
    qputenv("TMPDIR", QFile::encodeName(place));
    qputenv("DATAEXPORT_PASSWORD", "secret");
    const auto limit = [longestFile] {
        const rlimit size { rlim_t(longestFile), rlim_t(longestFile) };
        std::signal(SIGXFSZ, SIG_IGN);
        if (longestFile > 0)
            ::setrlimit(RLIMIT_FSIZE, &size);
    };

    const QString output = dir.filePath(u"out"_s);
    const Result result =
        run({ u"--only"_s, u"voice-memos"_s, dir.filePath(u"backup"_s), output }, limit);
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(QFileInfo::exists(output + u"/Voice Memos/new.m4a"_s), exitCode == 0);
    QVERIFY2(exitCode == 0 || result.err.contains("TMPDIR"), result.err.constData());
    QVERIFY2(exitCode == 0 || result.err.contains(place.toUtf8()), result.err.constData());
    QVERIFY2(!result.err.contains("damaged"), result.err.constData());
}

QTEST_GUILESS_MAIN(tst_FullDisk)
#include "tst_FullDisk.moc"
