#include "BackupFixture.h"

#include <QtTest>

#include <minizip/unzip.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kBooks = 4;
const QString kDomain = u"BooksDomain"_s;

struct ZipEntry
{
    QString name;
    bool stored = false;
    qsizetype extraBytes = 0;
    QByteArray content;
};

QList<ZipEntry> unzip(const QString &path)
{
    QList<ZipEntry> entries;
    unzFile zip = unzOpen64(QFile::encodeName(path).constData());
    for (int code = zip ? unzGoToFirstFile(zip) : UNZ_EOF; code == UNZ_OK;
         code = unzGoToNextFile(zip)) {
        unz_file_info64 info;
        char name[1000] = {};
        unzGetCurrentFileInfo64(zip, &info, name, sizeof name, nullptr, 0, nullptr, 0);
        ZipEntry entry { QString::fromUtf8(name), info.compression_method == 0, 0, {} };
        unzOpenCurrentFile(zip);
        entry.extraBytes = unzGetLocalExtrafield(zip, nullptr, 0);
        entry.content.resize(qsizetype(info.uncompressed_size));
        if (unzReadCurrentFile(zip, entry.content.data(), unsigned(entry.content.size()))
                != int(entry.content.size())
            || unzCloseCurrentFile(zip) != UNZ_OK)
            entry.content = "damaged";
        entries.append(entry);
    }
    unzClose(zip);
    return entries;
}

const BkFileItem *firstItem(BackupFixture &fixture)
{
    const QList<BkAbstractItem *> items = fixture.open()->getBkData(kBooks)->recoverFileList();
    return items.isEmpty() ? nullptr : dynamic_cast<const BkFileItem *>(items.constFirst());
}

} // namespace

class tst_Books : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesBooks_data();
    void namesBooks();
    void packsABookThatIsAFolder();
    void packsWhatIsThere();
    void leavesNoWayOutOfTheArchive();
};

void tst_Books::namesBooks_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("list");
    QTest::addColumn<QVariant>("books");
    QTest::addColumn<QString>("expected"); // empty: no book

    const QVariantList entry { QVariantMap { { u"Path"_s, u"AB12.epub"_s },
                                             { u"Name"_s, u"Moby: Dick"_s } } };
    QTest::newRow("title") << u"AB12.epub"_s << u"Books.plist"_s << QVariant(entry)
                           << u"Moby_ Dick.epub"_s;
    QTest::newRow("title beside the purchases")
        << u"Purchases/AB12.epub"_s << u"Purchases/Purchases.plist"_s << QVariant(entry)
        << u"Moby_ Dick.epub"_s;
    QTest::newRow("store's name for it")
        << u"AB12.epub"_s << u"Books.plist"_s
        << QVariant(QVariantList {
               5, QVariantMap { { u"Path"_s, u"AB12.epub"_s }, { u"itemName"_s, u"Emma"_s } } })
        << u"Emma.epub"_s;
    QTest::newRow("not in the list")
        << u"X.pdf"_s << u"Books.plist"_s << QVariant(entry) << u"X.pdf"_s;
    QTest::newRow("list of another shape")
        << u"X.pdf"_s << u"Books.plist"_s << QVariant(u"odd"_s) << u"X.pdf"_s;
    QTest::newRow("hidden") << u".X.pdf"_s << u"Books.plist"_s << QVariant() << QString();
    QTest::newRow("no book") << u"Books.json"_s << u"Books.plist"_s << QVariant() << QString();
}

void tst_Books::namesBooks()
{
    QFETCH(QString, path);
    QFETCH(QString, list);
    QFETCH(QVariant, books);
    QFETCH(QString, expected);
    BackupFixture fixture;
    fixture.writer.addFile(kDomain, path, "book");
    fixture.writer.addFile(
        kDomain, list, Sample::binaryPropertyList(QVariantMap { { u"Books"_s, books } }));
    QCOMPARE(fixture.list(kBooks), expected.isEmpty() ? QStringList() : QStringList(expected));
}

void tst_Books::packsABookThatIsAFolder()
{
    BackupFixture fixture;
    const QByteArray text = QByteArray("It was a dark and stormy night. ").repeated(20'000);
    Sample::FileTraits traits;
    traits.modified = QDateTime(QDate(2021, 2, 3), QTime(4, 5), Qt::UTC);
    fixture.writer.addFile(kDomain, u"Night.epub/META-INF/container.xml"_s, "<container/>");
    fixture.writer.addFile(kDomain, u"Night.epub/OEBPS/Größe.xhtml"_s, text, traits);
    fixture.writer.addFile(kDomain, u"Night.epub/mimetype"_s, "application/epub+zip");
    fixture.writer.addFile(kDomain, u"Other.pdf"_s, "pdf");
    QCOMPARE(fixture.list(kBooks), QStringList({ u"Night.epub"_s, u"Other.pdf"_s }));
    const BkFileItem *book = firstItem(fixture);
    QCOMPARE(book->sizeBytes(), text.size() + 12 + 20);
    const QString path = book->filePath();
    QVERIFY(!path.startsWith(fixture.root()));
    QCOMPARE(book->filePath(), path); // made once

    const QList<ZipEntry> entries = unzip(path);
    QCOMPARE(entries.size(), 3);
    // Readers of books look for this at a fixed place of the file.
    QCOMPARE(entries[0].name, u"mimetype"_s);
    QVERIFY(entries[0].stored);
    QCOMPARE(entries[0].extraBytes, 0);
    QCOMPARE(Files::read(path).mid(30, 28), QByteArray("mimetypeapplication/epub+zip"));
    QCOMPARE(entries[2].name, u"OEBPS/Größe.xhtml"_s);
    QCOMPARE(entries[2].content, text);
    QVERIFY(QFileInfo(path).size() < text.size() / 10);
    QVERIFY(book->fileDate().isValid());

    fixture.open(); // closes the first: its temporary files go with it
    QVERIFY(!QFileInfo::exists(path));
}

void tst_Books::packsWhatIsThere()
{
    BackupFixture fixture;
    fixture.writer.addFile(kDomain, u"A.epub/mimetype"_s, "application/epub+zip");
    fixture.writer.addWithoutContent(kDomain, u"A.epub/cover.jpg"_s, 100);
    fixture.writer.addWithoutContent(kDomain, u"B.epub/mimetype"_s, 20);
    const BkFileItem *book = firstItem(fixture);
    QCOMPARE(unzip(book->filePath()).size(), 1);
    QCOMPARE(fixture.problems(), QStringList(u"4 BooksDomain/A.epub (loss)"_s));
    const auto *gone =
        dynamic_cast<const BkFileItem *>(fixture.open()->getBkData(kBooks)->at(1, true));
    QVERIFY(!QFileInfo::exists(gone->filePath()));
    QCOMPARE(fixture.problems(), QStringList(u"4 BooksDomain/B.epub (loss)"_s));
}

void tst_Books::leavesNoWayOutOfTheArchive()
{
    BackupFixture fixture;
    for (const char *path : { "A.epub/mimetype",
                              "A.epub/../../evil",
                              "A.epub//abs",
                              "A.epub/a\\b",
                              "A.epub/x/..",
                              "A.epub/..x/fine" })
        fixture.writer.addFile(kDomain, QString::fromLatin1(path), path);
    QStringList names;
    for (const ZipEntry &entry : unzip(firstItem(fixture)->filePath()))
        names.append(entry.name);
    QCOMPARE(names, QStringList({ u"mimetype"_s, u"..x/fine"_s }));
}

QTEST_GUILESS_MAIN(tst_Books)
#include "tst_Books.moc"
