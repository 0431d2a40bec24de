#include "export/CHtmlExporter.h"
#include "platform/UxResourceMgr.h"
#include "support/Files.h"
#include "support/FullDevice.h"
#include "support/RecordingReport.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray kHead =
    "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
    "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">"
    "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"><title>";

} // namespace

class tst_CHtmlExporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheFrame_data();
    void writesTheFrame();
    void forbidsScriptsWhenHardened();
    void replacesAnOlderPage();
    void placesImages();
    void reportsImagesThatItCannotPlace();
    void handsOutTheDeletedMark();
    void aFailedExportLeavesNothing();
    void reportsFullDeviceAtEveryByte();
};

void tst_CHtmlExporter::writesTheFrame_data()
{
    QTest::addColumn<QString>("owner");
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("afterHead");

    QTest::newRow("plain") << u"Ann"_s << u"<style>s</style>"_s << u"<p>h\u00E9 \U0001F600</p>"_s
                           << u"Ann's Notes.html"_s
                           << QByteArray("Ann's Notes</title><style>s</style></head><body>"
                                         "<p>h\xC3\xA9 \xF0\x9F\x98\x80</p></body></html>");
    QTest::newRow("unsafe names, percent signs")
        << u"A/n:n %1 %2"_s << QString() << QString() << u"A_n_n %1 %2's Notes.html"_s
        << QByteArray("A_n_n %1 %2's Notes</title></head><body></body></html>");
    QTest::newRow("a page that would be hidden")
        << u"..Ann"_s << QString() << QString() << u"Ann's Notes.html"_s
        << QByteArray("..Ann's Notes</title></head><body></body></html>");
    QTest::newRow("an owner with too long a name")
        << QString(300, u'x') << QString() << QString() << QString(250, u'x') + u".html"_s
        << QByteArray(300, 'x') + "'s Notes</title></head><body></body></html>";
    QTest::newRow("the title is not encoded")
        << u"Ann & Bo"_s << QString() << u"a\nb"_s << u"Ann & Bo's Notes.html"_s
        << QByteArray("Ann & Bo's Notes</title></head><body>a\nb</body></html>");
    QTest::newRow("an unpaired surrogate stays valid UTF-8")
        << u"Ann"_s << QString() << QString(QChar(0xD83D)) + u"."_s << u"Ann's Notes.html"_s
        << QByteArray("Ann's Notes</title></head><body>\xEF\xBF\xBD.</body></html>");
}

void tst_CHtmlExporter::writesTheFrame()
{
    QFETCH(QString, owner);
    QFETCH(QString, style);
    QFETCH(QString, body);
    QFETCH(QString, file);
    const QTemporaryDir temp;
    CHtmlExporter sink;
    sink.setStyle(style);
    QVERIFY(sink.initExporter(QDir(temp.path()), owner, u"Notes"_s));
    sink.setStyle(u"too late"_s);
    QVERIFY(sink.exportData(body));
    QVERIFY(sink.finish(true));
    QCOMPARE(Files::tree(temp.path()), (QStringList { u"Notes/"_s, u"Notes/"_s + file }));
    const QByteArray page = Files::read(temp.filePath(u"Notes/"_s + file));
    QCOMPARE(page.left(kHead.size()), kHead);
    QTEST(page.mid(kHead.size()), "afterHead");
}

void tst_CHtmlExporter::forbidsScriptsWhenHardened()
{
    const QTemporaryDir temp;
    CHtmlExporter sink;
    sink.setStyle(u"<style>s</style>"_s);
    sink.setHardened(true);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"Notes"_s));
    QVERIFY(sink.exportData(u"body"_s));
    QVERIFY(sink.finish(true));
    // Before everything that it is to govern.
    const QByteArray beforeTitle = kHead.chopped(int(qstrlen("<title>")));
    QCOMPARE(Files::read(temp.filePath(u"Notes/Ann's Notes.html"_s)),
             beforeTitle
                 + "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
                   "img-src 'self' file:; style-src 'unsafe-inline'; base-uri 'none'; "
                   "form-action 'none'\"><title>Ann's Notes</title><style>s</style></head>"
                   "<body>body</body></html>");
}

void tst_CHtmlExporter::replacesAnOlderPage()
{
    const QTemporaryDir temp;
    for (const QString &body : { u"a long first page"_s, u"second"_s }) {
        CHtmlExporter sink;
        QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"Notes"_s));
        QVERIFY(sink.exportData(body));
        QVERIFY(sink.finish(true));
    }
    QCOMPARE(Files::tree(temp.filePath(u"Notes"_s)), QStringList { u"Ann's Notes.html"_s });
    QVERIFY(Files::read(temp.filePath(u"Notes/Ann's Notes.html"_s))
                .endsWith("<body>second</body></html>"));
}

void tst_CHtmlExporter::placesImages()
{
    const QTemporaryDir temp;
    QVERIFY(Files::write(temp.filePath(u"src.png"_s), "from a file"));
    for (int run = 0; run < 2; ++run) { // a second export meets its own images
        CHtmlExporter sink;
        QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"Notes"_s));
        QVERIFY(sink.exportDepends(temp.filePath(u"src.png"_s), u"a.png"_s));
        QVERIFY(sink.exportDepends(QByteArray("longer bytes"), u"b.png"_s));
        QVERIFY(sink.exportDepends(QByteArray("bytes"), u"b.png"_s));
        QVERIFY(sink.finish(true));
    }
    QCOMPARE(Files::tree(temp.filePath(u"Notes/image"_s)),
             (QStringList { u"a.png"_s, u"b.png"_s }));
    QCOMPARE(Files::read(temp.filePath(u"Notes/image/a.png"_s)), QByteArray("from a file"));
    QCOMPARE(Files::read(temp.filePath(u"Notes/image/b.png"_s)), QByteArray("bytes"));
}

void tst_CHtmlExporter::reportsImagesThatItCannotPlace()
{
    const QTemporaryDir temp;
    RecordingReport report;
    CHtmlExporter sink;
    sink.setReport(&report);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"Notes"_s));
    QVERIFY(!sink.exportDepends(temp.filePath(u"missing.png"_s), u"a.png"_s));
    QVERIFY(!sink.exportDepends(QByteArray("x"), QString(300, u'x')));
    {
        const FullDevice device(3);
        QVERIFY(sink.exportDepends(QByteArray("12345"), u"cut.png"_s));
    }
    QCOMPARE(report.failures.size(), 3);
    QCOMPARE(report.failures[2].item, u"image/cut.png"_s);
    QCOMPARE(report.failures[2].cause, CIExportReport::Cause::Target);
    QCOMPARE(Files::tree(temp.filePath(u"Notes/image"_s)), QStringList());
}

void tst_CHtmlExporter::handsOutTheDeletedMark()
{
    const QTemporaryDir temp;
    QVERIFY(Files::write(temp.filePath(u"res/DataExport/deleted.png"_s), "mark"));
    UxResourceMgr::instance()->setProductResourceRoot(temp.filePath(u"res"_s));
    CHtmlExporter sink;
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"Notes"_s));
    CHtmlExporter::exportDeleteFlagImage(&sink);
    UxResourceMgr::instance()->setProductResourceRoot(QString());
    QVERIFY(sink.finish(true));
    QCOMPARE(Files::read(temp.filePath(u"Notes/image/deleted.png"_s)), QByteArray("mark"));
}

void tst_CHtmlExporter::aFailedExportLeavesNothing()
{
    const QTemporaryDir temp;
    CHtmlExporter sink;
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"Notes"_s));
    QVERIFY(sink.exportData(u"text"_s));
    QVERIFY(sink.exportDepends(QByteArray("x"), u"a.png"_s));
    QVERIFY(sink.finish(false));
    QCOMPARE(Files::tree(temp.path()), QStringList());

    CHtmlExporter never;
    QVERIFY(never.finish(false));
    QVERIFY(QDir(temp.filePath(u"Notes/Ann's Notes.html"_s)).mkpath(u"."_s));
    CHtmlExporter refused; // a folder stands where the page is to be
    QVERIFY(!refused.initExporter(QDir(temp.path()), u"Ann"_s, u"Notes"_s));
    QVERIFY(refused.finish(false));
}

void tst_CHtmlExporter::reportsFullDeviceAtEveryByte()
{
    const qint64 whole =
        kHead.size() + qint64(qstrlen("Ann's N</title></head><body>0123</body></html>"));
    for (qint64 room = whole - 30; room <= whole; ++room) {
        const QTemporaryDir temp;
        RecordingReport report;
        CHtmlExporter sink;
        sink.setReport(&report);
        QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"N"_s));
        {
            const FullDevice device(static_cast<rlim_t>(room));
            sink.exportData(u"0123"_s);
            QVERIFY(sink.finish(true));
        }
        QCOMPARE(Files::tree(temp.filePath(u"N"_s)).size(), room == whole ? 1 : 0);
        QCOMPARE(report.failures.size(), room == whole ? 0 : 1);
    }
}

QTEST_GUILESS_MAIN(tst_CHtmlExporter)
#include "tst_CHtmlExporter.moc"
