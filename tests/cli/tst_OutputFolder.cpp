#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace CliTest;
using namespace Qt::StringLiterals;

//! Which OUTPUT the program takes, and that it touches none of the others.
class tst_OutputFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesBeforeAnythingIsTouched_data();
    void refusesBeforeAnythingIsTouched();
    void takes_data();
    void takes();
    void refusesTheFolderOfBackups();
    void saysWhenItMayNotWrite();
    void checksTheRoomFirst();
};

void tst_OutputFolder::refusesBeforeAnythingIsTouched_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("said");

    const QStringList none;
    const QStringList existing { u"--into-existing"_s };
    QTest::newRow("not empty") << u"full"_s << none << "not empty"_ba;
    QTest::newRow("a hidden file only") << u"hidden"_s << none << "not empty"_ba;
    QTest::newRow("a dead link only") << u"deadlink"_s << none << "not empty"_ba;
    QTest::newRow("a file") << u"file"_s << none << "is a file"_ba;
    QTest::newRow("a file, though existing is allowed") << u"file"_s << existing << "is a file"_ba;
    QTest::newRow("below a file") << u"file/out"_s << none << "is a file"_ba;
    QTest::newRow("the backup") << u"holder/backup"_s << existing << "inside the backup"_ba;
    QTest::newRow("in the backup") << u"holder/backup/out"_s << none << "inside the backup"_ba;
    QTest::newRow("deep in the backup")
        << u"holder/backup/00/x/y"_s << existing << "inside the backup"_ba;
    QTest::newRow("in it by a way round")
        << u"full/../holder/./backup/out"_s << none << "inside the backup"_ba;
    QTest::newRow("in it through a link") << u"link/out"_s << none << "inside the backup"_ba;
    QTest::newRow("a link to it") << u"link"_s << existing << "inside the backup"_ba;
    QTest::newRow("around the backup") << u"holder"_s << existing << "is inside OUTPUT"_ba;
    QTest::newRow("around it, far") << u"."_s << existing << "is inside OUTPUT"_ba;
    QTest::newRow("around it through a link")
        << u"holderlink"_s << existing << "is inside OUTPUT"_ba;
    QTest::newRow("a type's folder leads into it") << u"trap"_s << existing << "trap/Photos"_ba;
    QTest::newRow("a link to what is not yet there leads into it")
        << u"deadtrap"_s << existing << "deadtrap/Photos"_ba;
    QTest::newRow("a group's folder leads into it")
        << u"deeptrap"_s << existing << "deeptrap/Photos/100APPLE"_ba;
}

void tst_OutputFolder::refusesBeforeAnythingIsTouched()
{
    QFETCH(QString, output);
    QFETCH(QStringList, options);
    QFETCH(QByteArray, said);
    QTemporaryDir dir;
    const QString backup = dir.filePath(u"holder/backup"_s);
    QVERIFY(!writeUsualBackup(backup).isEmpty());
    QVERIFY(Files::write(dir.filePath(u"full/mine.txt"_s), "mine"));
    QVERIFY(Files::write(dir.filePath(u"hidden/.mine"_s), "mine"));
    QVERIFY(Files::write(dir.filePath(u"file"_s), "mine"));
    for (const char *folder : { "deadlink", "trap", "deadtrap", "deeptrap/Photos" })
        QVERIFY(QDir().mkpath(dir.filePath(QLatin1String(folder))));
    QVERIFY(QFile::link(dir.filePath(u"nowhere"_s), dir.filePath(u"deadlink/x"_s)));
    QVERIFY(QFile::link(backup, dir.filePath(u"link"_s)));
    QVERIFY(QFile::link(dir.filePath(u"holder"_s), dir.filePath(u"holderlink"_s)));
    QVERIFY(QFile::link(backup, dir.filePath(u"trap/Photos"_s)));
    QVERIFY(QFile::link(backup + u"/new"_s, dir.filePath(u"deadtrap/hop"_s)));
    QVERIFY(QFile::link(dir.filePath(u"deadtrap/hop"_s), dir.filePath(u"deadtrap/Photos"_s)));
    QVERIFY(QFile::link(backup, dir.filePath(u"deeptrap/Photos/100APPLE"_s)));
    const QStringList before = Files::tree(dir.path());

    const Result result = run(options + QStringList { u"--json"_s, backup, dir.filePath(output) });
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.err.contains(said), result.err.constData());
    QCOMPARE(result.json().value(u"status"_s).toString(), u"usage"_s);
    QCOMPARE(Files::tree(dir.path()), before);
}

void tst_OutputFolder::takes_data()
{
    QTest::addColumn<QString>("output");
    QTest::newRow("new") << u"new"_s;
    QTest::newRow("new, several levels") << u"a/b/c"_s;
    QTest::newRow("empty") << u"empty"_s;
    QTest::newRow("empty, with a slash") << u"empty/"_s;
    QTest::newRow("nothing of a person in it") << u"disk"_s;
    QTest::newRow("link to an empty folder") << u"link"_s;
    QTest::newRow("beside the backup, its name longer") << u"backup2"_s;
    QTest::newRow("blanks and other letters") << u" the \u00fcber folder "_s;
}

void tst_OutputFolder::takes()
{
    QFETCH(QString, output);
    QTemporaryDir dir;
    const ExpectedFiles expected = writeUsualBackup(dir.filePath(u"backup"_s));
    QVERIFY(QDir().mkpath(dir.filePath(u"empty"_s)));
    QVERIFY(QFile::link(dir.filePath(u"empty"_s), dir.filePath(u"link"_s)));
    QVERIFY(QDir().mkpath(dir.filePath(u"disk/lost+found"_s)));
    QVERIFY(Files::write(dir.filePath(u"disk/.DS_Store"_s), "x"));
    const bool isNew = !QFileInfo::exists(dir.filePath(output));

    // Relative, as people give it.
    QProcess process;
    prepare(process, { u"backup"_s, output });
    process.setWorkingDirectory(dir.path());
    process.start();
    const Result result = finish(process);
    QVERIFY2(result.exitCode == 0, result.err.constData());
    ExpectedFiles found = filesBelow(dir.filePath(output));
    found.remove(u".DS_Store"_s);
    QCOMPARE(difference(found, expected), QString());
    const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::ExeGroup | QFile::ExeOther;
    QCOMPARE(QFileInfo(dir.filePath(output)).permissions().testAnyFlags(others), !isNew);
}

void tst_OutputFolder::refusesTheFolderOfBackups()
{
    QTemporaryDir dir;
    QVERIFY(!writeUsualBackup(dir.filePath(u"backup"_s)).isEmpty());
    const QStringList before = Files::tree(dir.path());
    const Result result = run({ dir.path(), dir.filePath(u"out"_s) });
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(Files::tree(dir.path()), before);
}

void tst_OutputFolder::saysWhenItMayNotWrite()
{
    QTemporaryDir dir;
    const QString backup = dir.filePath(u"backup"_s);
    QVERIFY(!writeUsualBackup(backup).isEmpty());
    QVERIFY(QDir().mkpath(dir.filePath(u"closed"_s)));
    ::chmod(QFile::encodeName(dir.filePath(u"closed"_s)).constData(), 0555);

    for (const char *output : { "closed", "closed/new" }) {
        const Result result = run({ backup, dir.filePath(QLatin1String(output)) }, obeyFileModes);
        QCOMPARE(result.exitCode, 12);
        QVERIFY2(result.err.contains("cannot be written"), result.err.constData());
    }
    QVERIFY(Files::tree(dir.filePath(u"closed"_s)).isEmpty());
}

void tst_OutputFolder::checksTheRoomFirst()
{
    QTemporaryDir dir;
    const QString backup = dir.filePath(u"backup"_s);
    Sample::BackupWriter writer(backup);
    addUsualFiles(writer);
    const QString path = u"Media/DCIM/100APPLE/IMG_9999.MOV"_s;
    // A hole takes no room in the backup; its copy would take more than any disk of ours has.
    QFile huge(writer.contentPath(u"CameraRollDomain"_s, path));
    QVERIFY(huge.open(QIODevice::WriteOnly));
    if (!huge.resize(qint64(8) << 40))
        QSKIP("the file system here takes no files of 8 TB");
    huge.close();
    writer.addWritten(u"CameraRollDomain"_s, path);
    QVERIFY(writer.finish());

    const Result result = run({ u"--json"_s, backup, dir.filePath(u"out"_s) });
    QCOMPARE(result.exitCode, 12);
    QVERIFY2(result.err.contains("8.0 TB needed"), result.err.constData());
    QVERIFY2(result.err.contains(" available"), result.err.constData());
    QCOMPARE(result.json().value(u"status"_s).toString(), u"output"_s);
    QVERIFY(!QFileInfo::exists(dir.filePath(u"out"_s)));

    const Result skipped = run({ u"--skip"_s, u"videos"_s, backup, dir.filePath(u"out"_s) });
    QCOMPARE(skipped.exitCode, 0);
}

QTEST_GUILESS_MAIN(tst_OutputFolder)
#include "tst_OutputFolder.moc"
