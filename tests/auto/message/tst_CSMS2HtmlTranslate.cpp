#include "message/CSMS2HtmlTranslate.h"
#include "platform/UxResourceMgr.h"
#include "support/Golden.h"
#include "support/RecordingSink.h"
#include "support/SMSFromJson.h"
#include "support/WrappedPage.h"

#include <QtTest>

#include <ctime>

using namespace Qt::StringLiterals;

class tst_CSMS2HtmlTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { UxResourceMgr::instance()->setProductResourceRoot({}); }
    void writesConversations_data() { Golden::addRows(u"message-page"_s); }
    void writesConversations();
    void stylesThePage();
    void copiesTheImagesInOrder();
    void writesAConversationInOnePiece();
    void keepsWhateverTextHolds_data();
    void keepsWhateverTextHolds();
    void failsWithItsSink_data();
    void failsWithItsSink();
};

void tst_CSMS2HtmlTranslate::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void tst_CSMS2HtmlTranslate::writesConversations()
{
    QFETCH(QString, folder);

    FakeSMSData data;
    QVERIFY(SMSFromJson::load(folder + u"/input.json"_s, data));
    RecordingSink sink;
    QVERIFY(CSMS2HtmlTranslate(&data).translate(&sink, u"Ann's <Messages>"_s, nullptr));
    const QString page = sink.text();
    QVERIFY(!page.contains(u'\n'));
    for (const QString &name : sink.images.keys())
        QVERIFY(page.contains(u"<img src=\"image/%1\" />"_s.arg(name)));
    COMPARE_GOLDEN(wrappedPage(page), folder + u"/page.html"_s);
}

void tst_CSMS2HtmlTranslate::stylesThePage()
{
    FakeSMSData data;
    QByteArray expected = Files::read(Golden::folder(u"message-page-style/style.css"_s));
    QCOMPARE(expected.count('\n'), 45); // 44 rules between the tags
    expected.replace("\n", "");
    QCOMPARE(CSMS2HtmlTranslate(&data).smsStyle().toUtf8(), expected);
}

void tst_CSMS2HtmlTranslate::copiesTheImagesInOrder()
{
    QStringList expected;
    for (const QString &bubble : { u"message"_s, u"imessage"_s, u"rmessage"_s }) {
        for (const QString &part : { u"top-l"_s,
                                     u"top-c"_s,
                                     u"top-r"_s,
                                     u"middle-l"_s,
                                     u"bg"_s,
                                     u"middle-r"_s,
                                     u"bot-l"_s,
                                     u"bot-c"_s,
                                     u"bot-r"_s })
            expected.append(u"%1-%2.png"_s.arg(bubble, part));
    }
    expected += QStringList { u"exclamation.png"_s,
                              u"del_msg_recv.png"_s,
                              u"del_msg_send.png"_s,
                              u"sms_video.png"_s,
                              u"sms_image.png"_s };
    UxResourceMgr::instance()->setProductResourceRoot(u"/some/where"_s);
    FakeSMSData data;
    RecordingSink sink;
    QVERIFY(CSMS2HtmlTranslate(&data).translateDataBefore(&sink));
    QCOMPARE(sink.copied, expected);
    QCOMPARE(sink.sources.first(), u"/some/where/DataExport/message-top-l.png"_s);
    QCOMPARE(sink.sources.last(), u"/some/where/DataExport/sms_image.png"_s);
}

void tst_CSMS2HtmlTranslate::writesAConversationInOnePiece()
{
    FakeSMSData data;
    for (int i = 0; i < 3; ++i)
        data.addConversation(u"Bob"_s).addChat(u"text"_s);
    RecordingSink sink;
    QVERIFY(CSMS2HtmlTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(sink.writes.size(), 5);
}

void tst_CSMS2HtmlTranslate::keepsWhateverTextHolds_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("control characters") << u"a\u0001\u001f\tb"_s;
    QTest::newRow("zero") << QString(QChar(u'\0'));
    QTest::newRow("carriage return") << u"a\rb"_s;
    QTest::newRow("unpaired surrogate") << QString(QChar(0xd83d)) + u"x"_s;
    QTest::newRow("right to left override") << u"\u202Egnp.exe"_s;
    QTest::newRow("pattern marks") << u"%1 %2 %L1"_s;
    QTest::newRow("very long") << u"0123456789"_s.repeated(1000000);
}

void tst_CSMS2HtmlTranslate::keepsWhateverTextHolds()
{
    QFETCH(QString, text);

    FakeSMSData data;
    data.addConversation(text, text).addChat(text);
    RecordingSink sink;
    QVERIFY(CSMS2HtmlTranslate(&data).translate(&sink, text, nullptr));
    const QString page = sink.text();
    QVERIFY(page.contains(u"<td class=\"mid-c\">"_s + text + u"&nbsp;</td>"_s));
    QVERIFY(page.contains(u"<h2>Name: "_s + text + u"&nbsp;&nbsp;Phone: "_s + text + u"&nbsp;"_s));
    QVERIFY(page.contains(u"<h1>"_s + text + u"</h1>"_s));
}

void tst_CSMS2HtmlTranslate::failsWithItsSink_data()
{
    QTest::addColumn<int>("step");

    QTest::newRow("before") << 0;
    QTest::newRow("item") << 1;
    QTest::newRow("after") << 2;
}

void tst_CSMS2HtmlTranslate::failsWithItsSink()
{
    QFETCH(int, step);

    FakeSMSData data;
    FakeSMSItem &item = data.addConversation(u"Bob"_s);
    for (const bool accepts : { true, false }) {
        RecordingSink sink;
        sink.accepts = accepts;
        CSMS2HtmlTranslate translator(&data);
        const bool result = step == 0 ? translator.translateDataBefore(&sink)
            : step == 1               ? translator.translateDataItem(&sink, &item)
                                      : translator.translateDataAfter(&sink);
        QCOMPARE(result, accepts);
    }
}

QTEST_APPLESS_MAIN(tst_CSMS2HtmlTranslate)
#include "tst_CSMS2HtmlTranslate.moc"
