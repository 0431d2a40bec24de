#include "backup/CBackupExporter.h"
#include "support/FakeTable.h"
#include "support/Golden.h"
#include "support/RecordingProgress.h"
#include "support/RecordingReport.h"
#include "support/RecordingSink.h"
#include "table/CTableTranslate.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// The page is one line; the golden files break it before each row and cell.
QByteArray wrapped(const QString &page)
{
    QString lines = page;
    return lines.replace("<tr"_L1, "\n<tr"_L1).replace("<td"_L1, "\n<td"_L1).toUtf8() + '\n';
}

} // namespace

class tst_CTableTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTables_data();
    void writesTables();
    void widensItsColumns_data();
    void widensItsColumns();
    void stylesThePage();
    void stopsWhenAsked_data();
    void stopsWhenAsked();
    void failsWithItsSink_data();
    void failsWithItsSink();
    void exportsAPage();
    void refusesATableWithoutColumns();
};

void tst_CTableTranslate::writesTables_data()
{
    Golden::addRows(u"table-page"_s);
}

void tst_CTableTranslate::writesTables()
{
    QFETCH(QString, folder);

    // Only calls have a column that never wraps.
    FakeTable data(folder.endsWith("calls"_L1) ? 15 : 9);
    QVERIFY(data.load(folder + u"/input.json"_s));
    RecordingReport report;
    RecordingSink sink;
    sink.setReport(&report);
    QVERIFY(CTableTranslate(&data).translate(&sink, u"Ann's <Table>"_s, nullptr));
    RecordingSink hardened;
    hardened.setHardened(true);
    QVERIFY(CTableTranslate(&data).translate(&hardened, u"Ann's <Table>"_s, nullptr));
    // All text is encoded anyway.
    QCOMPARE(
        hardened.text().replace("<td nowrap>"_L1, "<td>"_L1).replace(" alt=\"Deleted\""_L1, ""_L1),
        sink.text());
    QCOMPARE(hardened.text().count("<td nowrap>"_L1),
             data.dataType() == 15 ? data.items.size() : 0);
    COMPARE_GOLDEN(wrapped(sink.text()), folder + u"/page.html"_s);

    // The image is handed over once, if a row shows it.
    const bool marks = sink.text().contains("image/deleted.png"_L1);
    QCOMPARE(sink.copied, marks ? QStringList { u"deleted.png"_s } : QStringList());
    // Header and end, and each row in one piece.
    const qsizetype rows = data.items.size() - data.items.count(nullptr);
    QCOMPARE(sink.writes.size(), rows + 2);
    QCOMPARE(report.exported.size(), rows);
    QVERIFY(!report.exported.contains(u": "_s));
}

void tst_CTableTranslate::widensItsColumns_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("width"); // of all columns but the last; empty: there is only one

    QTest::newRow("one") << 1 << QString();
    QTest::newRow("two") << 2 << u"45%"_s;
    QTest::newRow("seven") << 7 << u"12%"_s;
    QTest::newRow("ninety") << 90 << u"1%"_s;
    QTest::newRow("too many") << 91 << u"0%"_s;
}

void tst_CTableTranslate::widensItsColumns()
{
    QFETCH(int, columns);
    QFETCH(QString, width);

    FakeTable data(9);
    for (int i = 0; i < columns; ++i)
        data.columns.append(u"c"_s);
    RecordingSink sink;
    QVERIFY(CTableTranslate(&data).translate(&sink, {}, nullptr));
    const QString header = sink.writes.first();
    QCOMPARE(header.count(u"<td width=\"%1\">c&nbsp;</td>"_s.arg(width)), columns - 1);
    QVERIFY(header.endsWith("<td>c&nbsp;</td></tr>"_L1));
    QCOMPARE(header.count("width="_L1), columns - 1);
}

void tst_CTableTranslate::stylesThePage()
{
    FakeTable data(9);
    QByteArray expected = Files::read(Golden::folder(u"table-page-style/style.css"_s));
    QCOMPARE(expected.count('\n'), 11); // 10 rules between the tags
    expected.replace("\n", "");
    QCOMPARE(CTableTranslate(&data).tableStyle().toUtf8(), expected);
}

void tst_CTableTranslate::stopsWhenAsked_data()
{
    QTest::addColumn<int>("stopAtCall");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("written");

    QTest::newRow("never") << 100 << 4 << 4;
    QTest::newRow("at the first row") << 1 << 4 << 0;
    QTest::newRow("at the third row") << 3 << 4 << 2;
    QTest::newRow("nothing to ask for") << 1 << 0 << 0;
}

// A table that was stopped is complete in itself, and no failure.
void tst_CTableTranslate::stopsWhenAsked()
{
    QFETCH(int, stopAtCall);
    QFETCH(int, rows);

    FakeTable data(9);
    data.columns = QStringList { u"c"_s };
    for (int i = 0; i < rows; ++i)
        data.addRow({ u"x"_s });
    RecordingProgress progress;
    progress.initRange(200);
    progress.stopAtCall = stopAtCall;
    RecordingSink sink;
    QVERIFY(CTableTranslate(&data).translate(&sink, {}, &progress));
    QTEST(int(sink.text().count("<td>x&nbsp;"_L1)), "written");
    QVERIFY(sink.text().endsWith("</tr></table></div></td></tr></table>"_L1));
    QCOMPARE(progress.deltas.size(), std::min(stopAtCall, rows));
    for (const double delta : progress.deltas)
        QCOMPARE(delta, 50.0);
}

void tst_CTableTranslate::failsWithItsSink_data()
{
    QTest::addColumn<int>("refused");
    QTest::addColumn<int>("reported");

    QTest::newRow("header") << 0 << 0;
    QTest::newRow("first row") << 1 << 0;
    QTest::newRow("second row") << 2 << 1;
    QTest::newRow("end") << 3 << 2;
}

void tst_CTableTranslate::failsWithItsSink()
{
    QFETCH(int, refused);

    FakeTable data(9);
    data.columns = QStringList { u"c"_s };
    data.addRow({ u"x"_s });
    data.addRow({ u"y"_s });
    RecordingReport report;
    RecordingSink sink;
    sink.setReport(&report);
    sink.refusedWrite = refused;
    QVERIFY(!CTableTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(sink.writes.size(), refused + 1); // nothing after the failure
    QTEST(int(report.exported.size()), "reported");
}

void tst_CTableTranslate::exportsAPage()
{
    const QTemporaryDir temp;
    FakeTable data(14);
    data.columns = QStringList { u"Title"_s };
    data.addRow({ u"<b>"_s }).deleted = true;
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    for (const bool hardened : { false, true }) {
        exporter.setHardened(hardened);
        QVERIFY(CBackupExporter::exportHtml(
            &data, QDir(temp.path()), u"A%2/n"_s, u"Calendar"_s, nullptr, &exporter));
        const QByteArray page = Files::read(temp.filePath(u"Calendar/A%2_n's Calendar.html"_s));
        QVERIFY(
            page.contains("<style type=\"text/css\">html, div, body, p, form, img, h1, input "));
        QVERIFY(page.contains("<h1>A%2/n's Calendar</h1>"));
        QVERIFY(page.contains(hardened ? "deleted.png' alt=\"Deleted\">&lt;b&gt;&nbsp;</td></tr>"
                                       : "image/deleted.png'>&lt;b&gt;&nbsp;</td></tr>"));
        QVERIFY(page.endsWith("</table></body></html>"));
        QCOMPARE(page.contains("Content-Security-Policy"), hardened);
    }
    QVERIFY(QFileInfo::exists(temp.filePath(u"Calendar/image/deleted.png"_s)));
    QCOMPARE(report.exported, (QStringList { u"Calendar: <b>"_s, u"Calendar: <b>"_s }));
    QVERIFY(report.failures.isEmpty());

    QVERIFY(Files::write(temp.filePath(u"Taken"_s), "a file"));
    QVERIFY(!CBackupExporter::exportHtml(
        &data, QDir(temp.path()), u"A"_s, u"Taken"_s, nullptr, nullptr));
    QVERIFY(!CBackupExporter::exportHtml(
        nullptr, QDir(temp.path()), u"A"_s, u"Nothing"_s, nullptr, nullptr));
}

void tst_CTableTranslate::refusesATableWithoutColumns()
{
    const QTemporaryDir temp;
    QVERIFY(Files::write(temp.filePath(u"Notes/mine"_s), "x"));
    FakeTable data(9);
    data.addRow({});
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    QVERIFY(!CBackupExporter::exportHtml(
        &data, QDir(temp.path()), u"A"_s, u"Notes"_s, nullptr, &exporter));
    QCOMPARE(Files::tree(temp.path()), (QStringList { u"Notes/"_s, u"Notes/mine"_s }));
    QCOMPARE(report.ends, QStringList { u"Notes: page failed"_s });
    QCOMPARE(report.failures.size(), 1);
    QCOMPARE(report.failures.first().type, u"Notes"_s);
    QCOMPARE(report.failures.first().item, QString());
    QCOMPARE(report.exported, QStringList());
}

QTEST_GUILESS_MAIN(tst_CTableTranslate)
#include "tst_CTableTranslate.moc"
