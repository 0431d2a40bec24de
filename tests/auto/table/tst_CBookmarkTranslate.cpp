#include "backup/CBackupExporter.h"
#include "support/FakeTable.h"
#include "support/Golden.h"
#include "support/RecordingProgress.h"
#include "support/RecordingReport.h"
#include "support/RecordingSink.h"
#include "table/CBookmarkTranslate.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// The page is one line; the golden files break it before each row.
QByteArray wrapped(const QString &page)
{
    QString lines = page;
    return lines.replace("<tr"_L1, "\n<tr"_L1).toUtf8() + '\n';
}

class Shouting final : public QTranslator
{
public:
    QString translate(const char *context,
                      const char *text,
                      const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return QByteArrayView(context) == "DataExport" ? QString::fromLatin1(text).toUpper()
                                                       : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class tst_CBookmarkTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesLinks_data();
    void writesLinks();
    void translatesFixedHeadings();
    void stylesThePage();
    void stopsWhenAsked_data();
    void stopsWhenAsked();
    void failsWithItsSink_data();
    void failsWithItsSink();
    void exportsAPage();
};

void tst_CBookmarkTranslate::writesLinks_data()
{
    Golden::addRows(u"bookmark-page"_s);
}

void tst_CBookmarkTranslate::writesLinks()
{
    QFETCH(QString, folder);

    FakeTable data(17);
    QVERIFY(data.load(folder + u"/input.json"_s));
    for (const bool hardened : { true, false }) {
        const QString expected = folder + (hardened ? u"/hardened.html"_s : u"/page.html"_s);
        if (hardened && !QFileInfo::exists(expected))
            continue;
        RecordingSink sink;
        sink.setHardened(hardened);
        QVERIFY(CBookmarkTranslate(&data).translate(&sink, u"Ann's <Links>"_s, nullptr));
        QCOMPARE(sink.writes.size(), 3); // all links in one piece
        const bool marks = sink.text().contains("image/deleted.png"_L1);
        QCOMPARE(sink.copied, marks ? QStringList { u"deleted.png"_s } : QStringList());
        COMPARE_GOLDEN(wrapped(sink.text()), expected);
    }
}

void tst_CBookmarkTranslate::translatesFixedHeadings()
{
    Shouting translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    FakeTable data(17);
    for (const QString &group : { u"Reading List"_s, u"History"_s, u"Work"_s })
        data.addRow({ u"t"_s, u"u"_s }).group = group;
    RecordingSink sink;
    QVERIFY(CBookmarkTranslate(&data).translate(&sink, {}, nullptr));
    QCoreApplication::removeTranslator(&translator);
    for (const QLatin1String heading : { "READING LIST"_L1, "HISTORY"_L1, "Work"_L1 })
        QVERIFY(sink.text().contains("<td>"_L1 + heading + "&nbsp;</td>"_L1));
}

void tst_CBookmarkTranslate::stylesThePage()
{
    FakeTable data(17);
    QByteArray expected = Files::read(Golden::folder(u"bookmark-page-style/style.css"_s));
    QCOMPARE(expected.count('\n'), 11); // 10 rules between the tags
    expected.replace("\n", "");
    QCOMPARE(CBookmarkTranslate(&data).bookmarkStyle().toUtf8(), expected);
}

void tst_CBookmarkTranslate::stopsWhenAsked_data()
{
    QTest::addColumn<int>("stopAtCall");
    QTest::addColumn<int>("links");
    QTest::addColumn<int>("written");

    QTest::newRow("never") << 100 << 4 << 4;
    QTest::newRow("at the first link") << 1 << 4 << 0;
    QTest::newRow("at the third link") << 3 << 4 << 2;
    QTest::newRow("nothing to ask for") << 1 << 0 << 0;
}

void tst_CBookmarkTranslate::stopsWhenAsked()
{
    QFETCH(int, stopAtCall);
    QFETCH(int, links);

    FakeTable data(17);
    for (int i = 0; i < links; ++i)
        data.addRow({ u"t"_s, u"u"_s });
    RecordingProgress progress;
    progress.initRange(200);
    progress.stopAtCall = stopAtCall;
    RecordingReport report;
    RecordingSink sink;
    sink.setReport(&report);
    QVERIFY(CBookmarkTranslate(&data).translate(&sink, {}, &progress));
    QTEST(int(sink.text().count("<a href"_L1)), "written");
    QTEST(int(report.exported.size()), "written");
    QVERIFY(sink.text().endsWith("</table></div></div>"_L1));
    QCOMPARE(progress.deltas.size(), std::min(stopAtCall, links));
    for (const double delta : progress.deltas)
        QCOMPARE(delta, 50.0);
}

void tst_CBookmarkTranslate::failsWithItsSink_data()
{
    QTest::addColumn<int>("refused");
    QTest::addColumn<int>("reported");

    QTest::newRow("opening") << 0 << 0;
    QTest::newRow("links") << 1 << 0;
    QTest::newRow("end") << 2 << 2;
}

void tst_CBookmarkTranslate::failsWithItsSink()
{
    QFETCH(int, refused);

    FakeTable data(17);
    data.addRow({ u"title"_s, u"u"_s });
    data.addRow({ {}, u"u"_s });
    RecordingReport report;
    RecordingSink sink;
    sink.setReport(&report);
    sink.refusedWrite = refused;
    QVERIFY(!CBookmarkTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(sink.writes.size(), refused + 1);
    QTEST(int(report.exported.size()), "reported");
    if (refused == 2)
        QCOMPARE(report.exported, (QStringList { u": title"_s, u": u"_s }));
}

void tst_CBookmarkTranslate::exportsAPage()
{
    const QTemporaryDir temp;
    FakeTable data(17);
    data.addRow({ u"<i>"_s, u"http://a.org/'"_s });
    FakeFile foreign;
    data.items.append(&foreign);
    CBackupExporter exporter;
    for (const bool hardened : { false, true }) {
        exporter.setHardened(hardened);
        QVERIFY(CBackupExporter::exportBookmark(
            &data, QDir(temp.path()), u"A%2/n"_s, u"Safari"_s, nullptr, &exporter));
        const QByteArray page = Files::read(temp.filePath(u"Safari/A%2_n's Safari.html"_s));
        QVERIFY(page.contains("<body><div id=\"wrap\"><div id=\"top\"><h1>A%2/n's Safari</h1>"));
        QVERIFY(page.contains(".ad:link { color:#e61010; } </style>"));
        QCOMPARE(page.contains("overflow-wrap:anywhere"), hardened);
        QVERIFY(page.contains(hardened ? "<a href='http://a.org/&#39;'>&lt;i&gt;</a>"
                                       : "<a href='http://a.org/''><i></a>"));
        QCOMPARE(page.count("<a "), 1);
        QVERIFY(page.endsWith("</table></div></div></body></html>"));
        QCOMPARE(page.contains("Content-Security-Policy"), hardened);
    }

    QVERIFY(Files::write(temp.filePath(u"Taken"_s), "a file"));
    QVERIFY(!CBackupExporter::exportBookmark(
        &data, QDir(temp.path()), u"A"_s, u"Taken"_s, nullptr, nullptr));
    QVERIFY(!CBackupExporter::exportBookmark(
        nullptr, QDir(temp.path()), u"A"_s, u"Nothing"_s, nullptr, nullptr));
}

QTEST_GUILESS_MAIN(tst_CBookmarkTranslate)
#include "tst_CBookmarkTranslate.moc"
