#include "export/CHtmlExporter.h"
#include "platform/UxResourceMgr.h"
#include "support/Files.h"
#include "support/FullDevice.h"
#include "support/RecordingReport.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

enum class Way { Completed, Stopped, Failed, FullDevice, Killed };

// Writes a hardened page with one picture, and ends in that way.
void writeHardened(const QDir &dir, const QString &owner, const QByteArray &content, Way way)
{
    CHtmlExporter sink;
    sink.setHardened(true);
    if (!sink.initExporter(dir, owner, u"N"_s) || !sink.exportDepends(content, u"0.png"_s)
        || !sink.exportData(QString::fromUtf8(content)))
        return;
    if (way == Way::Killed)
        ::_exit(0);
    if (way == Way::Stopped)
        sink.setStopped();
    if (way == Way::FullDevice) {
        const FullDevice device(10);
        sink.finish(true);
        return;
    }
    sink.finish(way != Way::Failed);
}

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
    void forbidsScriptsWhenHardened_data();
    void forbidsScriptsWhenHardened();
    void replacesAnOlderPage();
    void placesImages();
    void reportsImagesThatItCannotPlace();
    void handsOutTheDeletedMark();
    void aFailedExportLeavesNothing();
    void reportsFullDeviceAtEveryByte();
    void aHardenedPageReplacesOnlyWhenComplete_data();
    void aHardenedPageReplacesOnlyWhenComplete();
    void hardenedPagesShareNoPictures();
    void writesThroughNoLink_data();
    void writesThroughNoLink();
    void placesNothingBeforeItOpens();
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

void tst_CHtmlExporter::forbidsScriptsWhenHardened_data()
{
    QTest::addColumn<QString>("owner");
    QTest::addColumn<QString>("file");

    QTest::newRow("plain") << u"Ann"_s << u"Ann's Notes.html"_s;
    QTest::newRow("a device") << u"con.x"_s << u"con_.x's Notes.html"_s;
    QTest::newRow("direction override") << u"A\u202En"_s << u"An's Notes.html"_s;
    QTest::newRow("too long") << QString(300, u'x') << QString(194, u'x') + u".html"_s;
}

void tst_CHtmlExporter::forbidsScriptsWhenHardened()
{
    QFETCH(QString, owner);
    const QTemporaryDir temp;
    CHtmlExporter sink;
    sink.setStyle(u"<style>s</style>"_s);
    sink.setHardened(true);
    QVERIFY(sink.initExporter(QDir(temp.path()), owner, u"Notes"_s));
    QVERIFY(sink.exportData(u"body"_s));
    QVERIFY(sink.finish(true));
    // Before everything that it is to govern.
    const QByteArray beforeTitle = "<!DOCTYPE html><html lang=\"en\">"
        + kHead.mid(kHead.indexOf("<head>")).chopped(int(qstrlen("<title>")));
    QTEST(Files::tree(temp.filePath(u"Notes"_s)).join(u'|'), "file");
    QFETCH(QString, file);
    QByteArray page = Files::read(temp.filePath(u"Notes/"_s + file));
    const auto narrow = page.lastIndexOf("<style>"); // how it fits is for the browser's tests
    QVERIFY(narrow > page.indexOf("<style>"));
    page.remove(narrow, page.indexOf("</head>") - narrow);
    QCOMPARE(page,
             beforeTitle
                 + "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
                   "img-src 'self' file:; style-src 'unsafe-inline'; base-uri 'none'; "
                   "form-action 'none'\"><meta name=\"viewport\" content=\"width=device-width\">"
                   "<title>"
                 + owner.toUtf8()
                 + "'s Notes</title><style>s</style></head>"
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
    QCOMPARE(report.failures[0].cause, CIExportReport::Cause::Resource);
    QCOMPARE(report.failures[1].systemError, ENAMETOOLONG);
    QCOMPARE(report.failures[2].cause, CIExportReport::Cause::Target);
    QCOMPARE(report.failures[2].systemError, EFBIG);
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
        QCOMPARE(report.ends.value(0), room == whole ? u"N: page complete"_s : u"N: page failed"_s);
        if (room != whole)
            QCOMPARE(report.failures[0].systemError, EFBIG);
    }
}

void tst_CHtmlExporter::aHardenedPageReplacesOnlyWhenComplete_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<bool>("hasEarlier");

    const std::pair<const char *, Way> ways[] { { "completed", Way::Completed },
                                                { "stopped", Way::Stopped },
                                                { "failed", Way::Failed },
                                                { "the device is full", Way::FullDevice },
                                                { "killed", Way::Killed } };
    for (const auto &[name, way] : ways) {
        QTest::addRow("%s", name) << way << false;
        QTest::addRow("%s over an earlier one", name) << way << true;
    }
}

void tst_CHtmlExporter::aHardenedPageReplacesOnlyWhenComplete()
{
    QFETCH(Way, way);
    QFETCH(bool, hasEarlier);
    const QTemporaryDir temp;
    const QDir dir(temp.path());
    if (hasEarlier) {
        writeHardened(dir, u"Ann"_s, "earlier", Way::Completed);
        QVERIFY(Files::write(temp.filePath(u"N/mine"_s), "x"));
        QVERIFY(Files::write(temp.filePath(u"N/image/mine.png"_s), "x"));
        QVERIFY(dir.mkpath(u"N/image/7"_s));
        QVERIFY(Files::write(temp.filePath(u"N/image/7/1.png"_s), "x"));
    }
    const QStringList before = Files::tree(temp.path());
    if (way == Way::Killed) {
        const pid_t child = fork();
        if (child == 0)
            writeHardened(dir, u"Ann"_s, "later", way);
        QCOMPARE(waitpid(child, nullptr, 0), child);
        QVERIFY(Files::tree(temp.path()) != before);
        // What is left of it goes with the next run, whose own page is not touched meanwhile.
        CHtmlExporter other;
        other.setHardened(true);
        QVERIFY(other.initExporter(dir, u"Bo"_s, u"N"_s));
        QVERIFY(other.exportDepends(QByteArray("x"), u"0.png"_s));
        const QStringList during = Files::tree(temp.path());
        writeHardened(dir, u"Cy"_s, "cy", Way::Stopped);
        QCOMPARE(Files::tree(temp.path()), during);
        QVERIFY(other.finish(false));
        if (!hasEarlier)
            QVERIFY(dir.rmdir(u"N"_s));
    } else {
        writeHardened(dir, u"Ann"_s, "later", way);
    }
    const QByteArray page = Files::read(temp.filePath(u"N/Ann's N.html"_s));
    if (way != Way::Completed) {
        QCOMPARE(Files::tree(temp.path()), before);
        QCOMPARE(page.isNull(), !hasEarlier);
        QVERIFY(!page.contains("later"));
        return;
    }
    QVERIFY(page.contains("later"));
    QStringList wanted { u"N/"_s, u"N/Ann's N.html"_s, u"N/image/"_s };
    wanted += hasEarlier
        ? QStringList { u"N/image/2/"_s,      u"N/image/2/0.png"_s,  u"N/image/7/"_s,
                        u"N/image/7/1.png"_s, u"N/image/mine.png"_s, u"N/mine"_s }
        : QStringList { u"N/image/0.png"_s };
    QCOMPARE(Files::tree(temp.path()), wanted);
}

// Each of two owners' pages keeps its picture, also when one of them is exported again.
void tst_CHtmlExporter::hardenedPagesShareNoPictures()
{
    const QTemporaryDir temp;
    const QDir dir(temp.path());
    QStringList counts;
    for (const auto *owner : { "Ann", "Bo", "Ann", "Bo", "Ann" }) {
        writeHardened(dir, QString::fromLatin1(owner), owner, Way::Completed);
        int pictures = 0;
        for (const QString &path : Files::tree(temp.filePath(u"N/image"_s)))
            pictures += path.endsWith(u".png"_s) ? 1 : 0;
        counts += QString::number(pictures);
    }
    QCOMPARE(counts.join(u' '), u"1 2 2 2 2"_s);
    for (const auto *owner : { "Ann", "Bo" }) {
        const QString page = QString::fromUtf8(
            Files::read(temp.filePath(u"N/%1's N.html"_s.arg(QString::fromLatin1(owner)))));
        const QString pictures = page.section(u"<!--pictures: "_s, 1).section(u"-->"_s, 0, 0);
        QCOMPARE(Files::read(temp.filePath(u"N/"_s + pictures + u"/0.png"_s)), QByteArray(owner));
    }
}

void tst_CHtmlExporter::writesThroughNoLink_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<bool>("hardened");
    QTest::addColumn<bool>("opens");

    for (const bool hardened : { false, true }) {
        const char *how = hardened ? "hardened" : "plain";
        QTest::addRow("page, %s", how) << u"N/Ann's N.html"_s << hardened << true;
        QTest::addRow("picture, %s", how) << u"N/image/0.png"_s << hardened << true;
        QTest::addRow("shared image, %s", how) << u"N/image/a.png"_s << hardened << true;
    }
    QTest::newRow("folder") << u"N"_s << true << false;
    QTest::newRow("image folder") << u"N/image"_s << true << false;
}

void tst_CHtmlExporter::writesThroughNoLink()
{
    QFETCH(QString, link);
    QFETCH(bool, hardened);
    QFETCH(bool, opens);
    const QTemporaryDir temp;
    const QString other = temp.filePath(u"other"_s);
    QVERIFY(opens ? Files::write(other, "kept") : QDir().mkpath(other));
    QVERIFY(QDir().mkpath(QFileInfo(temp.filePath(u"out/"_s + link)).path()));
    QVERIFY(QFile::link(other, temp.filePath(u"out/"_s + link)));
    QVERIFY(Files::write(temp.filePath(u"a.png"_s), "x"));
    RecordingReport report;
    CHtmlExporter sink;
    sink.setReport(&report);
    sink.setHardened(hardened);
    QCOMPARE(sink.initExporter(QDir(temp.filePath(u"out"_s)), u"Ann"_s, u"N"_s), opens);
    if (opens) {
        QVERIFY(sink.exportDepends(QByteArray("x"), u"0.png"_s));
        QVERIFY(sink.exportDepends(temp.filePath(u"a.png"_s), u"a.png"_s));
        QVERIFY(sink.finish(true));
        QCOMPARE(Files::read(other), QByteArray("kept"));
        return;
    }
    sink.finish(false);
    QVERIFY(QFileInfo(temp.filePath(u"out/"_s + link)).isSymLink());
    QCOMPARE(Files::tree(other), QStringList());
    QCOMPARE(report.failures.value(0).systemError, ELOOP);
    QCOMPARE(report.ends, QStringList { u"N: page failed"_s });
}

void tst_CHtmlExporter::placesNothingBeforeItOpens()
{
    const QTemporaryDir temp;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(temp.path()));
    CHtmlExporter sink;
    const bool placed = sink.exportDepends(QByteArray("x"), u"a.png"_s);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(!placed);
    QCOMPARE(Files::tree(temp.path()), QStringList());
}

QTEST_GUILESS_MAIN(tst_CHtmlExporter)
#include "tst_CHtmlExporter.moc"
