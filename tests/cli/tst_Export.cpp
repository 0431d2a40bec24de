#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "support/Files.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace CliTest;
using namespace Qt::StringLiterals;

namespace {

const QString kCamera = u"CameraRollDomain"_s;
const QString kPhotoFolder = u"Media/DCIM/100APPLE/"_s;
const QString kNotebook = u"AppDomain-com.example.notebook"_s;

//! Everything that a careless program could change in a folder.
QStringList state(const QString &root)
{
    QStringList entries = Files::tree(root);
    entries.prepend(u"."_s);
    QStringList lines;
    for (const QString &entry : entries) {
        const QString path = root + u'/' + entry;
        struct stat data = {};
        ::lstat(QFile::encodeName(path).constData(), &data);
        QString line = u"%1 mode %2 size %3 written %4.%5 changed %6.%7"_s.arg(entry)
                           .arg(data.st_mode)
                           .arg(data.st_size)
                           .arg(data.st_mtim.tv_sec)
                           .arg(data.st_mtim.tv_nsec)
                           .arg(data.st_ctim.tv_sec)
                           .arg(data.st_ctim.tv_nsec);
        // Reading a folder's list touches its access time, whoever reads it.
        if (S_ISREG(data.st_mode))
            line += u" read %1.%2"_s.arg(data.st_atim.tv_sec).arg(data.st_atim.tv_nsec);
        lines += line;
    }
    return lines;
}

QByteArray contentHash(const QString &root)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const QStringList entries = Files::tree(root);
    for (const QString &entry : entries) {
        hash.addData(entry.toUtf8());
        if (!entry.endsWith(u'/'))
            hash.addData(Files::read(root + u'/' + entry));
    }
    return hash.result();
}

// Access times far in the past: the next read that counts would move them.
void ageAccessTimes(const QString &root)
{
    const QStringList entries = Files::tree(root);
    for (const QString &entry : entries) {
        const timespec times[2] { { 1000000000, 0 }, { 0, UTIME_OMIT } };
        ::utimensat(AT_FDCWD, QFile::encodeName(root + u'/' + entry).constData(), times, 0);
    }
}

void setWritable(const QString &root, bool writable)
{
    QStringList folders { root };
    QDirIterator walk(root, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        if (walk.fileInfo().isDir())
            folders += path;
        else
            ::chmod(QFile::encodeName(path).constData(), writable ? 0644 : 0444);
    }
    for (const QString &folder : folders)
        ::chmod(QFile::encodeName(folder).constData(), writable ? 0755 : 0555);
}

//! Content files of \a files, told apart by what is in them.
QList<QByteArray> contents(const ExpectedFiles &files)
{
    QList<QByteArray> all;
    for (const ExpectedFile &file : files)
        all += file.content;
    std::sort(all.begin(), all.end());
    return all;
}

} // namespace

//! What an export writes, and that it writes nowhere else.
class tst_Export : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void copiesEverythingWithItsDate_data();
    void copiesEverythingWithItsDate();
    void leavesTheBackupAsItWas_data();
    void leavesTheBackupAsItWas();
    void keepsHostileNamesInside_data();
    void keepsHostileNamesInside();
    void keepsNamesApartThatDifferInCase();
    void reportsWhatCannotBeRead_data();
    void reportsWhatCannotBeRead();
    void reportIsATableThatRunsNothing();
    void namesTheFirstOfManyFailures();
    void replacesNothingThatWasThere();
    void exportsAnEmptyBackup();
    void exportsRealMediaByteForByte();

private:
    QString backup() const { return m_dir->filePath(u"backup"_s); }
    QString output() const { return m_dir->filePath(u"out"_s); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_Export::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void tst_Export::copiesEverythingWithItsDate_data()
{
    QTest::addColumn<Sample::BackupWriter::Layout>("layout");
    QTest::newRow("two levels") << Sample::BackupWriter::Layout::TwoLevel;
    QTest::newRow("flat") << Sample::BackupWriter::Layout::Flat;
}

void tst_Export::copiesEverythingWithItsDate()
{
    QFETCH(Sample::BackupWriter::Layout, layout);
    Sample::BackupWriter writer(backup(), layout);
    const ExpectedFiles expected = addUsualFiles(writer);
    QVERIFY(writer.finish());
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(difference(filesBelow(output()), expected), QString());
}

void tst_Export::leavesTheBackupAsItWas_data()
{
    QTest::addColumn<bool>("writable");
    QTest::addColumn<QStringList>("options");
    QTest::newRow("writable, export") << true << QStringList {};
    QTest::newRow("read-only, export") << false << QStringList {};
    QTest::newRow("writable, list") << true << QStringList { u"--list"_s };
    QTest::newRow("read-only, list") << false << QStringList { u"--list"_s };
}

void tst_Export::leavesTheBackupAsItWas()
{
    QFETCH(bool, writable);
    QFETCH(QStringList, options);
    QVERIFY(!writeUsualBackup(backup()).isEmpty());
    const QByteArray hashBefore = contentHash(backup());
    setWritable(backup(), writable);
    ageAccessTimes(backup());
    const QStringList before = state(backup());

    QStringList arguments = options + QStringList { backup() };
    if (options.isEmpty())
        arguments += output();
    QCOMPARE(run(arguments, writable ? ChildSetup() : obeyFileModes).exitCode, 0);

    const QStringList after = state(backup());
    for (qsizetype i = 0; i < std::min(before.size(), after.size()); ++i)
        QCOMPARE(after.at(i), before.at(i));
    QCOMPARE(after.size(), before.size());
    QCOMPARE(contentHash(backup()), hashBefore);
    setWritable(backup(), true);
}

void tst_Export::keepsHostileNamesInside_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("path");

    const auto app = [](const char *row, const QString &path) {
        QTest::newRow(row) << kNotebook << u"Documents/"_s + path;
    };
    app("up", u"../../../escaped.txt"_s);
    app("up in the middle", u"a/../../../../escaped.txt"_s);
    app("only dots", u".."_s);
    app("many dots", u"....."_s);
    app("one dot", u"."_s);
    app("absolute", u"//tmp/escaped.txt"_s);
    app("backslashes", u"..\\..\\escaped.txt"_s);
    app("drive", u"C:\\escaped.txt"_s);
    app("only blanks", u"   "_s);
    app("blank folder", u"  /a.txt"_s);
    app("blanks and dots at the end", u"name. . "_s);
    app("control characters", u"a\u001b[2J\u0007b\nc\u0085.txt"_s);
    app("other direction", u"photo\u202Egpj.exe"_s);
    app("reserved device", u"CON"_s);
    app("reserved device with an extension", u"lpt1.txt"_s);
    app("300 bytes", QString(300, u'n') + u".txt"_s);
    app("300 bytes of three each", QString(100, QChar(0x6c34)) + u".txt"_s);
    app("300 bytes in the extension", u"a."_s + QString(300, u'x'));
    app("hidden", u".profile"_s);
    QTest::newRow("photo that leads up")
        << kCamera << u"Media/DCIM/100APPLE/../../../../escaped.JPG"_s;
    QTest::newRow("photo folder of dots") << kCamera << u"Media/DCIM/../escaped.JPG"_s;
    QTest::newRow("app that leads up")
        << u"AppDomain-../../escaped"_s << u"Documents/escaped.txt"_s;
    QTest::newRow("app of dots") << u"AppDomain-.."_s << u"Documents/escaped.txt"_s;
    QTest::newRow("app without a name") << u"AppDomain-"_s << u"Documents/escaped.txt"_s;
    QTest::newRow("app with an absolute name")
        << u"AppDomain-/tmp/escaped"_s << u"Documents/escaped.txt"_s;
    QTest::newRow("book") << u"BooksDomain"_s << u"../escaped.epub"_s;
    QTest::newRow("recording") << u"MediaDomain"_s << u"Media/Recordings/../../escaped.m4a"_s;
}

void tst_Export::keepsHostileNamesInside()
{
    QFETCH(QString, domain);
    QFETCH(QString, path);
    Sample::BackupWriter writer(backup());
    ExpectedFiles expected = addUsualFiles(writer);
    const QByteArray content = noise(77, 5000);
    writer.addFile(domain, path, content);
    QVERIFY(writer.finish());

    const Result result = run({ backup(), output() });
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QVERIFY(!hasControlBytes(result.err));
    QVERIFY(!hasControlBytes(result.out));
    // Beside the backup and OUTPUT nothing came into being, and in OUTPUT only folders of types and
    // the page that leads to them.
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({ u"backup"_s, u"out"_s }));
    QCOMPARE(QDir(output()).entryList(QDir::Files | QDir::Hidden), QStringList { u"index.html"_s });
    ExpectedFiles found = filesBelow(output());
    int extra = 0;
    for (auto it = found.begin(); it != found.end(); ++it) {
        QVERIFY2(!hasControlBytes(it.key().toUtf8()), qPrintable(it.key()));
        QVERIFY2(!it.key().section(u'/', -1).startsWith(u'.'), qPrintable(it.key()));
        if (!expected.contains(it.key())) {
            QCOMPARE(it->content, content);
            ++extra;
        }
    }
    // A name that is nothing for people may be left out; the usual files never are.
    QVERIFY(extra <= 1);
    QCOMPARE(found.size(), expected.size() + extra);
}

void tst_Export::keepsNamesApartThatDifferInCase()
{
    Sample::BackupWriter writer(backup());
    const QStringList names {
        u"Notes.txt"_s, u"notes.txt"_s, u"NOTES.TXT"_s, u"\u00dcber.txt"_s, u"\u00fcber.txt"_s
    };
    for (qsizetype i = 0; i < names.size(); ++i)
        writer.addFile(kNotebook, u"Documents/"_s + names.at(i), noise(static_cast<int>(i), 1000));
    QVERIFY(writer.finish());
    QCOMPARE(run({ backup(), output() }).exitCode, 0);
    const ExpectedFiles found = filesBelow(output());
    QCOMPARE(found.size(), names.size());
    QSet<QString> folded;
    for (auto it = found.begin(); it != found.end(); ++it)
        folded.insert(it.key().toCaseFolded());
    QCOMPARE(folded.size(), names.size());
}

void tst_Export::reportsWhatCannotBeRead_data()
{
    QTest::addColumn<QString>("how");
    for (const char *how :
         { "missing", "without permission", "a folder", "a pipe", "a link", "cut off", "empty" })
        QTest::newRow(how) << QString::fromLatin1(how);
}

void tst_Export::reportsWhatCannotBeRead()
{
    QFETCH(QString, how);
    Sample::BackupWriter writer(backup());
    const ExpectedFiles expected = addUsualFiles(writer);
    const bool isShort = how == u"cut off"_s || how == u"empty"_s; // and copied all the same
    const QString lost = kPhotoFolder + u"IMG_0009.JPG"_s;
    writer.addFile(kCamera, lost, noise(9, 9000));
    const QString content = writer.contentPath(kCamera, lost);
    QVERIFY(writer.finish());
    if (how == u"without permission"_s) {
        ::chmod(QFile::encodeName(content).constData(), 0);
    } else if (isShort) {
        QVERIFY(QFile::resize(content, how == u"empty"_s ? 0 : 7000));
    } else {
        QVERIFY(QFile::remove(content));
        if (how == u"a folder"_s)
            QVERIFY(QDir().mkpath(content));
        if (how == u"a pipe"_s)
            QCOMPARE(::mkfifo(QFile::encodeName(content).constData(), 0644), 0);
        if (how == u"a link"_s)
            QVERIFY(QFile::link(u"/etc/passwd"_s, content));
    }

    const Result result = run({ backup(), output() }, obeyFileModes);
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.err.contains("IMG_0009.JPG"), result.err.constData());
    QVERIFY2(result.err.contains("export-report.csv"), result.err.constData());
    ExpectedFiles found = filesBelow(output());
    const QByteArray report = found.take(u"export-report.csv"_s).content;
    QVERIFY2(report.startsWith("\xEF\xBB\xBFType,Item,Cause,Reason\r\n"), report.constData());
    QCOMPARE(report.count("IMG_0009.JPG"), 1);
    QCOMPARE(report.count('\n'), 2);
    QVERIFY(!isShort
            || noise(9, 9000).startsWith(found.take(u"Photos/100APPLE/IMG_0009.JPG"_s).content));
    QCOMPARE(difference(found, expected), QString());

    const Result json =
        run({ u"--json"_s, u"--into-existing"_s, backup(), output() }, obeyFileModes);
    QCOMPARE(json.exitCode, 3);
    QCOMPARE(json.json().value(u"failureCount"_s).toInt(), 1);
    QCOMPARE(json.json().value(u"report"_s).toString(), output() + u"/export-report (2).csv"_s);
}

void tst_Export::reportIsATableThatRunsNothing()
{
    Sample::BackupWriter writer(backup());
    const QString path = u"Documents/=cmd(\"x\"),1\u001b[2J.txt"_s;
    writer.addWithoutContent(kNotebook, path, 100);
    writer.addWithoutContent(u"BooksDomain"_s, u"=1+1.epub"_s, 100);
    QVERIFY(writer.finish());
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 3);
    QVERIFY(!hasControlBytes(result.err));
    const QString report = QString::fromUtf8(Files::read(output() + u"/export-report.csv"_s));
    QVERIFY2(report.contains(u"\r\nBooks,'=1+1.epub,"_s), qPrintable(report));
    QVERIFY2(report.contains(u"/=cmd(\"\"x\"\"),1"_s) || report.contains(u"/=cmd(_x_),1"_s),
             qPrintable(report));
    QVERIFY(!report.contains(u'\u001b'));
}

void tst_Export::namesTheFirstOfManyFailures()
{
    Sample::BackupWriter writer(backup());
    for (int i = 0; i < 1500; ++i)
        writer.addWithoutContent(
            kCamera, kPhotoFolder + u"IMG_%1.JPG"_s.arg(i, 4, 10, '0'_L1), 1000);
    QVERIFY(writer.finish());
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.err.contains("1,500"), result.err.constData());
    QVERIFY(result.err.count('\n') < 40);
    QCOMPARE(Files::read(output() + u"/export-report.csv"_s).count('\n'), 1501);
    QVERIFY(QString::fromUtf8(result.out).simplified().contains(u"Total 0 1,500 "_s));
}

void tst_Export::replacesNothingThatWasThere()
{
    const ExpectedFiles expected = writeUsualBackup(backup());
    QVERIFY(Files::write(output() + u"/Photos/100APPLE/IMG_0001.JPG"_s, "mine"));
    QVERIFY(Files::write(output() + u"/Books"_s, "a file where a folder is to be"));

    const Result result = run({ u"--into-existing"_s, backup(), output() });
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.err.contains("Books"), result.err.constData());
    ExpectedFiles found = filesBelow(output());
    QCOMPARE(found.take(u"Photos/100APPLE/IMG_0001.JPG"_s).content, "mine"_ba);
    QCOMPARE(found.take(u"Books"_s).content, "a file where a folder is to be"_ba);
    found.insert(u"Photos/100APPLE/IMG_0001.JPG"_s,
                 found.take(u"Photos/100APPLE/IMG_0001 (2).JPG"_s));
    found.remove(u"export-report.csv"_s);
    ExpectedFiles wanted = expected;
    wanted.remove(u"Books/Guide.epub"_s);
    QCOMPARE(difference(found, wanted), QString());
    QVERIFY2(QString::fromUtf8(result.out).simplified().contains(u"Books 0 1 failed"_s),
             result.out.constData());
}

void tst_Export::exportsAnEmptyBackup()
{
    Sample::BackupWriter writer(backup());
    writer.addFolder(u"HomeDomain"_s, u"Library"_s);
    QVERIFY(writer.finish());
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.contains("Total"));
    QVERIFY(Files::tree(output()).isEmpty());
}

void tst_Export::exportsRealMediaByteForByte()
{
    QString source = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    if (source.isEmpty())
        source = QStringLiteral(TEST_SOURCE_DIR "/../../shared/real");
    const QDir media(source + u"/media"_s);
    const QStringList names = media.entryList(QDir::Files);
    if (names.isEmpty())
        QSKIP("no real media here; DATAEXPORT_REAL_DATA names the folder that holds them");

    Sample::BackupWriter writer(backup());
    ExpectedFiles sources;
    for (const QString &name : names) {
        const QByteArray content = Files::read(media.filePath(name));
        sources.insert(name, { content, {} });
        if (name.endsWith(u".m4a"_s))
            writer.addFile(u"MediaDomain"_s, u"Media/Recordings/"_s + name, content);
        else if (name.endsWith(u".amr"_s))
            writer.addFile(kNotebook, u"Documents/"_s + name, content);
        else
            writer.addFile(kCamera, kPhotoFolder + name, content);
    }
    QVERIFY(writer.finish());
    QCOMPARE(run({ backup(), output() }).exitCode, 0);
    QCOMPARE(contents(filesBelow(output())), contents(sources));
}

QTEST_GUILESS_MAIN(tst_Export)
#include "tst_Export.moc"
