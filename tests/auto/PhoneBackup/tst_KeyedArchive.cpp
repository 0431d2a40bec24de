#include "PhoneBackup/folder/FileRecord.h"
#include "PhoneBackup/plist/KeyedArchive.h"
#include "sample/BackupWriter.h"
#include "sample/PropertyList.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using PhoneBackup::FileRecord;
using PhoneBackup::KeyedArchive;

namespace {

QVariant uid(quint64 index)
{
    return QVariant::fromValue(Sample::PlistUid { index });
}

// An archive whose object 1 is \a root and whose further objects are \a others.
QByteArray archive(const QVariant &root, const QVariantList &others = {})
{
    return Sample::binaryPropertyList(QVariantMap {
        { u"$version"_s, 100000 },
        { u"$archiver"_s, u"NSKeyedArchiver"_s },
        { u"$top"_s, QVariantMap { { u"root"_s, uid(1) } } },
        { u"$objects"_s, QVariantList { u"$null"_s, root } + others },
    });
}

QVariant decoded(const QByteArray &data)
{
    const KeyedArchive graph(data);
    return graph.decode(graph.root());
}

qsizetype valuesIn(const QVariant &value)
{
    qsizetype count = 1;
    for (const QVariant &part : value.toMap())
        count += valuesIn(part);
    for (const QVariant &part : value.toList())
        count += valuesIn(part);
    return count;
}

} // namespace

class tst_KeyedArchive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decodesCommonClasses_data();
    void decodesCommonClasses();
    void survivesHostileGraphs_data();
    void survivesHostileGraphs();
    void readsXmlReferences();
    void readsFileRecord();
    void fileRecordSurvivesOddValues();
    void fileRecordSurvivesDamageAtEveryByte();
};

void tst_KeyedArchive::decodesCommonClasses_data()
{
    QTest::addColumn<QVariantMap>("object");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("dictionary") << QVariantMap { { u"NS.keys"_s, QVariantList { uid(2) } },
                                                 { u"NS.objects"_s, QVariantList { uid(3) } } }
                                << QVariant(QVariantMap { { u"two"_s, u"three"_s } });
    QTest::newRow("more keys than values")
        << QVariantMap { { u"NS.keys"_s, QVariantList { uid(2), uid(3) } },
                         { u"NS.objects"_s, QVariantList { uid(3) } } }
        << QVariant(QVariantMap { { u"two"_s, u"three"_s } });
    QTest::newRow("array") << QVariantMap { { u"NS.objects"_s, QVariantList { uid(2), uid(0) } } }
                           << QVariant(QVariantList { u"two"_s, QVariant() });
    QTest::newRow("string") << QVariantMap { { u"NS.string"_s, u"text"_s } } << QVariant(u"text"_s);
    QTest::newRow("string as bytes")
        << QVariantMap { { u"NS.bytes"_s, QByteArray("text") } } << QVariant(u"text"_s);
    QTest::newRow("data") << QVariantMap { { u"NS.data"_s, QByteArray("x\0y", 3) } }
                          << QVariant(QByteArray("x\0y", 3));
    QTest::newRow("date") << QVariantMap { { u"NS.time"_s, 700000000.5 } }
                          << QVariant(
                                 QDateTime(QDate(2023, 3, 8), QTime(20, 26, 40, 500), Qt::UTC));
    QTest::newRow("URL") << QVariantMap { { u"NS.base"_s, uid(0) }, { u"NS.relative"_s, uid(4) } }
                         << QVariant(QUrl(u"https://example.org/a"_s));
    QTest::newRow("another class")
        << QVariantMap { { u"field"_s, uid(2) }, { u"$class"_s, uid(3) } }
        << QVariant(QVariantMap { { u"field"_s, u"two"_s } });
}

void tst_KeyedArchive::decodesCommonClasses()
{
    QFETCH(QVariantMap, object);
    QFETCH(QVariant, expected);
    QCOMPARE(decoded(archive(object, { u"two"_s, u"three"_s, u"https://example.org/a"_s })),
             expected);
}

void tst_KeyedArchive::survivesHostileGraphs_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("no archive") << Sample::binaryPropertyList(QVariantMap());
    QTest::newRow("objects of another shape")
        << Sample::binaryPropertyList(QVariantMap { { u"$objects"_s, 5 }, { u"$top"_s, 5 } });
    QTest::newRow("reference behind the end") << archive(QVariantMap { { u"a"_s, uid(99) } });
    QTest::newRow("huge reference") << archive(QVariantMap { { u"a"_s, uid(quint64(1) << 31) } });
    QTest::newRow("reference to a reference")
        << archive(QVariantMap { { u"a"_s, uid(2) } }, { uid(2) });
    QTest::newRow("circle") << archive(QVariantMap { { u"a"_s, uid(2) } },
                                       { QVariantMap { { u"b"_s, uid(1) } } });
    QTest::newRow("array of itself")
        << archive(QVariantMap { { u"NS.objects"_s, QVariantList { uid(1), uid(1), uid(1) } } });
    QVariantList doubling;
    for (quint64 i = 2; i < 40; ++i)
        doubling.append(
            QVariantMap { { u"NS.objects"_s, QVariantList { uid(i + 1), uid(i + 1) } } });
    QTest::newRow("2 to the power of 38 values")
        << archive(QVariantMap { { u"a"_s, uid(2) } }, doubling);
    QTest::newRow("dictionary whose keys are itself") << archive(QVariantMap {
        { u"NS.keys"_s, QVariantList { uid(1) } }, { u"NS.objects"_s, QVariantList { uid(1) } } });
    QTest::newRow("URL based on itself")
        << archive(QVariantMap { { u"NS.base"_s, uid(1) }, { u"NS.relative"_s, uid(1) } });
}

void tst_KeyedArchive::survivesHostileGraphs()
{
    QFETCH(QByteArray, data);
    // Each record of a large index may be such a graph.
    constexpr qsizetype kValuesPerByte = 4;
    constexpr qsizetype kNesting = 64;
    QVERIFY(valuesIn(decoded(data)) <= data.size() * kValuesPerByte + kNesting);
}

void tst_KeyedArchive::readsXmlReferences()
{
    const QVariantMap one { { u"CF$UID"_s, 1 } };
    const QVariantMap two { { u"CF$UID"_s, 2 } };
    const QByteArray data = Sample::xmlPropertyList(QVariantMap {
        { u"$top"_s, QVariantMap { { u"root"_s, one } } },
        { u"$objects"_s,
          QVariantList { u"$null"_s, QVariantMap { { u"name"_s, two } }, u"value"_s } },
    });
    QCOMPARE(decoded(data), QVariant(QVariantMap { { u"name"_s, u"value"_s } }));
}

void tst_KeyedArchive::readsFileRecord()
{
    Sample::FileTraits traits;
    traits.modified = QDateTime(QDate(2023, 6, 17), QTime(8, 15), Qt::UTC);
    traits.extendedAttributes = { { u"com.apple.assetsd.trashed"_s, QByteArray("\1") } };
    const FileRecord record = FileRecord::parse(
        Sample::BackupWriter::fileRecord(u"Media/DCIM/1.JPG"_s, 5'000'000'000, traits));
    QCOMPARE(record.modified, traits.modified);
    QCOMPARE(record.sizeBytes, 5'000'000'000);
    QCOMPARE(record.mode, 0100644U);
    QVERIFY(record.created.isValid());
    QCOMPARE(record.extendedAttributes(), traits.extendedAttributes);
}

void tst_KeyedArchive::fileRecordSurvivesOddValues()
{
    const FileRecord record = FileRecord::parse(archive(
        QVariantMap { { u"Size"_s, -5 },
                      { u"LastModified"_s, 0 },
                      { u"Birth"_s, u"yesterday"_s },
                      { u"Mode"_s, QByteArray("x") },
                      { u"ExtendedAttributes"_s, uid(2) } },
        { QVariantMap { { u"NS.data"_s, Sample::binaryPropertyList(QVariantList { 1 }) } } }));
    QCOMPARE(record.sizeBytes, -1);
    QVERIFY(!record.modified.isValid());
    QVERIFY(!record.created.isValid());
    QVERIFY(record.extendedAttributes().isEmpty());
    // A year that no phone knew is no date either.
    const QVariantMap far { { u"LastModified"_s, Q_INT64_C(9000000000000) } };
    QVERIFY(!FileRecord::parse(archive(far)).modified.isValid());
}

void tst_KeyedArchive::fileRecordSurvivesDamageAtEveryByte()
{
    Sample::FileTraits traits;
    traits.extendedAttributes = { { u"com.apple.assetsd.trashed"_s, QByteArray("\1") } };
    const QByteArray good = Sample::BackupWriter::fileRecord(u"Media/a"_s, 12, traits);
    int unharmed = 0;
    for (qsizetype i = 0; i < good.size(); ++i) {
        FileRecord::parse(good.first(i)).extendedAttributes();
        for (const int bits : { 0x01, 0x80, 0xFF }) {
            QByteArray damaged = good;
            damaged[i] = static_cast<char>(damaged[i] ^ bits);
            const FileRecord record = FileRecord::parse(damaged);
            record.extendedAttributes();
            unharmed += record.sizeBytes == 12 ? 1 : 0;
        }
    }
    QVERIFY(unharmed > good.size());
}

QTEST_APPLESS_MAIN(tst_KeyedArchive)
#include "tst_KeyedArchive.moc"
