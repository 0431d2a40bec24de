#include "contact/CContact2HtmlTranslate.h"
#include "platform/UxResourceMgr.h"
#include "sample/HeicEncoder.h"
#include "support/ContactFromJson.h"
#include "support/Golden.h"
#include "support/RecordingReport.h"
#include "support/RecordingSink.h"

#include <QRegularExpression>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// The page is one line; the golden files break it before each block, for those who read them.
QByteArray wrapped(const QString &page)
{
    static const QRegularExpression block(u"(?=<(?:div|p|tr|table)[ >])"_s);
    QString lines = page;
    lines.replace(block, u"\n"_s);
    return lines.mid(lines.startsWith(u'\n') ? 1 : 0).toUtf8();
}

} // namespace

class tst_CContact2HtmlTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { UxResourceMgr::instance()->setProductResourceRoot({}); }
    void writesCards_data() { Golden::addRows(u"contact-page"_s); }
    void writesCards();
    void stylesThePage();
    void copiesItsImages();
    void hasASilhouette();
    void fitsPhotos_data();
    void fitsPhotos();
    void turnsPhotosUpright();
    void tellsTheReportWhatIsNotShown();
    void failsWithItsSink_data();
    void failsWithItsSink();
};

void tst_CContact2HtmlTranslate::writesCards()
{
    QFETCH(QString, folder);

    FakeContactData data;
    QVERIFY(ContactFromJson::load(folder + u"/input.json"_s, data));
    for (const bool hardened : { true, false }) {
        const QString expected = folder + (hardened ? u"/hardened.html"_s : u"/page.html"_s);
        if (hardened && !QFileInfo::exists(expected))
            continue;
        RecordingSink sink;
        sink.setHardened(hardened);
        QVERIFY(CContact2HtmlTranslate(&data).translate(&sink, u"Ann's <Contacts>"_s, nullptr));
        const QString page = sink.text();
        for (const QString &name : sink.images.keys())
            QVERIFY(page.contains(u"<img src=\"image/%1\" />"_s.arg(name)));
        COMPARE_GOLDEN(wrapped(page), expected);
    }
}

void tst_CContact2HtmlTranslate::stylesThePage()
{
    FakeContactData data;
    QByteArray expected = Files::read(Golden::folder(u"contact-page-style/style.css"_s));
    QCOMPARE(expected.count('\n'), 20); // 19 rules between the tags
    expected.replace("\n", "");
    QCOMPARE(CContact2HtmlTranslate(&data).contactStyle().toUtf8(), expected);
}

void tst_CContact2HtmlTranslate::copiesItsImages()
{
    UxResourceMgr::instance()->setProductResourceRoot(u"/some/where"_s);
    FakeContactData data;
    RecordingSink sink;
    QVERIFY(CContact2HtmlTranslate(&data).translateDataBefore(&sink));
    QCOMPARE(sink.copied, (QStringList { u"default_contact.png"_s, u"deleted.png"_s }));
    QCOMPARE(sink.sources,
             (QStringList { u"/some/where/DataExport/contact_person.png"_s,
                            u"/some/where/DataExport/deleted.png"_s }));
}

void tst_CContact2HtmlTranslate::hasASilhouette()
{
    const QImage image(QStringLiteral(PROJECT_RESOURCES "/DataExport/contact_person.png"));
    QCOMPARE(image.size(), QSize(136, 136));
    QVERIFY(image.pixelColor(68, 55).lightness() < image.pixelColor(12, 55).lightness());
}

void tst_CContact2HtmlTranslate::fitsPhotos_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("shown");

    QTest::newRow("as it should be") << QSize(136, 136) << QSize(136, 136);
    QTest::newRow("large") << QSize(1024, 768) << QSize(136, 102);
    QTest::newRow("high") << QSize(100, 400) << QSize(34, 136);
    QTest::newRow("small ones are enlarged") << QSize(2, 1) << QSize(136, 68);
    QTest::newRow("half a size too small") << QSize(136, 100) << QSize(136, 100);
    QTest::newRow("a thread") << QSize(2000, 2) << QSize(136, 1);
}

void tst_CContact2HtmlTranslate::fitsPhotos()
{
    QFETCH(QSize, size);

    FakeContactData data;
    data.addContact(u"Bo"_s).photoBytes =
        ContactFromJson::photo(QJsonArray { size.width(), size.height() });
    RecordingSink sink;
    QVERIFY(CContact2HtmlTranslate(&data).translate(&sink, {}, nullptr));
    const QByteArray png = sink.images.value(u"0.png"_s);
    QVERIFY(png.startsWith("\x89PNG"));
    const QImage image = QImage::fromData(png);
    QTEST(image.size(), "shown");
    QCOMPARE(image.pixelColor(image.width() / 2, image.height() / 2), QColor(Qt::darkCyan));
}

void tst_CContact2HtmlTranslate::turnsPhotosUpright()
{
    constexpr int kToTheRight = 6;
    QImage lying(640, 320, QImage::Format_RGB32);
    lying.fill(Qt::darkCyan);
    FakeContactData data;
    data.addContact(u"Bo"_s).photoBytes = Sample::encodeHeic(lying, { kToTheRight });
    RecordingSink sink;
    QVERIFY(CContact2HtmlTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(QImage::fromData(sink.images.value(u"0.png"_s)).size(), QSize(68, 136));
}

void tst_CContact2HtmlTranslate::tellsTheReportWhatIsNotShown()
{
    FakeContactData data;
    data.addContact(u"A"_s).photoBytes = "no picture";
    FakeContact &nameless = data.addContact({});
    for (const int type : { 3, 99, 16, -1, 0, 99 })
        nameless.add(type, u"label"_s, u"value"_s);
    data.addContact(u"C"_s).readable = false;
    RecordingReport report;
    RecordingSink sink;
    sink.setReport(&report);
    QVERIFY(CContact2HtmlTranslate(&data).translate(&sink, {}, nullptr));

    using Cause = CIExportReport::Cause;
    QCOMPARE(report.failures.size(), 3);
    QCOMPARE(report.failures[0].item, u"A"_s);
    QCOMPARE(report.failures[0].cause, Cause::Content);
    QCOMPARE(report.failures[1].item, u"(no name)"_s);
    QCOMPARE(report.failures[1].cause, Cause::Content);
    QVERIFY(report.failures[1].reason.contains(u'4'));
    QCOMPARE(report.failures[2].item, u"C"_s);
    QCOMPARE(report.failures[2].cause, Cause::Source);
    QCOMPARE(report.exported, (QStringList { u": A"_s, u": (no name)"_s }));
}

void tst_CContact2HtmlTranslate::failsWithItsSink_data()
{
    QTest::addColumn<int>("step");

    QTest::newRow("before") << 0;
    QTest::newRow("item") << 1;
    QTest::newRow("after") << 2;
}

void tst_CContact2HtmlTranslate::failsWithItsSink()
{
    QFETCH(int, step);

    FakeContactData data;
    FakeContact &contact = data.addContact(u"Bo"_s);
    for (const bool accepts : { true, false }) {
        RecordingSink sink;
        sink.accepts = accepts;
        CContact2HtmlTranslate translator(&data);
        const bool result = step == 0 ? translator.translateDataBefore(&sink)
            : step == 1               ? translator.translateDataItem(&sink, &contact)
                                      : translator.translateDataAfter(&sink);
        QCOMPARE(result, accepts);
        QCOMPARE(sink.writes.size(), 1);
    }
}

QTEST_APPLESS_MAIN(tst_CContact2HtmlTranslate)
#include "tst_CContact2HtmlTranslate.moc"
