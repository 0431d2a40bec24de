#include "plist/PropertyList.h"
#include "sample/PropertyList.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;
using PhoneBackup::Fault;
using PhoneBackup::PropertyList;

namespace {

QVariantMap everyKind()
{
    return {
        { u"text"_s, u"Zo\u00EB \U0001F600"_s },
        { u"whole"_s, 42 },
        { u"negative"_s, -7 },
        { u"real"_s, 0.5 },
        { u"yes"_s, true },
        { u"bytes"_s, QByteArray("\0\xFF", 2) },
        { u"date"_s, QDateTime(QDate(2024, 2, 29), QTime(12, 30, 15), Qt::UTC) },
        { u"list"_s, QVariantList { 1, u"two"_s, QVariantMap { { u"three"_s, 3 } } } },
        { u"empty"_s, QVariantMap() },
    };
}

// A binary list of \a depth arrays, each of which names the next one \a width times.
QByteArray nestedArrays(int depth, int width)
{
    QByteArray list = "bplist00";
    QByteArray table;
    for (int i = 0; i < depth; ++i) {
        table.append(char(list.size() >> 8)).append(char(list.size()));
        if (i + 1 == depth) {
            list.append('\xA0');
        } else {
            list.append(char(0xA0 + width));
            for (int j = 0; j < width; ++j)
                list.append(char((i + 1) >> 8)).append(char(i + 1));
        }
    }
    const auto number = [](qsizetype value) {
        QByteArray bytes(8, '\0');
        bytes[6] = char(value >> 8);
        bytes[7] = char(value);
        return bytes;
    };
    const qsizetype tableAt = list.size();
    return list + table + QByteArray("\0\0\0\0\0\0\2\2", 8) + number(depth) + number(0)
        + number(tableAt);
}

QByteArray nestedXml(int depth)
{
    return "<?xml version=\"1.0\"?><plist version=\"1.0\">" + QByteArray("<array>").repeated(depth)
        + QByteArray("</array>").repeated(depth) + "</plist>";
}

} // namespace

class tst_PropertyList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryKindOfValue_data();
    void readsEveryKindOfValue();
    void refusesWhatIsNone_data();
    void refusesWhatIsNone();
    void survivesOddShapes();
    void survivesDamageAtEveryByte_data();
    void survivesDamageAtEveryByte();
    void saysWhyAFileCannotBeRead();
};

void tst_PropertyList::readsEveryKindOfValue_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("binary") << Sample::binaryPropertyList(everyKind());
    QTest::newRow("XML") << Sample::xmlPropertyList(everyKind());
    QTest::newRow("XML with a byte-order mark")
        << QByteArray("\xEF\xBB\xBF") + Sample::xmlPropertyList(everyKind());
}

void tst_PropertyList::readsEveryKindOfValue()
{
    QFETCH(QByteArray, data);
    const PropertyList list = PropertyList::parse(data);
    QVERIFY(list.isDict());
    const QVariantMap values = list.toVariant().toMap();
    const QVariantMap expected = everyKind();
    QCOMPARE(values.keys(), expected.keys());
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        const QVariant value = values.value(it.key());
        QCOMPARE(value.toString(), it->toString());
        QCOMPARE(value.toByteArray(), it->toByteArray());
        QCOMPARE(list.value(it.key().toUtf8().constData()), value);
    }
    QCOMPARE(values.value(u"date"_s).toDateTime().timeSpec(), Qt::UTC);
    QCOMPARE(values.value(u"list"_s).toList().at(2).toMap().value(u"three"_s).toInt(), 3);
    QVERIFY(!list.value("missing").isValid());
}

void tst_PropertyList::refusesWhatIsNone_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("isNull");

    QTest::newRow("nothing") << QByteArray() << true;
    QTest::newRow("text") << QByteArray("Manifest") << true;
    QTest::newRow("only the magic") << QByteArray("bplist00") << true;
    QTest::newRow("128 levels") << nestedArrays(128, 1) << false;
    QTest::newRow("129 levels") << nestedArrays(129, 1) << true;
    QTest::newRow("20,000 levels") << nestedArrays(20'000, 1) << true;
    // 100 short arrays that come to 2 to the power of 99 when they are unfolded.
    QTest::newRow("unfolds without end") << nestedArrays(100, 2) << true;
    QTest::newRow("XML, 100 levels") << nestedXml(100) << false;
    QTest::newRow("XML, 200,000 levels") << nestedXml(200'000) << true;
}

void tst_PropertyList::refusesWhatIsNone()
{
    QFETCH(QByteArray, data);
    QFETCH(bool, isNull);
    QCOMPARE(PropertyList::parse(data).isNull(), isNull);
}

void tst_PropertyList::survivesOddShapes()
{
    for (const QVariant &root : { QVariant(u"text"_s),
                                  QVariant(QVariantList { 1, 2 }),
                                  QVariant(5),
                                  QVariant(QByteArray("x")) }) {
        const PropertyList list = PropertyList::parse(Sample::binaryPropertyList(root));
        QVERIFY(!list.isNull());
        QVERIFY(!list.isDict());
        QVERIFY(!list.value("Lockdown").isValid());
        QCOMPARE(list.toVariant().toString(), root.toString());
    }
    // A circle: the only object is an array that holds itself.
    QByteArray circle = nestedArrays(2, 1);
    circle[10] = 0; // the reference to object 1 leads back to 0
    QVERIFY(PropertyList::parse(circle).isNull());
}

void tst_PropertyList::survivesDamageAtEveryByte_data()
{
    readsEveryKindOfValue_data();
}

void tst_PropertyList::survivesDamageAtEveryByte()
{
    QFETCH(QByteArray, data);
    int readable = 0;
    for (qsizetype i = 0; i < data.size(); ++i) {
        PropertyList::parse(data.first(i)).toVariant();
        for (const int bits : { 0x01, 0x40, 0xFF }) {
            QByteArray damaged = data;
            damaged[i] = static_cast<char>(damaged[i] ^ bits);
            readable += PropertyList::parse(damaged).toVariant().isValid() ? 1 : 0;
        }
    }
    // Most damage lies in values, not in the structure: those lists are still lists.
    QVERIFY(readable > data.size());
}

void tst_PropertyList::saysWhyAFileCannotBeRead()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"Info.plist"_s);
    QCOMPARE(PropertyList::read(path).error().fault, Fault::NotFound);
    QVERIFY(Files::write(path, "no list"));
    QCOMPARE(PropertyList::read(path).error().fault, Fault::Corrupt);
    QVERIFY(PropertyList::read(path).error().what.contains(path));
    QCOMPARE(PropertyList::read(dir.path()).error().fault, Fault::Io);
    QVERIFY(Files::write(path, Sample::xmlPropertyList(everyKind())));
    QCOMPARE(PropertyList::read(path).value().value("whole").toInt(), 42);
}

QTEST_APPLESS_MAIN(tst_PropertyList)
#include "tst_PropertyList.moc"
