#include "PhoneBackup/source/PathParts.h"
#include "platform/OutputNames.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class tst_OutputNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleansHostileNames_data();
    void cleansHostileNames();
    void keepsTitleAndExtensionApart_data();
    void keepsTitleAndExtensionApart();
    void everyCharacterGivesAUsableName();
    void cutsLongNames_data();
    void cutsLongNames();
    void agreesOnWhatIsClean();
    void numbersNamesThatClash_data();
    void numbersNamesThatClash();
    void numbersManyEqualNames();
    void ordersAsAPersonExpects_data();
    void ordersAsAPersonExpects();
};

void tst_OutputNames::cleansHostileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << u"IMG_0001.JPG"_s << u"IMG_0001.JPG"_s;
    QTest::newRow("other scripts")
        << u"Größe 北京 \U0001F600.txt"_s << u"Größe 北京 \U0001F600.txt"_s;
    QTest::newRow("the nine") << u"a/b\\c:d\"e*f?g<h>i|j"_s << u"a_b_c_d_e_f_g_h_i_j"_s;
    QTest::newRow("climbing up") << u"../../etc/passwd"_s << u"_.._etc_passwd"_s;
    QTest::newRow("absolute") << u"/etc/passwd"_s << u"_etc_passwd"_s;
    QTest::newRow("empty") << QString() << u"_"_s;
    QTest::newRow("one dot") << u"."_s << u"_"_s;
    QTest::newRow("two dots") << u".."_s << u"_"_s;
    QTest::newRow("only blanks") << u" \t\u00A0\u3000"_s << u"_"_s;
    QTest::newRow("hidden") << u".profile"_s << u"_.profile"_s;
    QTest::newRow("hidden with extension") << u"..a.txt"_s << u"a.txt"_s;
    QTest::newRow("dots and blanks behind") << u"report. . ."_s << u"report"_s;
    QTest::newRow("blanks around") << u"  a b.txt  "_s << u"a b.txt"_s;
    QTest::newRow("blank before the extension stays") << u"a .txt"_s << u"a .txt"_s;
    QTest::newRow("control characters") << u"a\nb\x7F\u0085\u2028.txt"_s << u"a_b___.txt"_s;
    QTest::newRow("NUL") << QString(u"a\0b"_s) << u"a_b"_s;
    QTest::newRow("direction override") << u"photo\u202Egpj.exe"_s << u"photogpj.exe"_s;
    QTest::newRow("isolates, byte-order mark") << u"\u2066a\u2069\uFEFF.txt"_s << u"a.txt"_s;
    QTest::newRow("lone surrogates")
        << u"a"_s + QChar(0xD83D) + u"b"_s + QChar(0xDE00) + u".txt"_s << u"a_b_.txt"_s;
    QTest::newRow("device") << u"CON"_s << u"CON_"_s;
    QTest::newRow("device with extension") << u"nul.txt"_s << u"nul_.txt"_s;
    QTest::newRow("device with two extensions") << u"Aux.tar.gz"_s << u"Aux_.tar.gz"_s;
    QTest::newRow("device, blanks before the dot") << u"prn  .txt"_s << u"prn_  .txt"_s;
    QTest::newRow("numbered device") << u"COM1.log"_s << u"COM1_.log"_s;
    QTest::newRow("superscript device") << u"lpt\u00B2"_s << u"lpt\u00B2_"_s;
    QTest::newRow("no device") << u"COM0.log"_s << u"COM0.log"_s;
    QTest::newRow("begins like a device") << u"console.log"_s << u"console.log"_s;
}

void tst_OutputNames::cleansHostileNames()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    const QString cleaned = OutputNames::clean(name);
    QCOMPARE(cleaned, expected);
    QCOMPARE(OutputNames::clean(cleaned), cleaned);
}

void tst_OutputNames::keepsTitleAndExtensionApart_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << u"Shanty"_s << u"m4a"_s << u"Shanty.m4a"_s;
    QTest::newRow("a dot in the title") << u"Draft 2.5"_s << u"m4a"_s << u"Draft 2.5.m4a"_s;
    QTest::newRow("a dot behind the title") << u"The End..."_s << u"pdf"_s << u"The End.pdf"_s;
    QTest::newRow("already there") << u"Shanty.M4A"_s << u"m4a"_s << u"Shanty.m4a"_s;
    QTest::newRow("no title") << QString() << u"m4a"_s << u"_.m4a"_s;
    QTest::newRow("no extension") << u"Shanty"_s << QString() << u"Shanty"_s;
    QTest::newRow("hostile extension") << u"a"_s << u"m4a/../x"_s << u"a.m4a_.._x"_s;
    QTest::newRow("path as title") << u"a/b"_s << u"pdf"_s << u"a_b.pdf"_s;
}

void tst_OutputNames::keepsTitleAndExtensionApart()
{
    QFETCH(QString, title);
    QFETCH(QString, extension);
    QFETCH(QString, expected);
    QCOMPARE(OutputNames::clean(title, extension), expected);
}

void tst_OutputNames::everyCharacterGivesAUsableName()
{
    for (int c = 0; c <= 0xFFFF; ++c) {
        for (const QString &name : { QString(QChar(c)),
                                     u"a"_s + QChar(c) + u".b"_s,
                                     u"a.b"_s + QChar(c),
                                     QChar(c) + u"a"_s }) {
            const QString cleaned = OutputNames::clean(name);
            QVERIFY(!cleaned.isEmpty());
            QCOMPARE(OutputNames::clean(cleaned), cleaned);
            QVERIFY(!cleaned.startsWith(u'.') && !cleaned.endsWith(u'.'));
            QCOMPARE(cleaned.trimmed(), cleaned);
            QCOMPARE(QString::fromUtf8(cleaned.toUtf8()), cleaned); // no half of a pair is left
        }
    }
}

void tst_OutputNames::cutsLongNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ending");

    QTest::newRow("ASCII") << QString(300, u'x') + u".jpeg"_s << u"x.jpeg"_s;
    QTest::newRow("two bytes each") << QString(200, u'\u00E4') + u".txt"_s << u"\u00E4.txt"_s;
    QTest::newRow("four bytes each")
        << u"\U0001F600"_s.repeated(100) + u".txt"_s << u"\U0001F600.txt"_s;
    QTest::newRow("four bytes, shifted")
        << u"a"_s + u"\U0001F600"_s.repeated(100) + u".txt"_s << u"\U0001F600.txt"_s;
    QTest::newRow("an extension that is none") << u"a."_s + QString(300, u'x') << u"xxx"_s;
    QTest::newRow("blanks where it is cut")
        << u"a"_s + QString(300, u' ') + u"b.txt"_s << u"a.txt"_s;
}

void tst_OutputNames::cutsLongNames()
{
    QFETCH(QString, name);
    QFETCH(QString, ending);
    OutputNames names;
    const QString cleaned = OutputNames::clean(name);
    for (int i = 1; i <= 12; ++i) {
        const QString taken = names.take(cleaned);
        QVERIFY2(taken.toUtf8().size() <= 200, qPrintable(taken));
        QCOMPARE(QString::fromUtf8(taken.toUtf8()), taken);
        if (i == 1)
            QVERIFY2(taken.endsWith(ending), qPrintable(taken));
        else
            QVERIFY2(taken.contains(u" (%1)"_s.arg(i)), qPrintable(taken));
    }
    QVERIFY(cleaned.size() < 10 || cleaned.toUtf8().size() > 190); // nor more than is needed
}

void tst_OutputNames::agreesOnWhatIsClean()
{
    // The short cut for plain names may refuse one, but never let one through that clean() changes.
    const QByteArrayList pieces { "a", "Z", "0", ".",  " ",    "con",      "COM1", "nul",
                                  "/", ":", "~", "\t", "\x7F", "\xC3\xA4", "_",    "" };
    int accepted = 0;
    for (const QByteArray &first : pieces) {
        for (const QByteArray &second : pieces) {
            for (const QByteArray &third : pieces) {
                const QByteArray name = first + second + third;
                if (!OutputNames::isClean(name))
                    continue;
                ++accepted;
                QCOMPARE(OutputNames::clean(QString::fromUtf8(name)), QString::fromUtf8(name));
            }
        }
    }
    QVERIFY(accepted > 100);
    QVERIFY(OutputNames::isClean("IMG_0001.HEIC"));
    QVERIFY(!OutputNames::isClean(QByteArray(201, 'x')));
}

void tst_OutputNames::numbersNamesThatClash_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("equal") << QStringList { u"a.txt"_s, u"a.txt"_s, u"a.txt"_s }
                           << QStringList { u"a.txt"_s, u"a (2).txt"_s, u"a (3).txt"_s };
    QTest::newRow("case") << QStringList { u"A.txt"_s, u"a.TXT"_s }
                          << QStringList { u"A.txt"_s, u"a (2).TXT"_s };
    QTest::newRow("case outside ASCII")
        << QStringList { u"ÄÉ"_s, u"äé"_s } << QStringList { u"ÄÉ"_s, u"äé (2)"_s };
    QTest::newRow("normalisation") << QStringList { u"\u00E4"_s, u"a\u0308"_s }
                                   << QStringList { u"\u00E4"_s, u"a\u0308 (2)"_s };
    QTest::newRow("a number that is in use already")
        << QStringList { u"a (2).txt"_s, u"a.txt"_s, u"A.txt"_s }
        << QStringList { u"a (2).txt"_s, u"a.txt"_s, u"A (3).txt"_s };
    QTest::newRow("a number that comes into use later")
        << QStringList { u"a"_s, u"a"_s, u"a (2)"_s }
        << QStringList { u"a"_s, u"a (2)"_s, u"a (2) (2)"_s };
    QTest::newRow("no extension, dots inside")
        << QStringList { u"a.b.c"_s, u"a.b.c"_s } << QStringList { u"a.b.c"_s, u"a.b (2).c"_s };
}

void tst_OutputNames::numbersNamesThatClash()
{
    QFETCH(QStringList, names);
    QFETCH(QStringList, expected);
    OutputNames texts;
    OutputNames bytes; // the short cut for plain names must see the same clashes
    QStringList takenAsText;
    QStringList takenAsBytes;
    for (const QString &name : names) {
        takenAsText.append(texts.take(name));
        takenAsBytes.append(bytes.takeClean(name.toUtf8()) ? name : bytes.take(name));
    }
    QCOMPARE(takenAsText, expected);
    QCOMPARE(takenAsBytes, expected);
}

void tst_OutputNames::numbersManyEqualNames()
{
    constexpr int kCount = 100'000;
    OutputNames names;
    QString last;
    for (int i = 0; i < kCount; ++i)
        last = names.take(u"a.txt"_s);
    QCOMPARE(last, u"a (%1).txt"_s.arg(kCount));
}

void tst_OutputNames::ordersAsAPersonExpects_data()
{
    QTest::addColumn<QByteArray>("smaller");
    QTest::addColumn<QByteArray>("greater");

    QTest::newRow("numbers") << QByteArray("IMG_9.JPG") << QByteArray("IMG_10.JPG");
    QTest::newRow("long numbers") << QByteArray("9")
                                  << QByteArray("123456789012345678901234567890");
    QTest::newRow("case aside") << QByteArray("apple") << QByteArray("Banana");
    QTest::newRow("case when all else is equal") << QByteArray("A") << QByteArray("a");
    QTest::newRow("zeros in front") << QByteArray("1b") << QByteArray("01c");
    QTest::newRow("shorter first") << QByteArray("IMG") << QByteArray("IMG_1");
    QTest::newRow("empty") << QByteArray() << QByteArray("0");
}

void tst_OutputNames::ordersAsAPersonExpects()
{
    QFETCH(QByteArray, smaller);
    QFETCH(QByteArray, greater);
    QVERIFY(PhoneBackup::PathParts::compareNatural(smaller, greater) < 0);
    QVERIFY(PhoneBackup::PathParts::compareNatural(greater, smaller) > 0);
    QCOMPARE(PhoneBackup::PathParts::compareNatural(smaller, smaller), 0);
}

QTEST_APPLESS_MAIN(tst_OutputNames)
#include "tst_OutputNames.moc"
