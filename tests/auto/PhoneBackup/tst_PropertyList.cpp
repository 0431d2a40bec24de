#include "PhoneBackup/plist/PropertyList.h"
#include "PhoneItems/words/Words.h"
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

QByteArray number(qsizetype value, int size)
{
    QByteArray bytes(size, '\0');
    for (int i = size; i-- > 0; value >>= 8)
        bytes[i] = char(value);
    return bytes;
}

// A binary list of \a objects, the first of which is the root; references are of two bytes.
QByteArray binaryList(const QByteArrayList &objects)
{
    QByteArray list = "bplist00";
    QByteArray table;
    for (const QByteArray &object : objects) {
        table.append(number(list.size(), 4));
        list.append(object);
    }
    return list + table + QByteArray("\0\0\0\0\0\0\4\2", 8) + number(objects.size(), 8)
        + number(0, 8) + number(list.size(), 8);
}

// \a depth arrays, each of which names the next one \a width times.
QByteArray nestedArrays(int depth, int width)
{
    QByteArrayList objects;
    for (int i = 1; i < depth; ++i)
        objects.append(char(0xA0 + width) + number(i, 2).repeated(width));
    return binaryList(objects << QByteArray("\xA0"));
}

// An array whose only element is \a object.
QByteArray listOf(const QByteArray &object)
{
    return binaryList({ QByteArray("\xA1\0\1", 3), object });
}

QByteArray xmlList(const QByteArray &value, const QByteArray &before = {})
{
    return "<?xml version=\"1.0\"?>" + before + "<plist version=\"1.0\"><array>" + value
        + "</array></plist>";
}

QByteArray nestedXml(int depth, const QByteArray &before = {})
{
    return xmlList((before + "<array>").repeated(depth - 1)
                   + QByteArray("</array>").repeated(depth - 1));
}

} // namespace

class tst_PropertyList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryKindOfValue_data();
    void readsEveryKindOfValue();
    void readsEachWayToWriteAValue_data();
    void readsEachWayToWriteAValue();
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

void tst_PropertyList::readsEachWayToWriteAValue_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QVariant>("expected");

    const auto binary = [](const char *name, const char *hex, const QVariant &value) {
        QTest::newRow(name) << listOf(QByteArray::fromHex(hex)) << value;
    };
    const auto xml = [](const char *name, const char *text, const QVariant &value) {
        QTest::newRow(name) << xmlList(text) << value;
    };
    binary("one byte has no sign", "10FF", Q_INT64_C(255));
    binary("four bytes have no sign", "12FFFFFFFF", Q_INT64_C(0xFFFFFFFF));
    binary("eight bytes have a sign", "13FFFFFFFFFFFFFFF9", Q_INT64_C(-7));
    binary("sixteen bytes, beyond 63 bits",
           "140000000000000000FFFFFFFFFFFFFFFE",
           Q_UINT64_C(0xFFFFFFFFFFFFFFFE));
    binary("sixteen bytes, negative", "14FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF9", Q_INT64_C(-7));
    binary("short real", "223F000000", 0.5);
    binary("date with a fraction",
           "33BFE0000000000000",
           QDateTime(QDate(2000, 12, 31), QTime(23, 59, 59, 500), Qt::UTC));
    binary("date that is no number", "337FF8000000000000", QDateTime());
    binary("UTF-8 where ASCII is expected", "53C3AB78", u"\u00EBx"_s);
    binary("UTF-16 with a NUL", "6300610000D83D", u"a\0\xD83D"_s);
    binary("empty set", "C0", QVariantList());
    binary("ordered set", "B0", QVariantList());
    binary("null", "00", QVariant());
    xml("hexadecimal", "<integer> 0x2A </integer>", Q_INT64_C(42));
    xml("negative", "<integer>-7</integer>", Q_INT64_C(-7));
    xml("a nought before is not octal", "<integer>010</integer>", Q_INT64_C(10));
    xml("beyond 63 bits",
        "<integer>18446744073709551614</integer>",
        Q_UINT64_C(18446744073709551614));
    xml("no number", "<integer>many</integer>", QVariant());
    xml("character data", "<string>a<![CDATA[<b>]]><!-- no --> &amp;&#x43;</string>", u"a<b> &C"_s);
    xml("folded data", "<data>\n\tAP\n\t8=\n</data>", QByteArray("\0\xFF", 2));
    xml("control characters",
        "<string>a\x01\x1F"
        "b</string>",
        u"a  b"_s);
    xml("broken UTF-8",
        "<string>a\xFF"
        "b</string>",
        u"a\uFFFDb"_s);
    xml("no date", "<date>yesterday</date>", QDateTime());
}

void tst_PropertyList::readsEachWayToWriteAValue()
{
    QFETCH(QByteArray, data);
    QFETCH(QVariant, expected);
    const QVariantList list = PropertyList::parse(data).toVariant().toList();
    QCOMPARE(list.size(), 1);
    QCOMPARE(list.constFirst(), expected);
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
    QTest::newRow("200 bytes that unfold to 2,000,000 values") << nestedArrays(21, 2) << true;
    // 100 short arrays that come to 2 to the power of 99 when they are unfolded.
    QTest::newRow("unfolds without end") << nestedArrays(100, 2) << true;
    const QByteArray text = "\x5F\x11" + number(0x1000, 2) + QByteArray(0x1000, 't');
    QTest::newRow("4 kB that unfold to 8 MB")
        << binaryList({ "\xAF\x11" + number(0x800, 2) + number(1, 2).repeated(0x800), text })
        << true;
    constexpr int kTexts = 40;
    QByteArrayList overlapping { QByteArray(1, char(0xAF)) + '\x10' + char(kTexts) };
    for (int i = 1; i <= kTexts; ++i) {
        overlapping[0] += number(i, 2);
        overlapping.append(QByteArray("\x5F\x10") + char(3 * (kTexts - i))); // up to the last
    }
    QTest::newRow("texts that share their bytes") << binaryList(overlapping) << true;
    QTest::newRow("key that is no text")
        << binaryList({ QByteArray("\xD1\0\1\0\1", 5), QByteArray("\x10\1") }) << true;
    QTest::newRow("key with a NUL")
        << binaryList({ QByteArray("\xD1\0\1\0\1", 5), QByteArray("\x62\0k\0\0", 5) }) << false;
    QTest::newRow("XML, 128 levels") << nestedXml(128) << false;
    QTest::newRow("XML, 129 levels") << nestedXml(129) << true;
    QTest::newRow("XML, 40,000 levels behind instructions that seem to close them")
        << nestedXml(40'000, "<? > </array> ?>") << true;
    QTest::newRow("XML, two roots") << QByteArray("<plist><true/><true/></plist>") << true;
    QTest::newRow("XML, another format") << QByteArray("<svg><true/></svg>") << true;
    QTest::newRow("XML, unknown element") << xmlList("<nil/>") << true;
    QTest::newRow("XML, cut") << xmlList("<true/>").chopped(1) << true;
    QTest::newRow("XML, dictionary without a key")
        << xmlList("<dict><true/><true/></dict>") << true;
    QTest::newRow("XML, usual document type")
        << xmlList({}, "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://x/x.dtd\">")
        << false;
    QTest::newRow("XML, entity of its own")
        << xmlList("<string>&e;</string>", "<!DOCTYPE plist [<!ENTITY e SYSTEM \"Info.plist\">]>")
        << true;
    QByteArray attributes;
    for (int i = 0; i < 60'000; ++i)
        attributes += " a" + QByteArray::number(i) + "='>'";
    QTest::newRow("XML, an endless tag") << xmlList("<true" + attributes + "/>") << true;
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
    QVERIFY(PhoneItems::words(PropertyList::read(path).error().what).contains(path));
    QCOMPARE(PropertyList::read(dir.path()).error().fault, Fault::Io);
    QVERIFY(Files::write(path, Sample::xmlPropertyList(everyKind())));
    QCOMPARE(PropertyList::read(path).value().value("whole").toInt(), 42);
}

QTEST_APPLESS_MAIN(tst_PropertyList)
#include "tst_PropertyList.moc"
