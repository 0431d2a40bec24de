#include "export/CUtils.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class tst_CUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesFileNamesSafe_data();
    void makesFileNamesSafe();
    void encodesHtml_data();
    void encodesHtml();
    void encodesAttributes_data();
    void encodesAttributes();
    void encodesCsvFields_data();
    void encodesCsvFields();
};

void tst_CUtils::makesFileNamesSafe_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("separators") << u"a/b:c"_s << u"a_b_c"_s;
    QTest::newRow("all nine") << u"1/2\\3:4\"5*6?7<8>9|0"_s << u"1_2_3_4_5_6_7_8_9_0"_s;
    QTest::newRow("every one of several") << u"??"_s << u"__"_s;
    QTest::newRow("nothing else") << u" .a\n\tb'%&. "_s << u" .a\n\tb'%&. "_s;
    QTest::newRow("outside the BMP") << u"\U0001F600/"_s << u"\U0001F600_"_s;
    QTest::newRow("empty") << u""_s << u""_s;
}

void tst_CUtils::makesFileNamesSafe()
{
    QFETCH(QString, name);
    QTEST(CUtils::safeFileName(name), "expected");
}

void tst_CUtils::encodesHtml_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("markup") << u"a<b>&\"c\""_s << u"a&lt;b&gt;&amp;&quot;c&quot;"_s;
    QTest::newRow("single quote stays") << u"Ann's"_s << u"Ann's"_s;
    QTest::newRow("line feeds") << u"one\ntwo\n"_s << u"one<br>two<br>"_s;
    QTest::newRow("carriage return stays") << u"one\r\ntwo"_s << u"one\r<br>two"_s;
    QTest::newRow("already encoded") << u"&lt;"_s << u"&amp;lt;"_s;
    QTest::newRow("a typed tag") << u"<br>"_s << u"&lt;br&gt;"_s;
}

void tst_CUtils::encodesHtml()
{
    QFETCH(QString, text);
    QTEST(CUtils::htmlEncode(text), "expected");
}

void tst_CUtils::encodesAttributes_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("both quotes") << u"'x' \"y\""_s << u"&#39;x&#39; &quot;y&quot;"_s;
    QTest::newRow("markup") << u"<a>&"_s << u"&lt;a&gt;&amp;"_s;
    QTest::newRow("line feeds stay") << u"a\nb"_s << u"a\nb"_s;
}

void tst_CUtils::encodesAttributes()
{
    QFETCH(QString, value);
    QTEST(CUtils::attributeEncode(value), "expected");
}

void tst_CUtils::encodesCsvFields_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("cell"); // of a standard table

    const auto row =
        [](const char *tag, const QString &field, const QString &expected, const QString &cell) {
            QTest::newRow(tag) << field << expected << (cell.isNull() ? expected : cell);
        };
    row("plain", u"hello"_s, u"hello"_s, {});
    row("comma", u"a,b"_s, u"\"a,b\""_s, {});
    row("quotes alone", u"say \"hi\""_s, u"say \"\"hi\"\""_s, u"\"say \"\"hi\"\"\""_s);
    row("quotes and a comma", u"\"a\",b"_s, u"\"\"\"a\"\",b\""_s, {});
    row("line feed stays inside", u"a\nb"_s, u"\"a\nb\""_s, {});
    row("carriage return", u"a\rb"_s, u"\"a\rb\""_s, {});
    row("semicolons and blanks are nothing special", u" a; b "_s, u" a; b "_s, {});
    row("empty", u""_s, u""_s, {});
    row("formula", u"=1+1"_s, u"=1+1"_s, u"'=1+1"_s);
    row("formula and a quote", u"=A(\"x\")"_s, u"=A(\"\"x\"\")"_s, u"\"'=A(\"\"x\"\")\""_s);
    row("function", u"@SUM"_s, u"@SUM"_s, u"'@SUM"_s);
    row("plus", u"+A1"_s, u"+A1"_s, u"'+A1"_s);
    row("minus", u"-1+cmd|x"_s, u"-1+cmd|x"_s, u"'-1+cmd|x"_s);
    row("tab", u"\t=1"_s, u"\t=1"_s, u"'\t=1"_s);
    row("carriage return first", u"\r1"_s, u"\"\r1\""_s, u"\"'\r1\""_s);
    row("phone number", u"+1 (202) 555-0100"_s, u"+1 (202) 555-0100"_s, {});
    row("negative number", u"-7.5"_s, u"-7.5"_s, {});
    row("no text but a NUL", QString(QChar()), QString(QChar()), u"\"\""_s);
}

void tst_CUtils::encodesCsvFields()
{
    QFETCH(QString, field);
    QTEST(CUtils::csvEncode(field), "expected");
    QTEST(CUtils::csvCell(field), "cell");
}

QTEST_GUILESS_MAIN(tst_CUtils)
#include "tst_CUtils.moc"
