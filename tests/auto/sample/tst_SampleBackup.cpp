#include "SqliteRows.h"
#include "sample/BackupWriter.h"
#include "sample/SampleBackup.h"
#include "support/Files.h"

#include <QBuffer>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;
using Sample::BackupWriter;

namespace {

const QString kCamera = u"CameraRollDomain"_s;

void make(const QString &root, const Sample::Options &options)
{
    BackupWriter writer(root);
    Sample::addSampleContents(writer, options);
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
}

} // namespace

class tst_SampleBackup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sameSeedSameBytes();
    void everyFileHasItsContent();
    void picturesOpenUpright();
    void knowsItsPhotos();
    void keepsNewestVoicemailInTheLog();
    void fillsFilesUpToTheirSize();
    void leavesOutWhatIsNotWanted_data();
    void leavesOutWhatIsNotWanted();
    void theProgramMakesOneBackupAFolder();
    void theProgramMakesOtherKinds_data();
    void theProgramMakesOtherKinds();

private:
    QString inTemp(const QString &name) const { return m_temp.filePath(name); }
    static QByteArray content(const QString &root, const QString &id)
    {
        return Files::read(u"%1/%2/%3"_s.arg(root, id.first(2), id));
    }

    QTemporaryDir m_temp;
    QString m_root;
};

void tst_SampleBackup::initTestCase()
{
    m_root = inTemp(u"sample"_s);
    make(m_root, {});
}

void tst_SampleBackup::sameSeedSameBytes()
{
    make(inTemp(u"again"_s), {});
    const QStringList tree = Files::tree(m_root);
    QVERIFY(tree.size() > 100);
    QCOMPARE(Files::tree(inTemp(u"again"_s)), tree);
    for (const QString &name : tree)
        QVERIFY2(Files::read(m_root + u'/' + name) == Files::read(inTemp(u"again/"_s + name)),
                 qPrintable(name));

    Sample::Options other;
    other.seed = 2;
    make(inTemp(u"other"_s), other);
    QVERIFY(Files::tree(inTemp(u"other"_s)) != tree);
}

void tst_SampleBackup::everyFileHasItsContent()
{
    QStringList expected {
        u"Info.plist"_s, u"Manifest.db"_s, u"Manifest.plist"_s, u"Status.plist"_s
    };
    const auto rows = sqliteRows(m_root + "/Manifest.db"_L1,
                                 "SELECT fileID, domain, relativePath FROM Files WHERE flags = 1");
    QSet<QString> folders;
    for (const QByteArrayList &row : rows) {
        const QString id = QString::fromLatin1(row[0]);
        QCOMPARE(id, BackupWriter::fileId(QString::fromUtf8(row[1]), QString::fromUtf8(row[2])));
        expected << u"%1/%2"_s.arg(id.first(2), id);
        folders << id.first(2) + u'/';
    }
    expected += folders.values();
    expected.sort();
    QCOMPARE(Files::tree(m_root), expected);
}

void tst_SampleBackup::picturesOpenUpright()
{
    const auto rows = sqliteRows(m_root + "/Manifest.db"_L1,
                                 "SELECT fileID, relativePath FROM Files WHERE flags = 1 "
                                 "AND domain = 'CameraRollDomain' "
                                 "AND (relativePath LIKE '%.JPG' OR relativePath LIKE '%.PNG')");
    QSet<QByteArray> different;
    QSet<int> transformations;
    for (const QByteArrayList &row : rows) {
        QByteArray bytes = content(m_root, QString::fromLatin1(row[0]));
        QBuffer buffer(&bytes);
        QImageReader reader(&buffer);
        reader.setAutoTransform(true);
        QVERIFY2(reader.canRead(), row[1].constData());
        transformations.insert(static_cast<int>(reader.transformation()));
        const QImage image = reader.read();
        QVERIFY2(!image.isNull(), row[1].constData());
        if (!row[1].endsWith("PNG"))
            QVERIFY2(image.width() > image.height(), row[1].constData());
        different.insert(bytes);
    }
    QVERIFY(rows.size() > 30);
    QCOMPARE(different.size(), rows.size());
    QCOMPARE(transformations,
             (QSet<int> { QImageIOHandler::TransformationNone,
                          QImageIOHandler::TransformationRotate90,
                          QImageIOHandler::TransformationRotate180,
                          QImageIOHandler::TransformationRotate270 }));
}

void tst_SampleBackup::knowsItsPhotos()
{
    const QString id = BackupWriter::fileId(kCamera, u"Media/PhotoData/Photos.sqlite"_s);
    const QString database = u"%1/%2/%3"_s.arg(m_root, id.first(2), id);
    QCOMPARE(sqliteRows(database, "PRAGMA integrity_check"), QList<QByteArrayList> { { "ok" } });

    int missing = 0;
    const auto assets =
        sqliteRows(database, "SELECT 'Media/' || ZDIRECTORY || '/' || ZFILENAME FROM ZASSET");
    for (const QByteArrayList &asset : assets) {
        if (content(m_root, BackupWriter::fileId(kCamera, QString::fromUtf8(asset.value(0))))
                .isNull())
            ++missing;
    }
    const Sample::Options usual;
    QCOMPARE(missing, 1); // The one whose original is in the cloud.
    QCOMPARE(
        sqliteRows(database,
                   "SELECT count(*), sum(ZTRASHEDSTATE) FROM ZASSET WHERE ZSAVEDASSETTYPE <> 4")
            .value(0),
        (QByteArrayList { QByteArray::number(usual.photos + usual.videos + 1), "3" }));
    const auto albums = sqliteRows(
        database,
        "SELECT DISTINCT ZTITLE, b.ZKIND FROM ZGENERICALBUM b JOIN Z_26ASSETS ON Z_26ALBUMS = "
        "b.Z_PK JOIN ZASSET a ON a.Z_PK = Z_3ASSETS ORDER BY 1");
    QCOMPARE(albums,
             (QList<QByteArrayList> {
                 { "Regatta", "1505" }, { "Sailing", "2" }, { "Weekend in the Hills", "2" } }));
}

void tst_SampleBackup::keepsNewestVoicemailInTheLog()
{
    const auto part = [this](const QString &name) {
        return content(m_root,
                       BackupWriter::fileId(u"HomeDomain"_s, u"Library/Voicemail/"_s + name));
    };
    const QString copy = inTemp(u"voicemail.db"_s);
    QVERIFY(Files::write(copy, part(u"voicemail.db"_s)));
    const char *count = "SELECT count(*) FROM voicemail";
    QCOMPARE(sqliteRows(copy, count), QList<QByteArrayList> { { "3" } });

    QVERIFY(Files::write(copy + "-wal"_L1, part(u"voicemail.db-wal"_s)));
    QCOMPARE(sqliteRows(copy, count, false), QList<QByteArrayList> { { "6" } });
    QCOMPARE(sqliteRows(copy, "PRAGMA integrity_check"), QList<QByteArrayList> { { "ok" } });
    QVERIFY(part(u"5.amr"_s).startsWith("#!AMR\n"));
    QVERIFY(part(u"6.amr"_s).isNull());
}

void tst_SampleBackup::fillsFilesUpToTheirSize()
{
    Sample::Options options;
    options.photos = 1100; // More than one folder holds, and more than are drawn.
    options.fileSizesBytes = { 20000, 31000 };
    const QString root = inTemp(u"sized"_s);
    make(root, options);

    const auto rows = sqliteRows(
        root + "/Manifest.db"_L1,
        "SELECT fileID, relativePath FROM Files WHERE relativePath LIKE 'Media/DCIM/%/IMG%' "
        "AND relativePath NOT LIKE '%.AAE'");
    QMap<qsizetype, int> sizes;
    QSet<QByteArray> different;
    for (const QByteArrayList &row : rows) {
        QByteArray bytes = content(root, QString::fromLatin1(row[0]));
        ++sizes[bytes.size()];
        different.insert(bytes);
        QVERIFY2(row[1].endsWith("MOV") || !QImage::fromData(bytes).isNull(), row[1].constData());
    }
    QVERIFY(rows.size() > 1100);
    QCOMPARE(sizes.keys(), options.fileSizesBytes);
    QCOMPARE(different.size(), rows.size());
    QCOMPARE(
        sqliteRows(
            root + "/Manifest.db"_L1,
            "SELECT count(*) FROM Files WHERE relativePath = 'Media/DCIM/101APPLE/IMG_1001.JPG'"),
        QList<QByteArrayList> { { "1" } });
}

void tst_SampleBackup::leavesOutWhatIsNotWanted_data()
{
    QTest::addColumn<QString>("place");

    // All but the system's own settings.
    QTest::newRow("camera roll") << u"CameraRollDomain-%"_s;
    QTest::newRow("voice memos") << u"MediaDomain-Media/Recordings%"_s;
    QTest::newRow("voicemail") << u"HomeDomain-Library/Voicemail%"_s;
    QTest::newRow("books") << u"BooksDomain-%"_s;
    QTest::newRow("ringtones") << u"TonesDomain-%"_s;
    QTest::newRow("messages") << u"HomeDomain-Library/SMS%"_s;
    QTest::newRow("contacts") << u"HomeDomain-Library/AddressBook%"_s;
    QTest::newRow("files of messages") << u"MediaDomain-Library/SMS%"_s;
    QTest::newRow("WhatsApp") << u"AppDomainGroup-group.net.whatsapp%"_s;
    QTest::newRow("calls") << u"HomeDomain-Library/CallHistoryDB%"_s;
    QTest::newRow("browser data") << u"HomeDomain-Library/Safari%"_s;
    QTest::newRow("apps") << u"AppDomain%"_s;
}

void tst_SampleBackup::leavesOutWhatIsNotWanted()
{
    QFETCH(QString, place);
    const QString root = inTemp(u"bare"_s);
    if (!QFile::exists(root)) {
        Sample::Options none;
        none.photos = none.videos = none.sharedPhotos = none.voiceMemos = 0;
        none.books = none.ringtones = none.appDocuments = none.voicemails = none.messages = 0;
        none.contacts = none.notes = none.events = none.reminders = none.whatsappMessages = 0;
        none.calls = none.bookmarks = none.history = 0;
        make(root, none);
    }
    const QByteArray sql =
        u"SELECT count(*) > 0 FROM Files WHERE domain || '-' || relativePath LIKE '%1'"_s.arg(place)
            .toUtf8();
    QCOMPARE(sqliteRows(root + "/Manifest.db"_L1, sql.constData()),
             QList<QByteArrayList> { { "0" } });
    QCOMPARE(sqliteRows(m_root + "/Manifest.db"_L1, sql.constData()),
             QList<QByteArrayList> { { "1" } });
}

void tst_SampleBackup::theProgramMakesOneBackupAFolder()
{
    const QString out = inTemp(u"made by the program"_s);
    const auto run = [&out](const QStringList &more) {
        QProcess program;
        program.start(QStringLiteral(MAKE_SAMPLE_BACKUP), QStringList { out } + more);
        program.waitForFinished();
        return std::pair(program.exitCode(),
                         program.readAllStandardOutput() + program.readAllStandardError());
    };
    const auto [first, made] = run({ u"--photos"_s, u"2"_s, u"--videos"_s, u"1"_s });
    QVERIFY2(first == 0 && made.contains("2 photos, 1 video,"), made.constData());
    const auto [second, refused] = run({});
    QVERIFY2(second == 2 && refused.contains("not an empty folder"), refused.constData());
    const auto [third, wrong] = run({ u"--photos"_s, u"-3"_s });
    QVERIFY2(third == 2 && wrong.contains("--photos"), wrong.constData());
}

void tst_SampleBackup::theProgramMakesOtherKinds_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("index");
    QTest::addColumn<QByteArray>("begin"); // of the index; empty: of no kind that is known
    QTest::addColumn<bool>("isPlain");
    const QStringList encrypted { u"--encrypted"_s, u"secret"_s, u"--iterations"_s, u"5"_s };
    const QStringList old { u"--old-style"_s };
    QTest::newRow("encrypted") << encrypted << u"Manifest.db"_s << QByteArray() << false;
    QTest::newRow("old style") << old << u"Manifest.mbdb"_s << QByteArray("mbdb\5\0", 6) << true;
    QTest::newRow("old style, encrypted")
        << old + encrypted << u"Manifest.mbdb"_s << QByteArray("mbdb\5\0", 6) << false;
}

void tst_SampleBackup::theProgramMakesOtherKinds()
{
    QFETCH(QStringList, options);
    QFETCH(QString, index);
    QFETCH(QByteArray, begin);
    QFETCH(bool, isPlain);
    const QString out = inTemp(QString::fromUtf8(QTest::currentDataTag()));
    QCOMPARE(QProcess::execute(QStringLiteral(MAKE_SAMPLE_BACKUP),
                               QStringList { out, u"--photos"_s, u"1"_s } + options),
             0);
    const QByteArray stored = Files::read(out + u'/' + index);
    QVERIFY(begin.isEmpty() ? !stored.startsWith("SQLite") : stored.startsWith(begin));
    const bool isOld = index == u"Manifest.mbdb"_s;
    QCOMPARE(QFileInfo::exists(out + u"/Manifest.db"_s), !isOld);
    const QString id = BackupWriter::fileId(u"HomeDomain"_s, u"Library/SMS/sms.db"_s);
    const QString messages = out + u'/' + (isOld ? id : id.first(2) + u'/' + id);
    QCOMPARE(Files::read(messages).startsWith("SQLite format 3"), isPlain);
    QCOMPARE(QFileInfo(messages).size() % 4096, isPlain ? 0 : 16);
}

QTEST_GUILESS_MAIN(tst_SampleBackup)
#include "tst_SampleBackup.moc"
