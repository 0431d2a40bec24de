#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/CallSample.h"
#include "sample/ContactSample.h"
#include "sample/Database.h"
#include "sample/MessageSample.h"
#include "sample/NoteSample.h"
#include "sample/SafariSample.h"
#include "sample/WhatsappSample.h"
#include "support/Files.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

using namespace CliTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int kBlock = 4096;

// Those of \a files that lie below \a folder.
ExpectedFiles below(const ExpectedFiles &files, const QString &folder)
{
    ExpectedFiles found = files;
    found.removeIf([&folder](const auto &file) { return !file.key().startsWith(folder + u'/'); });
    return found;
}

} // namespace

//! A disk that fills up half-way, for real: a small file system of its own.
class tst_FullDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void leavesWholeFilesOnly_data();
    void leavesWholeFilesOnly();
    void leavesWholeTextsOnly_data();
    void leavesWholeTextsOnly();
    void tellsThatTheArchiveIsNotWhole_data();
    void tellsThatTheArchiveIsNotWhole();
    void stopsAtTheFirstWriteThatFails_data();
    void stopsAtTheFirstWriteThatFails();
    void refusesToStartWithoutRoom();
    void countsTheRoomForJpegs();
    void saysWhenTheDiskTurnsReadOnly();
    void namesTheTemporaryFolder_data();
    void namesTheTemporaryFolder();
    void cleanup();

private:
    void writeTexts();
    void checkTexts(const Result &result, bool isOfOneFile);
    bool mountDisk(const QString &options);
    QString disk() const { return m_dir.filePath(u"disk"_s); }
    QString output() const { return m_dir.filePath(u"disk/out"_s); }
    QString backup() const { return m_dir.filePath(u"backup"_s); }
    QString texts() const { return m_dir.filePath(u"texts"_s); }

    QTemporaryDir m_dir;
    ExpectedFiles m_expected;
    ExpectedFiles m_expectedTexts;
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
    writeTexts();
}

void tst_FullDisk::writeTexts()
{
    Sample::BackupWriter writer(texts());
    const Sample::Options options;
    Sample::addMessages(writer, options);
    Sample::addContacts(writer, options);
    Sample::addWhatsapp(writer, options);
    Sample::addNotes(writer, options);
    Sample::addCalls(writer, options);
    Sample::addBrowserData(writer, options);
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
    const QString whole = m_dir.filePath(u"whole"_s);
    run({ texts(), whole });
    m_expectedTexts = filesBelow(whole);
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

void tst_FullDisk::leavesWholeTextsOnly_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("blocks"); // 0: the disk is large, but not for the longest file
    const QList<std::pair<QString, QString>> types {
        { u"messages"_s, u"Messages"_s },  { u"contacts"_s, u"Contacts"_s },
        { u"whatsapp"_s, u"WhatsApp"_s },  { u"notes"_s, u"Notes"_s },
        { u"calls"_s, u"Call History"_s }, { u"safari"_s, u"Safari"_s }
    };
    for (const auto &[type, folder] : types) {
        int needed = 0;
        for (const ExpectedFile &file : below(m_expectedTexts, folder))
            needed += int((file.content.size() + kBlock - 1) / kBlock);
        QVERIFY(needed > 1);
        for (const int blocks : QSet<int> { 0, 1, 2, needed / 2, needed - 1 })
            QTest::addRow("%s, %d blocks", qPrintable(type), blocks) << type << folder << blocks;
    }
}

void tst_FullDisk::leavesWholeTextsOnly()
{
    QFETCH(QString, type);
    QFETCH(QString, folder);
    QFETCH(int, blocks);
    QVERIFY2(mountDisk(blocks > 0 ? u"size=%1"_s.arg(blocks * kBlock) : u"size=10m"_s),
             std::strerror(errno));
    const ExpectedFiles expected = below(m_expectedTexts, folder);
    qsizetype longest = 0;
    for (const ExpectedFile &file : expected)
        longest = std::max(longest, file.content.size());
    const auto limit = [blocks, longest] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit size { rlim_t(longest - 1), rlim_t(longest - 1) };
        if (blocks == 0)
            ::setrlimit(RLIMIT_FSIZE, &size);
    };
    const Result result =
        run({ u"--no-space-check"_s, u"--json"_s, u"--only"_s, type, texts(), output() }, limit);

    checkTexts(result, blocks == 0);
}

// What is there is whole, and the numbers tell of it.
void tst_FullDisk::checkTexts(const Result &result, bool isOfOneFile)
{
    QCOMPARE(result.exitCode, isOfOneFile ? 3 : 12);
    QVERIFY2(result.err.contains(isOfOneFile ? "File too large" : "is full: “"),
             result.err.constData());
    const ExpectedFiles found = filesBelow(output());
    for (auto it = found.begin(); it != found.end(); ++it) {
        QVERIFY2(m_expectedTexts.contains(it.key()), qPrintable(it.key()));
        QVERIFY2(it->content == m_expectedTexts.value(it.key()).content
                     || it.key() == "export-report.csv"_L1,
                 qPrintable(it.key()));
    }
    for (const auto &[name, end] :
         { std::pair(u"index.html"_s, "</html>\n"), std::pair(u"export-report.csv"_s, "\r\n") }) {
        const QString path = output() + u'/' + name;
        QVERIFY2(!QFileInfo::exists(path) || Files::read(path).endsWith(end), qPrintable(path));
    }

    int sum = 0;
    for (const QJsonValue &told : result.json().value(u"types"_s).toArray()) {
        const int items = told[u"items"_s].toInt();
        const int exported = told[u"exported"_s].toInt();
        const QString name = told[u"name"_s].toString();
        const QStringList written = below(found, name).keys();
        sum += exported;
        if (items == 0)
            continue;
        // The page comes first, and tells of the items.
        if (told[u"outputs"_s][0][u"output"_s] == u"page"_s)
            QCOMPARE(exported, written.filter(u".html"_s).isEmpty() ? 0 : items);
        QVERIFY2(told[u"state"_s].toString() != u"complete"_s
                     || written == below(m_expectedTexts, name).keys(),
                 qPrintable(name));
        QVERIFY(exported + told[u"failed"_s].toInt() <= items);
    }
    QCOMPARE(result.json().value(u"exported"_s).toInt(), sum);
}

void tst_FullDisk::tellsThatTheArchiveIsNotWhole_data()
{
    QTest::addColumn<int>("kilobytes");
    for (int kilobytes = 8; kilobytes < 400; kilobytes += 1 + kilobytes / 2)
        QTest::addRow("%d KB", kilobytes) << kilobytes;
}

// Each file of it is as it would be in the end, or not there.
void tst_FullDisk::tellsThatTheArchiveIsNotWhole()
{
    QFETCH(int, kilobytes);
    QVERIFY2(mountDisk(u"size=%1k"_s.arg(kilobytes)), std::strerror(errno));
    const QStringList options {
        u"--no-space-check"_s, u"--json"_s, u"--formats"_s, u"archive,json"_s
    };
    const QString whole = m_dir.filePath(u"whole archive"_s);
    if (!QFileInfo::exists(whole))
        run(options + QStringList { texts(), whole });
    const ExpectedFiles expected = filesBelow(whole);
    QVERIFY(expected.size() > 50);

    const Result result = run(options + QStringList { texts(), output() });
    QCOMPARE(result.exitCode, 12);
    QVERIFY2(result.err.contains("is full: “"), result.err.constData());
    const ExpectedFiles found = filesBelow(output());
    QVERIFY(found.size() < expected.size());
    for (auto it = found.begin(); it != found.end(); ++it) {
        if (it.key().startsWith("Archive/"_L1))
            QVERIFY2(it->content == expected.value(it.key()).content, qPrintable(it.key()));
    }
    for (const QJsonValue &told : result.json().value(u"types"_s).toArray()) {
        if (told[u"items"_s].toInt() > 0)
            QVERIFY(told[u"state"_s].toString() != u"complete"_s);
    }
}

void tst_FullDisk::stopsAtTheFirstWriteThatFails_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("where"); // how the paths begin that fail, below OUTPUT
    QTest::addColumn<int>("leastRuns");
    QTest::newRow("a full device") << ENOSPC << QString() << 20;
    QTest::newRow("a quota") << EDQUOT << QString() << 20;
    QTest::newRow("index.html") << EDQUOT << u".dataexport-"_s << 2;
    QTest::newRow("export-report.csv") << EDQUOT << u"export-report"_s << 3;
}

// Whatever it is that cannot be written, or does not reach the disk.
void tst_FullDisk::stopsAtTheFirstWriteThatFails()
{
    QFETCH(int, error);
    QFETCH(QString, where);
    QFETCH(int, leastRuns);
    int runs = 0;
    for (int writes = 0;; writes += 1 + writes / 8, ++runs) {
        QVERIFY2(mountDisk(u"size=10m"_s), std::strerror(errno));
        const Result result =
            runOnFailingMedia({ u"--json"_s, texts(), output() },
                              { { u"DATAEXPORT_TEST_FULL"_s, output() + u'/' + where },
                                { u"DATAEXPORT_TEST_FULL_AFTER"_s, QString::number(writes) },
                                { u"DATAEXPORT_TEST_FULL_ERROR"_s, QString::number(error) } });
        if (!result.err.contains("The medium is full."))
            break;
        checkTexts(result, false);
        if (QTest::currentTestFailed())
            qWarning("after %d writes", writes);
        QVERIFY(!QTest::currentTestFailed());
        cleanup();
    }
    QVERIFY2(runs >= leastRuns, qPrintable(QString::number(runs)));
    QCOMPARE(filesBelow(output()).keys(), m_expectedTexts.keys());
}

void tst_FullDisk::refusesToStartWithoutRoom()
{
    QVERIFY2(mountDisk(u"size=300k"_s), std::strerror(errno));
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 12);
    QVERIFY2(result.err.contains("needed, 300.0 KB available"), result.err.constData());
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
    QVERIFY2(refused.err.contains("800.0 KB needed"), refused.err.constData());
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
