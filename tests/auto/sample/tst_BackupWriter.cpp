#include "SqliteRows.h"
#include "sample/BackupWriter.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTimeZone>
#include <QtTest>

#include <plist/plist.h>

#include <memory>

using namespace Qt::StringLiterals;
using Sample::BackupWriter;

namespace {

struct PlistDeleter
{
    void operator()(void *node) const { plist_free(node); }
};
using Plist = std::unique_ptr<void, PlistDeleter>;

Plist parseBinary(const QByteArray &bytes)
{
    plist_t node = nullptr;
    plist_from_bin(bytes.constData(), static_cast<uint32_t>(bytes.size()), &node);
    return Plist(node);
}

quint64 number(plist_t node)
{
    uint64_t value = 0;
    if (plist_get_node_type(node) == PLIST_UID)
        plist_get_uid_val(node, &value);
    else if (plist_get_node_type(node) == PLIST_UINT)
        plist_get_uint_val(node, &value);
    return value;
}

QString text(plist_t node)
{
    return QString::fromUtf8(plist_get_string_ptr(node, nullptr));
}

//! The objects of a keyed archive and the one that is its root.
struct Archive
{
    explicit Archive(const QByteArray &bytes)
        : list(parseBinary(bytes))
        , objects(plist_dict_get_item(list.get(), "$objects"))
        , root(at(plist_access_path(list.get(), 2, "$top", "root")))
    {
    }
    plist_t at(plist_t uid) const
    {
        return plist_array_get_item(objects, static_cast<uint32_t>(number(uid)));
    }
    plist_t field(const char *key) const { return plist_dict_get_item(root, key); }

    Plist list;
    plist_t objects;
    plist_t root;
};

} // namespace

class tst_BackupWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void namesFilesLikeThePhone_data();
    void namesFilesLikeThePhone();
    void makesTheIndexOfThePhone();
    void recordsFilesAsKeyedArchives();
    void addsTheFoldersAboveAFileOnce();
    void placesContents_data();
    void placesContents();
    void writesRowsWithoutContents();
    void writesPropertyLists();
    void reportsWhatFailed();

private:
    QString inRoot(const QString &name) const { return m_root + u'/' + name; }
    QList<QByteArrayList> index(const char *sql) const
    {
        return sqliteRows(inRoot(u"Manifest.db"_s), sql);
    }

    std::unique_ptr<QTemporaryDir> m_temp;
    QString m_root;
};

void tst_BackupWriter::init()
{
    m_temp = std::make_unique<QTemporaryDir>();
    m_root = m_temp->filePath(u"backup"_s);
}

void tst_BackupWriter::namesFilesLikeThePhone_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("id");

    // Identifiers of real phones.
    QTest::newRow("messages") << u"HomeDomain"_s << u"Library/SMS/sms.db"_s
                              << u"3d0d7e5fb2ce288813306e4d4636395e047a3d28"_s;
    QTest::newRow("photos") << u"CameraRollDomain"_s << u"Media/PhotoData/Photos.sqlite"_s
                            << u"12b144c0bd44f2b3dffd9186d3f9c05b917cee25"_s;
    QTest::newRow("app group") << u"AppDomainGroup-group.com.apple.notes"_s << u"NoteStore.sqlite"_s
                               << u"4f98687d8ab0d6d1a371110e6b7300f6e465bef2"_s;
}

void tst_BackupWriter::namesFilesLikeThePhone()
{
    QFETCH(QString, domain);
    QFETCH(QString, path);
    QTEST(BackupWriter::fileId(domain, path), "id");
}

void tst_BackupWriter::makesTheIndexOfThePhone()
{
    BackupWriter writer(m_root);
    writer.addFile(u"HomeDomain"_s, u"a"_s, "x");
    QVERIFY2(writer.finish(), qPrintable(writer.error()));

    const QList<QByteArrayList> expected {
        { "CREATE INDEX FilesDomainIdx ON Files(domain)" },
        { "CREATE INDEX FilesFlagsIdx ON Files(flags)" },
        { "CREATE INDEX FilesRelativePathIdx ON Files(relativePath)" },
        { "CREATE TABLE Files (fileID TEXT PRIMARY KEY, domain TEXT, relativePath TEXT, flags "
          "INTEGER, file BLOB)" },
        { "CREATE TABLE Properties (key TEXT PRIMARY KEY, value BLOB)" },
    };
    QCOMPARE(index("SELECT sql FROM sqlite_master WHERE sql IS NOT NULL ORDER BY sql"), expected);
    QCOMPARE(index("PRAGMA user_version"), QList<QByteArrayList> { { "2" } });
    QCOMPARE(index("PRAGMA page_size"), QList<QByteArrayList> { { "4096" } });
    QCOMPARE(index("PRAGMA integrity_check"), QList<QByteArrayList> { { "ok" } });
    QCOMPARE(Files::read(inRoot(u"Manifest.db"_s)).sliced(18, 2), QByteArray("\2\2"));
    QVERIFY(!QFile::exists(inRoot(u"Manifest.db-wal"_s)));
}

void tst_BackupWriter::recordsFilesAsKeyedArchives()
{
    const QString path = u"Documents/Übersicht.txt"_s;
    Sample::FileTraits traits;
    traits.modified = QDateTime::fromSecsSinceEpoch(1700000000, QTimeZone::utc());
    traits.protectionClass = 4;
    traits.extendedAttributes.insert(u"org.example.mark"_s, QByteArray("\0\xff", 2));
    BackupWriter writer(m_root);
    writer.addFile(u"AppDomain-org.example"_s, path, QByteArray(70000, 'x'), traits);
    QVERIFY2(writer.finish(), qPrintable(writer.error()));

    const Archive file(index("SELECT file FROM Files WHERE flags = 1").value(0).value(0));
    QVERIFY(file.root != nullptr);
    QCOMPARE(text(plist_dict_get_item(file.list.get(), "$archiver")), u"NSKeyedArchiver"_s);
    QCOMPARE(text(plist_dict_get_item(file.at(file.field("$class")), "$classname")), u"MBFile"_s);
    QCOMPARE(text(file.at(file.field("RelativePath"))), path);
    QCOMPARE(number(file.field("Mode")), 0100644U);
    QCOMPARE(number(file.field("Size")), 70000U);
    QCOMPARE(number(file.field("ProtectionClass")), 4U);
    for (const char *time : { "LastModified", "LastStatusChange", "Birth" })
        QCOMPARE(number(file.field(time)), 1700000000U);
    for (const char *id : { "UserID", "GroupID" })
        QCOMPARE(number(file.field(id)), 501U);
    QVERIFY(file.field("InodeNumber") != nullptr && file.field("Flags") != nullptr);

    uint64_t length = 0;
    const char *bytes = plist_get_data_ptr(file.at(file.field("ExtendedAttributes")), &length);
    const Plist attributes = parseBinary(QByteArray(bytes, static_cast<qsizetype>(length)));
    bytes = plist_get_data_ptr(plist_dict_get_item(attributes.get(), "org.example.mark"), &length);
    QCOMPARE(QByteArray(bytes, static_cast<qsizetype>(length)), QByteArray("\0\xff", 2));
}

void tst_BackupWriter::addsTheFoldersAboveAFileOnce()
{
    BackupWriter writer(m_root);
    writer.addFile(u"HomeDomain"_s, u"a/b/one"_s, "1");
    writer.addFile(u"HomeDomain"_s, u"a/b/two"_s, "2");
    writer.addFolder(u"HomeDomain"_s, u"a/c"_s);
    writer.addFolder(u"HomeDomain"_s, u"a"_s);
    QVERIFY2(writer.finish(), qPrintable(writer.error()));

    const QList<QByteArrayList> expected { { "" }, { "a" }, { "a/b" }, { "a/c" } };
    QCOMPARE(index("SELECT relativePath FROM Files WHERE flags = 2 ORDER BY relativePath"),
             expected);
    const Archive folder(
        index("SELECT file FROM Files WHERE relativePath = 'a/b'").value(0).value(0));
    QVERIFY(folder.root != nullptr);
    QCOMPARE(number(folder.field("Mode")), 040755U);
    QCOMPARE(number(folder.field("ProtectionClass")), 0U);
}

void tst_BackupWriter::placesContents_data()
{
    QTest::addColumn<int>("layout");
    QTest::addColumn<QString>("place");

    QTest::newRow("two levels") << static_cast<int>(BackupWriter::Layout::TwoLevel)
                                << u"3d/3d0d7e5fb2ce288813306e4d4636395e047a3d28"_s;
    QTest::newRow("flat") << static_cast<int>(BackupWriter::Layout::Flat)
                          << u"3d0d7e5fb2ce288813306e4d4636395e047a3d28"_s;
}

void tst_BackupWriter::placesContents()
{
    QFETCH(int, layout);
    QFETCH(QString, place);
    BackupWriter writer(m_root, static_cast<BackupWriter::Layout>(layout));
    writer.addFile(u"HomeDomain"_s, u"Library/SMS/sms.db"_s, "content");
    const QString written = writer.contentPath(u"HomeDomain"_s, u"other"_s);
    QVERIFY(Files::write(written, "12345"));
    writer.addWritten(u"HomeDomain"_s, u"other"_s);
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
    QCOMPARE(Files::read(inRoot(place)), QByteArray("content"));

    const Archive other(
        index("SELECT file FROM Files WHERE relativePath = 'other'").value(0).value(0));
    QCOMPARE(number(other.field("Size")), 5U);
}

void tst_BackupWriter::writesRowsWithoutContents()
{
    BackupWriter writer(m_root);
    writer.addWithoutContent(u"HomeDomain"_s, u"gone"_s, 123);
    writer.addIndexRow(u"not hex"_s, u"D"_s, u"../x"_s, 16, "no archive");
    QVERIFY2(writer.finish(), qPrintable(writer.error()));

    QCOMPARE(Files::tree(m_root),
             (QStringList {
                 u"Info.plist"_s, u"Manifest.db"_s, u"Manifest.plist"_s, u"Status.plist"_s }));
    const QList<QByteArrayList> expected { { "not hex", "D", "../x", "16", "no archive" } };
    QCOMPARE(index("SELECT * FROM Files WHERE flags = 16"), expected);
    QCOMPARE(index("SELECT flags FROM Files WHERE relativePath = 'gone'"),
             QList<QByteArrayList> { { "1" } });
}

void tst_BackupWriter::writesPropertyLists()
{
    BackupWriter writer(m_root);
    writer.setInfo(u"Device Name"_s, u"Ä & <B>"_s);
    writer.setInfo(u"Serial Number"_s, QVariant());
    writer.setManifest(u"IsEncrypted"_s, true);
    writer.setStatus(u"SnapshotState"_s, u"uploading"_s);
    QVERIFY2(writer.finish(), qPrintable(writer.error()));

    const QByteArray info = Files::read(inRoot(u"Info.plist"_s));
    QVERIFY(info.startsWith("<?xml"));
    plist_t node = nullptr;
    plist_from_xml(info.constData(), static_cast<uint32_t>(info.size()), &node);
    const Plist parsed(node);
    QCOMPARE(text(plist_dict_get_item(node, "Device Name")), u"Ä & <B>"_s);
    QVERIFY(plist_dict_get_item(node, "Serial Number") == nullptr);
    QCOMPARE(plist_get_node_type(plist_dict_get_item(node, "Last Backup Date")), PLIST_DATE);

    const Plist manifest = parseBinary(Files::read(inRoot(u"Manifest.plist"_s)));
    uint8_t encrypted = 0;
    plist_get_bool_val(plist_dict_get_item(manifest.get(), "IsEncrypted"), &encrypted);
    QCOMPARE(encrypted, uint8_t(1));
    const Plist status = parseBinary(Files::read(inRoot(u"Status.plist"_s)));
    QCOMPARE(text(plist_dict_get_item(status.get(), "SnapshotState")), u"uploading"_s);
}

void tst_BackupWriter::reportsWhatFailed()
{
    QVERIFY(Files::write(m_root, "a file where the folder should be"));
    BackupWriter blocked(m_root);
    blocked.addFile(u"HomeDomain"_s, u"a"_s, "x");
    QVERIFY(!blocked.finish());
    QVERIFY2(blocked.error().contains(u"backup"_s), qPrintable(blocked.error()));

    m_root = m_temp->filePath(u"twice"_s);
    BackupWriter first(m_root);
    QVERIFY(first.finish());
    BackupWriter second(m_root);
    second.addFile(u"HomeDomain"_s, u"a"_s, "x");
    QVERIFY(!second.finish());
    QVERIFY(!QFile::exists(inRoot(u"b9"_s)));
}

QTEST_GUILESS_MAIN(tst_BackupWriter)
#include "tst_BackupWriter.moc"
