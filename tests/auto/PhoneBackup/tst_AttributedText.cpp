#include "PhoneBackup/plist/AttributedText.h"
#include "sample/TypedStream.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using PhoneBackup::AttributedText;

namespace {

// "Hi!" with one attribute, byte for byte as a phone writes it.
const QByteArray kHi =
    QByteArray::fromHex("040b73747265616d747970656481e803"
                        "840140"
                        "84"
                        "8484124e5341747472696275746564537472696e6700"
                        "8484084e534f626a65637400"
                        "85"
                        "92"
                        "848484084e53537472696e670194"
                        "84012b0348692186"
                        "840269490103"
                        "928484840c4e5344696374696f6e6172790094"
                        "84016901"
                        "928496961d5f5f6b494d4d657373616765506172744174747269627574654e616d6586"
                        "92848484084e534e756d626572008484074e5356616c75650094"
                        "84012a8499"
                        "990086"
                        "86"
                        "86");

const QByteArray kStart = QByteArray::fromHex("040b73747265616d747970656481e803");

QByteArray withFiles()
{
    return Sample::attributedBody(u"\uFFFCLook\uFFFC and \U0001F600"_s,
                                  { { 1, 0, u"first"_s, {}, {} },
                                    { 4, 1, {}, {}, {} },
                                    { 1, 2, u"second"_s, {}, {} },
                                    { 7, 3, {}, {}, {} } });
}

} // namespace

class tst_AttributedText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTexts_data();
    void readsTexts();
    void tellsWhereFilesStand();
    void refusesWhatIsDamaged_data();
    void refusesWhatIsDamaged();
    void survivesEveryCutAndFlip_data();
    void survivesEveryCutAndFlip();
    void findsTheTextOfADamagedOne();
};

void tst_AttributedText::readsTexts_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("text");

    QTest::newRow("the phone's own bytes") << kHi << u"Hi!"_s;
    for (const int size : { 1, 127, 128, 145, 32768, 65535, 65536, 70000 }) {
        const QString text(size, u'a');
        QTest::addRow("%d bytes", size) << Sample::attributedBody(text) << text;
    }
    const QString emoji = u"\U0001F468\u200D\U0001F469 \u05E9 \u0645"_s;
    QTest::newRow("with more objects")
        << kHi.chopped(1) + QByteArray::fromHex("9c8485").repeated(70) + '\x86' << u"Hi!"_s;
    QTest::newRow("outside the BMP") << Sample::attributedBody(emoji) << emoji;
    QTest::newRow("a plain string") << kStart
            + QByteArray::fromHex("840140"
                                  "84"
                                  "8484084e53537472696e6701"
                                  "85"
                                  "84012b0348692186")
                                    << u"Hi!"_s;
    // Unknown classes and types describe themselves and are read past.
    QTest::newRow("values of every kind") << kStart
            + QByteArray::fromHex("840140"
                                  "84"
                                  "8484124e5341747472696275746564537472696e6700"
                                  "85"
                                  "92"
                                  "848484084e53537472696e670185"
                                  "84012b02486986"
                                  "84065b33635d7343" // three bytes in an array, a short, a byte
                                  "010203"
                                  "05"
                                  "84"
                                  "84067b703d66647d" // a struct of two reals
                                  "830000803f"
                                  "83000000000000f03f"
                                  "8403233a2a" // a class, a selector, a C string
                                  "93"
                                  "93"
                                  "8493"
                                  "86") << u"Hi"_s;
}

void tst_AttributedText::readsTexts()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, text);
    const auto decoded = AttributedText::decode(data);
    QVERIFY(decoded);
    QCOMPARE(decoded->text, text);
    QVERIFY(decoded->files.isEmpty());
}

void tst_AttributedText::tellsWhereFilesStand()
{
    const auto decoded = AttributedText::decode(withFiles());
    QVERIFY(decoded);
    QCOMPARE(decoded->files.size(), 2);
    QCOMPARE(decoded->files.at(0).position, 0);
    QCOMPARE(decoded->files.at(0).guid, u"first"_s);
    QCOMPARE(decoded->files.at(1).position, 5);
    QCOMPARE(decoded->files.at(1).guid, u"second"_s);
}

void tst_AttributedText::refusesWhatIsDamaged_data()
{
    QTest::addColumn<QByteArray>("data");
    const QByteArray object = QByteArray::fromHex("84014084848404"
                                                  "58585858"
                                                  "0085");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("header alone") << kStart;
    QTest::newRow("another format") << QByteArray("bplist00");
    QTest::newRow("big-endian") << QByteArray("\x04\x0btypedstream\x81\x03\xe8", 16);
    QTest::newRow("length beyond the end") << QByteArray(kHi).replace("\x01+\x03", "\x01+\x7f");
    QTest::newRow("length below zero")
        << QByteArray(kHi).replace("\x01+\x03", QByteArray::fromHex("012b87ffffffffffffffff"));
    QTest::newRow("nil") << kStart + QByteArray::fromHex("84014085");
    QTest::newRow("a class in place of an object") << kStart + QByteArray::fromHex("84014092");
    QTest::newRow("a reference to itself") << kStart + object + QByteArray::fromHex("92928686");
    QTest::newRow("a huge array of nothing") << kStart + object
            + QByteArray::fromHex("840f5b3939393939393939397b613d7d5d") + QByteArray(8, '\x86');
    QTest::newRow("arrays in arrays")
        << kStart + object + QByteArray("\x84\x7e") + QByteArray("[9").repeated(63);
    // Each would be looked at anew for every value of its type.
    QTest::newRow("types without an end") << kHi.chopped(1) + QByteArray::fromHex("84813001") + '['
            + QByteArray(300, '0') + "1c]x\x86";
    QTest::newRow("more objects than any text has")
        << kHi.chopped(1) + QByteArray::fromHex("9c8485").repeated(70'000) + '\x86';
    QTest::newRow("objects in objects") << kStart
            + QByteArray::fromHex("8401408484840158"
                                  "0085")
            + QByteArray::fromHex("92849392").repeated(5000);
}

void tst_AttributedText::refusesWhatIsDamaged()
{
    QFETCH(QByteArray, data);
    QVERIFY(!AttributedText::decode(data));
}

void tst_AttributedText::survivesEveryCutAndFlip_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("the phone's own bytes") << kHi;
    QTest::newRow("with files") << withFiles();
    QTest::newRow("long") << Sample::attributedBody(QString(300, u'\u00E4'));
}

void tst_AttributedText::survivesEveryCutAndFlip()
{
    QFETCH(QByteArray, data);
    const auto read = [](const QByteArray &bytes) {
        // A copy of exactly this size: sanitizers see a read beyond its end.
        const QByteArray own(bytes.constData(), bytes.size());
        const auto decoded = AttributedText::decode(own);
        const auto salvaged = AttributedText::salvage(own);
        return std::max(decoded ? decoded->text.size() : 0, salvaged ? salvaged->size() : 0)
            <= bytes.size();
    };
    for (qsizetype size = 0; size < data.size(); ++size) {
        QVERIFY2(!AttributedText::decode(data.first(size)), qPrintable(QString::number(size)));
        QVERIFY(read(data.first(size)));
    }
    for (qsizetype i = 0; i < data.size(); ++i) {
        for (const int value : { 0x00,
                                 0x01,
                                 0x7F,
                                 0x80,
                                 0x81,
                                 0x82,
                                 0x84,
                                 0x85,
                                 0x86,
                                 0x87,
                                 0x92,
                                 0x95,
                                 0xFF,
                                 int('@'),
                                 int('['),
                                 int('{'),
                                 int('+') }) {
            QByteArray changed = data;
            changed[i] = char(value);
            QVERIFY(read(changed));
        }
    }
}

void tst_AttributedText::findsTheTextOfADamagedOne()
{
    QCOMPARE(AttributedText::salvage(kHi.chopped(20)), u"Hi!"_s);
    QByteArray otherType = kHi;
    otherType.replace("\x84\x01+\x03", "\x96+\x03"); // the type by reference
    QVERIFY(!AttributedText::decode(otherType));
    QCOMPARE(AttributedText::salvage(otherType), u"Hi!"_s);
    QVERIFY(!AttributedText::salvage(kHi.first(kHi.indexOf("Hi!") + 1)));
    QVERIFY(!AttributedText::salvage(QByteArray(kHi).replace("Hi!", "H\xFF!"))); // no UTF-8
    QVERIFY(!AttributedText::salvage(kStart));
}

QTEST_APPLESS_MAIN(tst_AttributedText)
#include "tst_AttributedText.moc"
