#include "message/CWhatsapp2HtmlTranslate.h"
#include "platform/UxResourceMgr.h"
#include "sample/HeicEncoder.h"
#include "support/FakeBackup.h"
#include "support/FakeWhatsapp.h"
#include "support/Files.h"
#include "support/Golden.h"
#include "support/RecordingReport.h"
#include "support/RecordingSink.h"
#include "support/WrappedPage.h"

#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class tst_CWhatsapp2HtmlTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { UxResourceMgr::instance()->setProductResourceRoot({}); }
    void writesChats_data() { Golden::addRows(u"whatsapp-page"_s); }
    void writesChats();
    void stylesThePage();
    void copiesTheImagesInOrder();
    void keepsWhateverTextHolds_data();
    void keepsWhateverTextHolds();
    void showsPicturesUprightAndSmall();
    void reportsPicturesThatAreThereAlone();
    void failsWithItsSink();
};

void tst_CWhatsapp2HtmlTranslate::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void tst_CWhatsapp2HtmlTranslate::writesChats()
{
    QFETCH(QString, folder);

    const WhatsappFromJson::Items items = WhatsappFromJson::load(folder);
    QVERIFY(!items.empty());
    FakeData data(11);
    for (const auto &item : items)
        data.items.append(item.get());
    RecordingSink sink;
    QVERIFY(CWhatsapp2HtmlTranslate(&data).translate(&sink, u"Ann's <WhatsApp>"_s, nullptr));
    QCOMPARE(sink.writes.size(), qsizetype(items.size()) + 2); // a chat is one piece
    const QString page = sink.text();
    for (const QString &name : sink.images.keys())
        QVERIFY(page.contains(u"<img src=\"image/%1\" />"_s.arg(name)));
    COMPARE_GOLDEN(wrappedPage(page), folder + u"/page.html"_s);
}

void tst_CWhatsapp2HtmlTranslate::stylesThePage()
{
    QByteArray expected = Files::read(Golden::folder(u"whatsapp-page-style/style.css"_s));
    QCOMPARE(expected.count('\n'), 34); // 33 rules between the tags
    expected.replace("\n", "");
    FakeData data(11);
    QCOMPARE(CWhatsapp2HtmlTranslate(&data).smsStyle().toUtf8(), expected);
}

void tst_CWhatsapp2HtmlTranslate::copiesTheImagesInOrder()
{
    const QStringList others { u"exclamation.png"_s, u"del_msg_recv.png"_s, u"del_msg_send.png"_s,
                               u"broadcast.png"_s,   u"audio.png"_s,        u"video.png"_s,
                               u"vcard.png"_s,       u"location.png"_s,     u"picture.png"_s };
    UxResourceMgr::instance()->setProductResourceRoot(u"/some/where"_s);
    FakeData data(11);
    RecordingSink sink;
    QVERIFY(CWhatsapp2HtmlTranslate(&data).translateDataBefore(&sink));
    QCOMPARE(sink.copied.size(), 27);
    QCOMPARE(sink.copied.first(), u"message-top-l.png"_s);
    QCOMPARE(sink.copied[9], u"rmessage-top-l.png"_s);
    QCOMPARE(sink.copied.sliced(18), others);
    QCOMPARE(sink.sources.last(), u"/some/where/DataExport/picture.png"_s);
}

void tst_CWhatsapp2HtmlTranslate::keepsWhateverTextHolds_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("control characters") << u"a\u0001\u001f\tb"_s;
    QTest::newRow("unpaired surrogate") << QString(QChar(0xd83d)) + u"x"_s;
    QTest::newRow("right to left override") << u"\u202Egnp.exe"_s;
    QTest::newRow("pattern marks") << u"%1 %2 %L1"_s;
    QTest::newRow("very long") << u"0123456789"_s.repeated(1000000);
}

void tst_CWhatsapp2HtmlTranslate::keepsWhateverTextHolds()
{
    QFETCH(QString, text);

    FakeWhatsappItem item({ text, text, text });
    item.add(text).author = text;
    FakeData data(11);
    data.items.append(&item);
    RecordingSink sink;
    QVERIFY(CWhatsapp2HtmlTranslate(&data).translate(&sink, text, nullptr));
    const QString page = sink.text();
    QVERIFY(page.contains(u"<td class=\"mid-c\">"_s + text + u"&nbsp;</td>"_s));
    QVERIFY(page.contains(u"<p class=\"cid\">"_s + text + u"</p>"_s));
    QVERIFY(page.contains(u"<h2>Chat: "_s + text + u"&nbsp;&nbsp;Name: "_s + text + u"&nbsp;"_s));
}

void tst_CWhatsapp2HtmlTranslate::showsPicturesUprightAndSmall()
{
    const QTemporaryDir folder;
    const QString heic = folder.filePath(u"photo.heic"_s);
    QImage lying(900, 300, QImage::Format_RGB32);
    lying.fill(Qt::darkCyan);
    constexpr int kToTheRight = 6;
    QVERIFY(Files::write(heic, Sample::encodeHeic(lying, { kToTheRight })));
    // Older than the last change: only then does a read change it at all.
    const timespec times[2] = { { 1'600'000'000, 0 }, { 1'700'000'000, 0 } };
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(heic).constData(), times, 0), 0);

    const QString png = Golden::folder(u"whatsapp-page/kinds/photo.png"_s);
    FakeWhatsappItem item({ u"Bob"_s });
    for (const QString &path : { png, png, heic }) {
        FakeWhatsappMsg &message = item.add({});
        message.code = 1;
        message.path = path;
    }
    FakeData data(11);
    data.items.append(&item);
    RecordingSink sink;
    QVERIFY(CWhatsapp2HtmlTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(sink.images.keys(), (QStringList { u"0.png"_s, u"1.png"_s, u"2.png"_s }));
    QCOMPARE(QImage::fromData(sink.images.value(u"1.png"_s)).size(), QSize(250, 83));
    QCOMPARE(QImage::fromData(sink.images.value(u"2.png"_s)).size(), QSize(83, 250));
    QCOMPARE(QFileInfo(heic).lastRead().toSecsSinceEpoch(), times[0].tv_sec);
}

void tst_CWhatsapp2HtmlTranslate::reportsPicturesThatAreThereAlone()
{
    const QString noPicture = Golden::folder(u"whatsapp-page/kinds/noise.bin"_s);
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe"_s); // nobody will ever write into it
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    FakeWhatsappItem item({ u"Bob"_s });
    FakeWhatsappMsg &blocked = item.add({});
    blocked.code = 1;
    blocked.path = pipe;
    for (const int code : { 0, 1, 2, 3, 4, 5, 6, 77 }) {
        FakeWhatsappMsg &message = item.add(u"x"_s);
        message.code = code;
        message.path = noPicture;
        item.add({}).code = code; // never downloaded
    }
    FakeWhatsappItem lost({ QString(), u"Eve"_s });
    lost.readable = false;
    FakeData data(11);
    data.items = { &item, &lost };
    RecordingReport report;
    RecordingSink sink;
    sink.setReport(&report);
    QVERIFY(CWhatsapp2HtmlTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(report.failures.size(), 3);
    QCOMPARE(report.failures[0].item, u"Bob/pipe"_s);
    QVERIFY(report.failures[0].reason.contains(u"regular file"_s));
    QCOMPARE(report.failures[1].item, u"Bob/noise.bin"_s);
    QCOMPARE(report.failures[1].cause, CIExportReport::Cause::Content);
    QCOMPARE(report.failures[2].item, u"Eve"_s);
    QCOMPARE(report.failures[2].cause, CIExportReport::Cause::Source);
    QCOMPARE(report.exported, QStringList { u": Bob"_s });
}

void tst_CWhatsapp2HtmlTranslate::failsWithItsSink()
{
    FakeWhatsappItem item({ u"Bob"_s });
    FakeData data(11);
    for (const bool accepts : { true, false }) {
        RecordingSink sink;
        sink.accepts = accepts;
        CWhatsapp2HtmlTranslate translator(&data);
        QCOMPARE(translator.translateDataBefore(&sink), accepts);
        QCOMPARE(translator.translateDataItem(&sink, &item), accepts);
        QCOMPARE(translator.translateDataAfter(&sink), accepts);
    }
}

QTEST_GUILESS_MAIN(tst_CWhatsapp2HtmlTranslate)
#include "tst_CWhatsapp2HtmlTranslate.moc"
