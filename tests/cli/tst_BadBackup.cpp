#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/Database.h"
#include "sample/MessageSchema.h"
#include "support/Files.h"

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace CliTest;
using namespace Qt::StringLiterals;

using Spoil = std::function<void(const QString &root)>;
Q_DECLARE_METATYPE(Spoil)

namespace {

const QString kSentPicture = u"Library/SMS/Attachments/aa/10/a/IMG.JPG"_s;
const QString kVoiceMessage = u"Library/SMS/Attachments/aa/10/b/v.amr"_s;

void remove(const QString &path)
{
    QFile::remove(path);
}

void truncate(const QString &path, qint64 size)
{
    QFile::resize(path, size);
}

Spoil rewrite(const QString &name, const QByteArray &content)
{
    return [=](const QString &root) { Files::write(root + u'/' + name, content); };
}

// Sentences that were put into others keep their full stops; the program writes "…" for an
// ellipsis.
bool hasDoubledStop(const Result &result)
{
    return result.err.contains("..") || result.out.contains("..");
}

} // namespace

//! Folders that are no backup, or a broken one: each has its message and its exit code.
class tst_BadBackup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesWhatIsNoBackup_data();
    void refusesWhatIsNoBackup();
    void exportsInSpiteOf_data();
    void exportsInSpiteOf();
    void exportsInSpiteOfADamagedDatabase_data();
    void exportsInSpiteOfADamagedDatabase();
    void survivesAnIndexCutAnywhere_data();
    void survivesAnIndexCutAnywhere();
    void warnsOfAnInterruptedBackup();
    void exportsTheRestOfADamagedMedium_data();
    void exportsTheRestOfADamagedMedium();
};

void tst_BadBackup::refusesWhatIsNoBackup_data()
{
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<QString>("named");

    QTest::newRow("nothing there")
        << Spoil([](const QString &root) { QDir(root).removeRecursively(); }) << u"backup"_s;
    QTest::newRow("an empty folder") << Spoil([](const QString &root) {
        QDir(root).removeRecursively();
        QDir().mkpath(root);
    }) << u"backup"_s;
    QTest::newRow("a file") << Spoil([](const QString &root) {
        QDir(root).removeRecursively();
        Files::write(root, "hello");
    }) << u"backup"_s;
    QTest::newRow("a folder of pictures") << Spoil([](const QString &root) {
        QDir(root).removeRecursively();
        Files::write(root + u"/IMG_0001.JPG"_s, "hello");
    }) << u"backup"_s;
    QTest::newRow("no index") << Spoil([](const QString &root) {
        remove(root + u"/Manifest.db"_s);
    }) << u"Manifest.db"_s;
    QTest::newRow("empty index") << rewrite(u"Manifest.db"_s, {}) << u"Manifest.db"_s;
    QTest::newRow("garbage for an index")
        << rewrite(u"Manifest.db"_s, noise(1, 20000)) << u"Manifest.db"_s;
    QTest::newRow("another file for an index")
        << rewrite(u"Manifest.db"_s, "PK\3\4 something else") << u"Manifest.db"_s;
}

void tst_BadBackup::refusesWhatIsNoBackup()
{
    QFETCH(Spoil, spoil);
    QFETCH(QString, named);
    QTemporaryDir dir;
    const QString root = dir.filePath(u"backup"_s);
    QVERIFY(!writeUsualBackup(root).isEmpty());
    spoil(root);

    for (const QStringList &arguments : { QStringList { u"--json"_s, root, dir.filePath(u"out"_s) },
                                          QStringList { u"--json"_s, u"--list"_s, root } }) {
        const Result result = run(arguments);
        QCOMPARE(result.exitCode, 10);
        QVERIFY2(result.err.startsWith("Error: "), result.err.constData());
        QVERIFY2(!hasDoubledStop(result), result.err.constData());
        QVERIFY2(result.err.contains(named.toUtf8()), result.err.constData());
        QCOMPARE(result.json().value(u"status"_s).toString(), u"no-backup"_s);
        QVERIFY(!QFileInfo::exists(dir.filePath(u"out"_s)));
    }
}

void tst_BadBackup::exportsInSpiteOf_data()
{
    QTest::addColumn<Spoil>("spoil");

    const QByteArray wrongShape =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<plist version=\"1.0\"><array><string>x</string></array></plist>";
    const QByteArray wrongTypes =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
        "<key>Display Name</key><integer>7</integer><key>IsEncrypted</key><integer>0</integer>"
        "<key>Lockdown</key><array/><key>SnapshotState</key><dict/><key>Date</key><true/>"
        "</dict></plist>";
    for (const char *name : { "Info.plist", "Status.plist" }) {
        const QString file = QString::fromLatin1(name);
        QTest::addRow("no %s", name)
            << Spoil([file](const QString &root) { remove(root + u'/' + file); });
        QTest::addRow("a folder for %s", name) << Spoil([file](const QString &root) {
            remove(root + u'/' + file);
            QDir().mkpath(root + u'/' + file);
        });
        QTest::addRow("empty %s", name) << rewrite(file, {});
        QTest::addRow("garbage %s", name) << rewrite(file, noise(2, 3000));
        QTest::addRow("%s that is a list", name) << rewrite(file, wrongShape);
        QTest::addRow("%s with wrong types", name) << rewrite(file, wrongTypes);
    }
    QTest::newRow("Manifest.plist that is a list") << rewrite(u"Manifest.plist"_s, wrongShape);
    QTest::newRow("Manifest.plist with wrong types") << rewrite(u"Manifest.plist"_s, wrongTypes);
}

void tst_BadBackup::exportsInSpiteOf()
{
    QFETCH(Spoil, spoil);
    QTemporaryDir dir;
    const QString root = dir.filePath(u"backup"_s);
    const QString output = dir.filePath(u"out"_s);
    const ExpectedFiles expected = writeUsualBackup(root);
    spoil(root);

    const Result result = run({ root, output });
    QVERIFY2(result.exitCode == 0 || result.exitCode == 3, result.err.constData());
    QVERIFY2(!hasDoubledStop(result), result.err.constData());
    ExpectedFiles found = filesBelow(output);
    found.remove(u"export-report.csv"_s);
    QCOMPARE(difference(found, expected), QString());
}

void tst_BadBackup::exportsInSpiteOfADamagedDatabase_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("content");

    const QByteArray garbage = noise(5, 50000);
    const QByteArray cut = "SQLite format 3\0"_ba + noise(6, 5000);
    const auto add = [&](const char *row, const QString &domain, const QString &path) {
        QTest::addRow("%s, garbage", row) << domain << path << garbage;
        QTest::addRow("%s, garbage behind its first bytes", row) << domain << path << cut;
    };
    add("photos", u"CameraRollDomain"_s, u"Media/PhotoData/Photos.sqlite"_s);
    add("recordings", u"MediaDomain"_s, u"Media/Recordings/Recordings.db"_s);
    add("voicemail", u"HomeDomain"_s, u"Library/Voicemail/voicemail.db"_s);
}

void tst_BadBackup::exportsInSpiteOfADamagedDatabase()
{
    QFETCH(QString, domain);
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QTemporaryDir dir;
    Sample::BackupWriter writer(dir.filePath(u"backup"_s));
    const ExpectedFiles expected = addUsualFiles(writer);
    writer.addFile(domain, path, content);
    QVERIFY(writer.finish());

    const Result result = run({ dir.filePath(u"backup"_s), dir.filePath(u"out"_s) });
    QVERIFY2(result.exitCode == 0 || result.exitCode == 3, result.err.constData());
    QVERIFY2(!hasDoubledStop(result), result.err.constData());
    QVERIFY2(result.err.contains(path.section(u'/', -1).toUtf8()), result.err.constData());
    QCOMPARE(QFileInfo::exists(dir.filePath(u"out/export-report.csv"_s)), result.exitCode == 3);
    ExpectedFiles found = filesBelow(dir.filePath(u"out"_s));
    found.remove(u"export-report.csv"_s);
    QCOMPARE(difference(found, expected), QString());
}

void tst_BadBackup::survivesAnIndexCutAnywhere_data()
{
    QTest::addColumn<int>("tenths");
    for (int tenths = 0; tenths < 10; ++tenths)
        QTest::addRow("%d tenths of it", tenths) << tenths;
}

void tst_BadBackup::survivesAnIndexCutAnywhere()
{
    QFETCH(int, tenths);
    QTemporaryDir dir;
    const QString root = dir.filePath(u"backup"_s);
    QVERIFY(!writeUsualBackup(root).isEmpty());
    const QString index = root + u"/Manifest.db"_s;
    truncate(index, QFileInfo(index).size() * tenths / 10 + 7);

    const Result result = run({ root, dir.filePath(u"out"_s) });
    // What can be read may be exported, but never as if it were all.
    QVERIFY2(result.exitCode == 10 || result.exitCode == 3, result.err.constData());
    QVERIFY2(!hasDoubledStop(result), result.err.constData());
    QVERIFY2(result.err.contains("Manifest.db"), result.err.constData());
}

void tst_BadBackup::warnsOfAnInterruptedBackup()
{
    QTemporaryDir dir;
    Sample::BackupWriter writer(dir.filePath(u"backup"_s));
    writer.setStatus(u"SnapshotState"_s, u"uploading"_s);
    const ExpectedFiles expected = addUsualFiles(writer);
    QVERIFY(writer.finish());

    const Result result = run({ u"--quiet"_s, dir.filePath(u"backup"_s), dir.filePath(u"out"_s) });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err.count("Warning: "), 1);
    QVERIFY2(result.err.contains("interrupted") || result.err.contains("not finished"),
             result.err.constData());
    QCOMPARE(difference(filesBelow(dir.filePath(u"out"_s)), expected), QString());
}

void tst_BadBackup::exportsTheRestOfADamagedMedium_data()
{
    QTest::addColumn<bool>("encrypted");
    QTest::addColumn<QString>("unreadable");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("named");
    using Sample::BackupWriter;
    for (const bool encrypted : { false, true }) {
        const char *kind = encrypted ? "encrypted" : "plain";
        const auto row = [&](const QByteArray &named, const QString &file, int exitCode) {
            QTest::addRow("%s, %s", kind, named.constData())
                << encrypted << file << exitCode << named;
        };
        row("", u"no such file"_s, 0);
        row("IMG.JPG", BackupWriter::fileId(u"MediaDomain"_s, kSentPicture), 3);
        row("v.amr", BackupWriter::fileId(u"MediaDomain"_s, kVoiceMessage), 3);
        row("sms.db", BackupWriter::fileId(u"HomeDomain"_s, u"Library/SMS/sms.db"_s), 3);
        row("sms.db-wal", BackupWriter::fileId(u"HomeDomain"_s, u"Library/SMS/sms.db-wal"_s), 3);
        const QString index = encrypted ? u"Manifest.mbdb"_s : u"Manifest.db"_s;
        row(index.toUtf8(), index, 10);
    }
}

void tst_BadBackup::exportsTheRestOfADamagedMedium()
{
    QFETCH(QString, unreadable);
    QFETCH(bool, encrypted);
    QTemporaryDir dir;
    using Layout = Sample::BackupWriter::Layout;
    Sample::BackupWriter writer(dir.filePath(u"backup"_s),
                                encrypted ? Layout::Records : Layout::TwoLevel);
    if (encrypted)
        writer.setEncryption({ u"secret"_s, 10, false, false });
    Sample::Database chats({}, Sample::messageTables(9).constData());
    const QByteArray before = chats.image();
    chats.execute(
        "INSERT INTO chat (ROWID, guid, chat_identifier) VALUES (1, 'c', 'ann@example.com');"
        "INSERT INTO message (ROWID, guid, text, date) VALUES (1, '1', 'hello', 500000000);"
        "INSERT INTO message (ROWID, guid, date, cache_has_attachments) "
        "VALUES (2, '2', 500000001, 1), (3, '3', 500000002, 1);"
        "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 1), (1, 2), (1, 3);"
        "INSERT INTO attachment (ROWID, guid, filename, mime_type) VALUES"
        "(1, 'a', '~/Library/SMS/Attachments/aa/10/a/IMG.JPG', 'image/jpeg'),"
        "(2, 'b', '~/Library/SMS/Attachments/aa/10/b/v.amr', 'audio/amr');"
        "INSERT INTO message_attachment_join VALUES (2, 1), (3, 2);");
    writer.addFile(u"HomeDomain"_s, u"Library/SMS/sms.db"_s, before);
    writer.addFile(
        u"HomeDomain"_s, u"Library/SMS/sms.db-wal"_s, Sample::writeAheadLog(before, chats.image()));
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    QVERIFY(image.save(&buffer, "JPG"));
    writer.addFile(u"MediaDomain"_s, kSentPicture, jpeg);
    writer.addFile(u"MediaDomain"_s, kVoiceMessage, "#!AMR\n" + QByteArray(3200, '<'));
    writer.addFile(u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/IMG_1.JPG"_s, jpeg);
    QVERIFY(writer.finish());

    const Result result = runOnFailingMedia({ dir.filePath(u"backup"_s), dir.filePath(u"out"_s) },
                                            { { u"DATAEXPORT_PASSWORD"_s, u"secret"_s },
                                              { u"DATAEXPORT_TEST_UNREADABLE"_s, unreadable } });

    QFETCH(QByteArray, named);
    QTEST(result.exitCode, "exitCode");
    QVERIFY2(!hasDoubledStop(result), result.err.constData());
    QVERIFY2(result.err.contains(named), result.err.constData());
    const bool isTold =
        result.err.contains("Input/output error") || result.err.contains("disk I/O error");
    QVERIFY2(isTold == (result.exitCode != 0), result.err.constData());
    const QStringList files = Files::tree(dir.filePath(u"out"_s));
    const bool hasIndex = result.exitCode != 10;
    QCOMPARE(files.contains(u"Photos/100APPLE/IMG_1.JPG"_s), hasIndex);
    const auto pages = files.filter(QRegularExpression(u"^Messages/.*html$"_s));
    QCOMPARE(pages.size(), hasIndex && !named.startsWith("sms.db") ? 1 : 0);
}

QTEST_GUILESS_MAIN(tst_BadBackup)
#include "tst_BadBackup.moc"
