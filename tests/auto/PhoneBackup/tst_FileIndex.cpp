#include "PhoneBackup/folder/FileIndex.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using PhoneBackup::FileIndex;

namespace {

constexpr auto kFile = FileIndex::Kind::File;
const QByteArray kSomeId = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";

QByteArray hex(const FileIndex::Id &id)
{
    return QByteArray(reinterpret_cast<const char *>(id.data()), qsizetype(id.size())).toHex();
}

} // namespace

class tst_FileIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsPathsInEitherNormalisation_data();
    void findsPathsInEitherNormalisation();
    void acceptsOnlyTrueIdentifiers_data();
    void acceptsOnlyTrueIdentifiers();
    void walksExactlyThePrefix_data();
    void walksExactlyThePrefix();
    void keepsWhatWasStored();
    void keepsDomainsApart();
};

void tst_FileIndex::findsPathsInEitherNormalisation_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<bool>("found");

    QTest::newRow("as given") << u"Documents/a.txt"_s << u"Documents/a.txt"_s << true;
    QTest::newRow("stored decomposed, asked composed") << u"U\u0308ber"_s << u"\u00DCber"_s << true;
    QTest::newRow("stored composed, asked decomposed") << u"\u00DCber"_s << u"U\u0308ber"_s << true;
    QTest::newRow("Hangul") << u"\u1112\u1161\u11AB"_s << u"\uD55C"_s << true;
    QTest::newRow("case matters") << u"documents/a.txt"_s << u"Documents/a.txt"_s << false;
    QTest::newRow("a beginning is not enough") << u"Documents/a.txt"_s << u"Documents/a"_s << false;
    QTest::newRow("nor is more") << u"Documents/a"_s << u"Documents/a.txt"_s << false;
    QTest::newRow("root folder of the domain") << QString() << QString() << true;
}

void tst_FileIndex::findsPathsInEitherNormalisation()
{
    QFETCH(QString, stored);
    QFETCH(QString, asked);
    QFETCH(bool, found);

    FileIndex index;
    index.add(kSomeId, "HomeDomain", "Library/x", kFile, 1);
    index.add(kSomeId, "HomeDomain", stored.toUtf8(), kFile, 2);
    index.add(kSomeId, "HomeDomain", "zz", kFile, 3);
    index.sort();
    const FileIndex::Row row = index.find("HomeDomain", asked);
    QCOMPARE(row != FileIndex::kNone, found);
    if (found)
        QCOMPARE(index.recordKey(row), 2);
}

void tst_FileIndex::acceptsOnlyTrueIdentifiers_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("true") << QByteArray(40, 'a') << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("capitals") << QByteArray(40, 'A') << false;
    QTest::newRow("one digit short") << QByteArray(39, '1') << false;
    QTest::newRow("one digit too many") << QByteArray(41, '1') << false;
    QTest::newRow("a path") << QByteArray("../../../../../../etc/passwd000000000000") << false;
    QTest::newRow("a letter that is no digit") << QByteArray(39, '1') + 'g' << false;
}

void tst_FileIndex::acceptsOnlyTrueIdentifiers()
{
    QFETCH(QByteArray, id);
    QFETCH(bool, accepted);

    FileIndex index;
    QCOMPARE(index.add(id, "HomeDomain", "Library/SMS/sms.db", kFile, 1), accepted);
    index.sort();
    // Otherwise the identifier is what it is by definition: SHA-1 of "domain-path".
    QCOMPARE(hex(index.id(0)), accepted ? id : kSomeId);
}

void tst_FileIndex::walksExactlyThePrefix_data()
{
    QTest::addColumn<QByteArray>("domain");
    QTest::addColumn<QByteArray>("prefix");
    QTest::addColumn<QByteArrayList>("expected");

    const QByteArrayList all { "Media", "Media/", "Media/A", "Media/B/c", "Media0", "N\xFF" };
    QTest::newRow("all of a domain") << QByteArray("D") << QByteArray() << all;
    QTest::newRow("a folder") << QByteArray("D") << QByteArray("Media/")
                              << QByteArrayList { "Media/", "Media/A", "Media/B/c" };
    QTest::newRow("bytes above all")
        << QByteArray("D") << QByteArray("N\xFF") << QByteArrayList { "N\xFF" };
    QTest::newRow("nothing there") << QByteArray("D") << QByteArray("Media/C") << QByteArrayList();
    QTest::newRow("longer than every path")
        << QByteArray("D") << QByteArray("Media/B/cc") << QByteArrayList();
    QTest::newRow("another domain")
        << QByteArray("D2") << QByteArray("Media") << QByteArrayList { "Media/A" };
    QTest::newRow("no such domain") << QByteArray("E") << QByteArray() << QByteArrayList();
}

void tst_FileIndex::walksExactlyThePrefix()
{
    QFETCH(QByteArray, domain);
    QFETCH(QByteArray, prefix);
    QFETCH(QByteArrayList, expected);

    FileIndex index;
    for (const char *path : { "Media/B/c", "N\xFF", "Media", "Media0", "Media/A", "Media/" })
        index.add({}, "D", path, kFile, 0);
    index.add({}, "D2", "Media/A", kFile, 0);
    index.sort();

    QByteArrayList walked;
    const FileIndex::Range range = index.walk(domain, prefix);
    for (FileIndex::Row row = range.first; row < range.last; ++row)
        walked.append(index.path(row).toByteArray());
    QCOMPARE(walked, expected);
}

void tst_FileIndex::keepsWhatWasStored()
{
    // Paths longer than what is allotted at once, and bytes that are no text.
    const QByteArray longPath(3'000'000, 'p');
    const QByteArray noText("a\0b\xC3", 4);
    FileIndex index;
    index.reserve(3);
    index.add(kSomeId, "HomeDomain", longPath, FileIndex::Kind::Link, 7);
    index.add(kSomeId, "HomeDomain", noText, FileIndex::Kind::Folder, -9'000'000'000);
    index.add(kSomeId, "HomeDomain", noText, FileIndex::Kind::Other, 8);
    index.sort();

    QCOMPARE(index.count(), 3);
    const FileIndex::Row row = index.find("HomeDomain", QByteArrayView(noText));
    QCOMPARE(index.recordKey(row), -9'000'000'000); // of equal places the first row goes first
    QCOMPARE(index.kind(row), FileIndex::Kind::Folder);
    QCOMPARE(index.path(row + 1), QByteArrayView(noText));
    QCOMPARE(index.kind(row + 1), FileIndex::Kind::Other);
    const FileIndex::Row last = index.find("HomeDomain", QByteArrayView(longPath));
    QCOMPARE(index.path(last).size(), longPath.size());
    QCOMPARE(index.kind(last), FileIndex::Kind::Link);
}

void tst_FileIndex::keepsDomainsApart()
{
    FileIndex index;
    const QByteArrayList domains { "HomeDomain", "AppDomain-b", "AppDomain-a", "AppDomainGroup-a" };
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < domains.size(); ++i)
            index.add({}, domains[i], QByteArray::number(round), kFile, i);
    }
    index.sort();
    QCOMPARE(index.domains("AppDomain-"), QByteArrayList({ "AppDomain-a", "AppDomain-b" }));
    QCOMPARE(index.domains(),
             QByteArrayList({ "AppDomain-a", "AppDomain-b", "AppDomainGroup-a", "HomeDomain" }));
    for (int i = 0; i < domains.size(); ++i) {
        const FileIndex::Range range = index.walk(domains[i]);
        QCOMPARE(range.last - range.first, 3);
        for (FileIndex::Row row = range.first; row < range.last; ++row) {
            QCOMPARE(index.domain(row), QByteArrayView(domains[i]));
            QCOMPARE(index.recordKey(row), i);
        }
    }
}

QTEST_APPLESS_MAIN(tst_FileIndex)
#include "tst_FileIndex.moc"
