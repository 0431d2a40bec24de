#include "BackupFixture.h"
#include "PhoneBackup/base/PrivateFolder.h"
#include "PhoneItems/words/Words.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using PhoneBackup::Fault;
using PhoneBackup::Password;
using PhoneBackup::Secret;
using PhoneItems::Backup;
using Sample::BackupWriter;
using Sample::Encryption;
using Sample::FileTraits;
using Layout = Sample::BackupWriter::Layout;

namespace {

constexpr int kPhotos = 0;
constexpr int kVoiceMemos = 3;
const QString kCamera = u"CameraRollDomain"_s;
const QString kPassword = u"correct hörse"_s;

QString picture(int number)
{
    return u"Media/DCIM/100APPLE/IMG_%1.JPG"_s.arg(number, 4, 10, QChar(u'0'));
}

Encryption::Settings quick(bool twoSteps = true, bool encryptIndex = true)
{
    Encryption::Settings settings;
    settings.password = kPassword;
    settings.iterations = 10;
    settings.twoSteps = twoSteps;
    settings.encryptIndex = encryptIndex;
    return settings;
}

QByteArray bytesOf(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 31 >> 2);
    return bytes;
}

// A backup that is not opened with the fixture's own open(), which knows no password.
struct Opened
{
    explicit Opened(BackupFixture &fixture, const QString &text = kPassword)
    {
        if (!fixture.finish())
            return;
        Password password;
        password.text = Secret(QByteArrayView(text.toUtf8()));
        auto result = Backup::open(fixture.root(), {}, password);
        if (result)
            backup = result.take();
        else
            error = result.error();
    }

    const BkFileItem *item(int type, int index) const
    {
        return dynamic_cast<const BkFileItem *>(
            backup->getBkData(type)->recoverFileList().value(index));
    }

    QByteArray stream(int type, int index) const
    {
        const std::unique_ptr<QIODevice> device = item(type, index)->openStream();
        return device->isOpen() ? device->readAll() : device->errorString().toUtf8();
    }

    QStringList problems() const
    {
        QStringList lines;
        for (const PhoneBackup::Problem &problem : backup->problems())
            lines += problem.source + u": "_s + PhoneItems::words(problem.what)
                + (problem.loss ? u" (loss)"_s : QString());
        return lines;
    }

    std::unique_ptr<Backup> backup;
    PhoneBackup::Error error {};
};

QByteArray memos(const char *title)
{
    return BackupFixture::database(
        QByteArray("CREATE TABLE ZCLOUDRECORDING (Z_PK INTEGER PRIMARY KEY, ZPATH VARCHAR, "
                   "ZENCRYPTEDTITLE VARCHAR);"
                   "INSERT INTO ZCLOUDRECORDING VALUES (1, 'a.m4a', '"
                   + QByteArray(title) + "')")
            .constData());
}

} // namespace

//! Encrypted backups as the item model shows them.
class tst_EncryptedBackup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void readsEveryVariant_data();
    void readsEveryVariant();
    void needsItsPassword();
    void refusesAnIndexThatItCannotDecrypt_data();
    void refusesAnIndexThatItCannotDecrypt();
    void guessesWhenTheFlagIsNoFlag_data();
    void guessesWhenTheFlagIsNoFlag();
    void exportsTheRestOfADamagedFile_data();
    void exportsTheRestOfADamagedFile();
    void reportsLockedFiles();
    void readsDatabasesWithTheirLogs_data();
    void readsDatabasesWithTheirLogs();
    void leavesNothingPlain();
    void removesWhatACrashLeft();

private:
    // What lies in private folders; the backup itself is temporary, too.
    QStringList leftovers() const
    {
        return Files::tree(m_temp->path()).filter(QRegularExpression(u"^dataexport-private-"_s));
    }

    std::unique_ptr<QTemporaryDir> m_temp;
};

void tst_EncryptedBackup::init()
{
    m_temp = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", QFile::encodeName(m_temp->path()));
}

void tst_EncryptedBackup::cleanup()
{
    qunsetenv("TMPDIR");
}

void tst_EncryptedBackup::readsEveryVariant_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<bool>("twoSteps");
    QTest::addColumn<bool>("encryptIndex");
    QTest::newRow("two steps, index encrypted") << Layout::TwoLevel << true << true;
    QTest::newRow("one step, index plain") << Layout::TwoLevel << false << false;
    QTest::newRow("one step, index encrypted") << Layout::TwoLevel << false << true;
    QTest::newRow("flat, index encrypted") << Layout::Flat << true << true;
    QTest::newRow("flat, old index") << Layout::Records << false << false;
}

void tst_EncryptedBackup::readsEveryVariant()
{
    QFETCH(Layout, layout);
    QFETCH(bool, twoSteps);
    QFETCH(bool, encryptIndex);
    const QList<qsizetype> sizes { 0, 1, 15, 16, 17, 1048576, 1048577, 3000000 };
    const QDateTime modified(QDate(2019, 3, 31), QTime(1, 59, 58), Qt::UTC);

    BackupFixture fixture(layout);
    fixture.writer.setEncryption(quick(twoSteps, encryptIndex));
    for (int i = 0; i < sizes.size(); ++i) {
        FileTraits traits;
        traits.modified = modified;
        traits.protectionClass = 1 + i % 4;
        fixture.writer.addFile(kCamera, picture(i), bytesOf(sizes[i]), traits);
    }
    const Opened opened(fixture);
    QVERIFY2(opened.backup, qPrintable(PhoneItems::words(opened.error.what)));
    QCOMPARE(opened.backup->info().encrypted, true);
    QCOMPARE(opened.backup->getBkData(kPhotos)->recoverCount(), int(sizes.size()));
    for (int i = 0; i < sizes.size(); ++i) {
        const BkFileItem *item = opened.item(kPhotos, i);
        const QByteArray expected = bytesOf(sizes[i]);
        QVERIFY(item->isStreamed());
        QCOMPARE(item->sizeBytes(), sizes[i]);
        QCOMPARE(item->fileDate(), modified);
        QVERIFY(opened.stream(kPhotos, i) == expected);
        // Who knows no streams gets the bytes, or a path to a copy.
        const QByteArray inMemory = item->fileData();
        QVERIFY(inMemory == (sizes[i] <= 1048576 ? expected : QByteArray()));
        QVERIFY(Files::read(item->filePath()) == expected);
    }
    QCOMPARE(opened.problems(), QStringList());
}

void tst_EncryptedBackup::needsItsPassword()
{
    BackupFixture fixture;
    fixture.writer.setEncryption(quick());
    fixture.writer.addFile(kCamera, picture(1), "picture");
    QVERIFY(fixture.finish());

    const auto without = Backup::open(fixture.root());
    QCOMPARE(without.error().fault, Fault::Encrypted);
    QVERIFY(PhoneItems::words(without.error().what).contains(u"password"_s));
    QCOMPARE(Opened(fixture, u"wrong"_s).error.fault, Fault::WrongPassword);

    Password password;
    password.text = Secret(QByteArrayView("wrong"));
    QList<int> shown;
    password.progress = [&shown](int percent) { shown += percent; };
    const auto stopped = Backup::open(
        fixture.root(), [] { return false; }, password);
    QCOMPARE(stopped.error().fault, Fault::Cancelled);
    QCOMPARE(shown, QList<int> { 0 });
}

void tst_EncryptedBackup::refusesAnIndexThatItCannotDecrypt_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("words");

    const Encryption encryption(quick());
    const QByteArray bag = encryption.keybag();
    const qsizetype firstClass = bag.indexOf("UUID", bag.indexOf("UUID") + 4);
    Encryption::Settings few = quick();
    few.classes = { 1, 2, 3 };
    QTest::newRow("no keybag") << u"BackupKeyBag"_s << QVariant(QByteArray()) << u"no key"_s;
    QTest::newRow("keybag of another type")
        << u"BackupKeyBag"_s << QVariant(u"text"_s) << u"cut off"_s;
    QTest::newRow("keybag cut in its header")
        << u"BackupKeyBag"_s << QVariant(bag.first(firstClass - 3)) << u"cut off"_s;
    QTest::newRow("class of the index missing")
        << u"BackupKeyBag"_s << QVariant(Encryption(few).keybag()) << u"class 4"_s;
    QTest::newRow("key of the index missing")
        << u"ManifestKey"_s << QVariant(QByteArray()) << u"Manifest.db"_s;
    QTest::newRow("key of the index cut")
        << u"ManifestKey"_s << QVariant(QByteArray(10, 'k')) << u"key is damaged"_s;
    QTest::newRow("another key of the index")
        << u"ManifestKey"_s << QVariant(encryption.wrapped(QByteArray(32, 'k'), 4))
        << u"Manifest.db"_s;
}

void tst_EncryptedBackup::refusesAnIndexThatItCannotDecrypt()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(QString, words);
    BackupFixture fixture;
    fixture.writer.setEncryption(quick());
    fixture.writer.setManifest(key, value);
    fixture.writer.addFile(kCamera, picture(1), "picture");
    const Opened opened(fixture);
    QCOMPARE(opened.error.fault, Fault::Corrupt);
    QVERIFY2(PhoneItems::words(opened.error.what).contains(words),
             qPrintable(PhoneItems::words(opened.error.what)));
    QVERIFY(opened.error.path.startsWith(fixture.root()));
    QCOMPARE(leftovers(), QStringList());
}

void tst_EncryptedBackup::guessesWhenTheFlagIsNoFlag_data()
{
    QTest::addColumn<bool>("encrypt");
    QTest::addColumn<QVariant>("flag");
    QTest::addColumn<bool>("warns");
    QTest::newRow("number") << true << QVariant(1) << false;
    QTest::newRow("text") << true << QVariant(u"false"_s) << true;
    QTest::newRow("missing") << true << QVariant() << true;
    QTest::newRow("plain, number") << false << QVariant(0) << false;
    QTest::newRow("plain, text") << false << QVariant(u"no"_s) << true;
    QTest::newRow("plain, data") << false << QVariant(QByteArray("x")) << true;
}

void tst_EncryptedBackup::guessesWhenTheFlagIsNoFlag()
{
    QFETCH(bool, encrypt);
    QFETCH(QVariant, flag);
    QFETCH(bool, warns);
    BackupFixture fixture;
    if (encrypt)
        fixture.writer.setEncryption(quick());
    fixture.writer.setManifest(u"IsEncrypted"_s, flag);
    fixture.writer.addFile(kCamera, picture(1), "picture");
    const Opened opened(fixture);
    QVERIFY2(opened.backup, qPrintable(PhoneItems::words(opened.error.what)));
    QCOMPARE(opened.backup->info().encrypted, encrypt);
    QCOMPARE(Files::read(opened.item(kPhotos, 0)->filePath()), QByteArray("picture"));
    QCOMPARE(opened.problems().size(), warns ? 1 : 0);
}

void tst_EncryptedBackup::exportsTheRestOfADamagedFile_data()
{
    QTest::addColumn<qsizetype>("keep");
    QTest::addColumn<qsizetype>("expected");
    QTest::addColumn<QString>("words");
    QTest::newRow("cut in a block") << qsizetype(95009) << qsizetype(95008) << u"in the middle"_s;
    QTest::newRow("cut between blocks") << qsizetype(95008) << qsizetype(95008) << u"padding"_s;
    QTest::newRow("cut early") << qsizetype(80000) << qsizetype(80000) << u"100000 bytes"_s;
    QTest::newRow("empty") << qsizetype(0) << qsizetype(0) << u"100000 bytes"_s;
}

void tst_EncryptedBackup::exportsTheRestOfADamagedFile()
{
    QFETCH(qsizetype, keep);
    QFETCH(qsizetype, expected);
    QFETCH(QString, words);
    BackupFixture fixture;
    fixture.writer.setEncryption(quick());
    fixture.writer.addFile(kCamera, picture(1), bytesOf(100000));
    QVERIFY(fixture.finish());
    QVERIFY(QFile::resize(fixture.contentPath(kCamera, picture(1)), keep));

    const Opened opened(fixture);
    QVERIFY(opened.stream(kPhotos, 0) == bytesOf(expected));
    const QStringList problems = opened.problems();
    QCOMPARE(problems.size(), 1);
    QVERIFY2(problems[0].contains(words) && problems[0].contains(u"IMG_0001.JPG"_s)
                 && problems[0].endsWith(u"(loss)"_s),
             qPrintable(problems[0]));
    // Once is enough, however often it is read.
    static_cast<void>(opened.stream(kPhotos, 0));
    QCOMPARE(opened.problems(), problems);
}

void tst_EncryptedBackup::reportsLockedFiles()
{
    Encryption::Settings settings = quick();
    settings.classes = { 1, 3, 4 };
    BackupFixture fixture;
    fixture.writer.setEncryption(settings);
    FileTraits locked;
    locked.protectionClass = 2;
    FileTraits withoutKey;
    withoutKey.hasKey = false;
    fixture.writer.addFile(kCamera, picture(1), "open");
    fixture.writer.addFile(kCamera, picture(2), "locked", locked);
    fixture.writer.addFile(kCamera, picture(3), "never encrypted", withoutKey);
    fixture.writer.addFile(kCamera, picture(4), "no record");
    const QString db = u"Media/PhotoData/Photos.sqlite"_s;
    fixture.writer.addFile(kCamera, db, BackupFixture::database("CREATE TABLE t (a)"), locked);
    // A record that cannot be read takes the key of its file along.
    fixture.writer.addIndexRow(
        BackupWriter::fileId(kCamera, picture(5)), kCamera, picture(5), 1, "no archive");
    QVERIFY(Files::write(fixture.contentPath(kCamera, picture(5)), "0123456789abcdef"));

    const Opened opened(fixture);
    QVERIFY2(opened.backup, qPrintable(PhoneItems::words(opened.error.what)));
    QCOMPARE(opened.stream(kPhotos, 0), QByteArray("open"));
    QVERIFY(opened.stream(kPhotos, 1).contains("class 2"));
    QVERIFY(opened.item(kPhotos, 1)->filePath().isEmpty());
    QCOMPARE(opened.stream(kPhotos, 2), QByteArray("never encrypted"));
    QCOMPARE(opened.stream(kPhotos, 3), QByteArray("no record"));
    QVERIFY(opened.stream(kPhotos, 4).contains("index"));
    const QString problems = opened.problems().join(u'\n');
    QVERIFY2(problems.contains(u"Photos.sqlite” cannot be read. It is locked"_s),
             qPrintable(problems));
    QVERIFY2(problems.contains(u"IMG_0003.JPG: It has no key"_s), qPrintable(problems));
}

void tst_EncryptedBackup::readsDatabasesWithTheirLogs_data()
{
    QTest::addColumn<bool>("encrypted");
    QTest::addColumn<QString>("log"); // "missing, <size in the index>": it has no file
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("problem");
    for (const bool encrypted : { false, true }) {
        const char *kind = encrypted ? "encrypted" : "plain";
        const auto row = [&](const char *log, const QString &title, const QString &problem) {
            QTest::addRow("%s, %s", kind, log)
                << encrypted << QString::fromLatin1(log) << title << problem;
        };
        row("full", u"new title"_s, {});
        row("empty", u"old title"_s, {});
        row("no file, 0 bytes in the index", u"old title"_s, {});
        row("no file, 4152 bytes in the index", u"old title"_s, u"-wal” is missing"_s);
        row("of an empty database", u"a"_s, u"db” is empty"_s);
    }
}

void tst_EncryptedBackup::readsDatabasesWithTheirLogs()
{
    QFETCH(bool, encrypted);
    QFETCH(QString, log);
    const QString domain = u"MediaDomain"_s;
    const QString database = u"Media/Recordings/CloudRecordings.db"_s;
    const QByteArray before = memos("old title");
    BackupFixture fixture;
    if (encrypted)
        fixture.writer.setEncryption(quick());
    fixture.writer.addFile(domain, u"Media/Recordings/a.m4a"_s, "sound");
    fixture.writer.addFile(domain, database, before);
    if (log.startsWith(u"no file"_s))
        fixture.writer.addWithoutContent(
            domain, database + u"-wal"_s, log.section(u' ', 2, 2).toInt());
    else
        fixture.writer.addFile(
            domain,
            database + u"-wal"_s,
            log == u"empty"_s ? QByteArray() : Sample::writeAheadLog(before, memos("new title")));
    QVERIFY(fixture.finish());
    if (log == u"of an empty database"_s)
        QVERIFY(QFile::resize(fixture.contentPath(domain, database), 0));

    const Opened opened(fixture);
    QVERIFY2(opened.backup, qPrintable(PhoneItems::words(opened.error.what)));
    QTEST(opened.item(kVoiceMemos, 0)->value(0).chopped(4), "title");
    QFETCH(QString, problem);
    const QString problems = opened.problems().join(u'\n');
    QVERIFY2(problems.contains(problem) && problems.isEmpty() == problem.isEmpty(),
             qPrintable(problems));
    // What was decrypted for it lies where nobody else can look.
    const QFileInfo place(m_temp->filePath(leftovers().value(0)));
    QCOMPARE(place.permissions() & QFile::Permissions(0x0077), QFile::Permissions());
}

void tst_EncryptedBackup::leavesNothingPlain()
{
    const QByteArray mark = "these words stand in the plain file only";
    BackupFixture fixture;
    fixture.writer.setEncryption(quick());
    for (int i = 0; i < 5; ++i)
        fixture.writer.addFile(kCamera, picture(i), mark + bytesOf(2000000));
    {
        const Opened opened(fixture);
        for (int i = 0; i < 5; ++i)
            QVERIFY(opened.stream(kPhotos, i).startsWith(mark));
        const auto plainFiles = [&] {
            int count = 0;
            const QStringList files = leftovers();
            for (const QString &file : files)
                count += Files::read(m_temp->filePath(file)).contains(mark) ? 1 : 0;
            return count;
        };
        QCOMPARE(plainFiles(), 0);
        for (int i = 0; i < 5; ++i)
            QVERIFY(Files::read(opened.item(kPhotos, i)->filePath()).startsWith(mark));
        QCOMPARE(plainFiles(), 1);
    }
    QCOMPARE(leftovers(), QStringList());
}

void tst_EncryptedBackup::removesWhatACrashLeft()
{
    const auto make = [this](const QString &name, QFile::Permissions rights) {
        const QString path = m_temp->filePath(name);
        return Files::write(path + u"/1/copy.db"_s, "plain") && QFile::setPermissions(path, rights);
    };
    const QFile::Permissions own = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    QVERIFY(make(u"dataexport-private-AbCdEf"_s, own));
    QVERIFY(make(u"dataexport-private-inUse1"_s, own));
    QVERIFY(make(u"dataexport-private-somebody's"_s, own));
    QVERIFY(make(u"dataexport-private-Shared"_s, own | QFile::ReadOther | QFile::ExeOther));
    const int lock = ::open(QFile::encodeName(m_temp->filePath(u"dataexport-private-inUse1"_s)),
                            O_RDONLY | O_DIRECTORY);
    QCOMPARE(::flock(lock, LOCK_EX), 0);

    BackupFixture fixture;
    fixture.writer.addFile(kCamera, picture(1), "picture");
    QVERIFY(fixture.open());
    ::close(lock);
    QCOMPARE(QDir(m_temp->path()).entryList({ u"dataexport-private-*"_s }, QDir::Dirs, QDir::Name),
             (QStringList { u"dataexport-private-Shared"_s,
                            u"dataexport-private-inUse1"_s,
                            u"dataexport-private-somebody's"_s }));
}

QTEST_GUILESS_MAIN(tst_EncryptedBackup)
#include "tst_EncryptedBackup.moc"
