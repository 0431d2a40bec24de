#include "browser/Browser.h"
#include "browser/PageFaults.h"
#include "cli/Program.h"
#include "sample/BackupWriter.h"
#include "sample/NoteSample.h"
#include "sample/PlannerSample.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace BrowserTest;
using namespace Qt::StringLiterals;

namespace {

// What the table shows: rows of cells, without those that are headers.
const QString kCells = uR"js(
    [...document.querySelectorAll('.main table tr:not(.dark)')].map(
        row => [...row.cells].map(cell => cell.innerText.trim())))js"_s;

const QString kRedRows =
    u"[...document.querySelectorAll('.rd')].map(r => r.cells[0].innerText.trim())"_s;

QString joined(const QJsonValue &list)
{
    QStringList texts;
    for (const QJsonValue &text : list.toArray())
        texts.append(text.toString());
    return texts.join(u", "_s);
}

} // namespace

//! Notes, reminders and calendar, made by the program from a sample backup, as a browser shows
//! them.
class tst_TablePages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void looksAsItShould_data();
    void looksAsItShould();
    void keepsLinesAndIndents();

private:
    QString exported(int release);

    QTemporaryDir m_temp;
    Browser m_browser;
};

void tst_TablePages::initTestCase()
{
    QVERIFY2(m_browser.start(), qPrintable(m_browser.error()));
    QVERIFY(QDir().mkpath(QStringLiteral(SCREENSHOTS)));
}

// The folder of the export.
QString tst_TablePages::exported(int release)
{
    const QString root = m_temp.filePath(QString::number(release));
    const QString output = root + u"/out"_s;
    if (QDir(output).exists())
        return output;
    Sample::Options options;
    options.plannerRelease = release;
    Sample::BackupWriter writer(root + u"/backup"_s);
    writer.setInfo(u"Display Name"_s, u"Robin"_s);
    Sample::addNotes(writer, options);
    Sample::addPlanner(writer, options);
    if (!writer.finish())
        return {};
    const CliTest::Result result = CliTest::run({ root + u"/backup"_s, output });
    return result.exitCode == 0 ? output : QString();
}

void tst_TablePages::looksAsItShould_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("release");
    QTest::addColumn<QSize>("window");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("deleted");
    QTest::addColumn<QStringList>("parts"); // of the text

    const QStringList notes {
        u"Robin's Notes"_s,
        u"Words & signs <b>"_s,
        u"Boats/Repairs"_s,
        u"Grüße 🌊 後で 👨‍👩‍👧‍👦"_s,
        u"[Locked note]"_s,
        u"☑ Bilge dry"_s,
        u"2. Lines"_s,
        u"Saturday | 06:12 | 18:40"_s,
        u"┃ Never whistle"_s,
        u"[Picture: mooring.jpg]"_s,
        u"the tide tables (https://tide-and-timber.example/tides?week=24&view=all)"_s
    };
    const QSize wide(1280, 900);
    QTest::newRow("notes") << u"Notes"_s << 18 << wide << 9 << u"Old packing list"_s << notes;
    QTest::newRow("notes-narrow") << u"Notes"_s << 18 << QSize(400, 900) << 9
                                  << u"Old packing list"_s << notes;
    QTest::newRow("notes-old") << u"Notes"_s << 8 << wide << 9 << u"Old packing list"_s
                               << QStringList { u"Robin's Notes"_s, u"Grüße 🌊"_s, u"Bilge dry"_s };
    QTest::newRow("calendar") << u"Calendar"_s << 18 << wide << 9 << QString()
                              << QStringList { u"Robin's Calendar"_s,
                                               u"Repeats every 2 weeks on Tuesday and Saturday"_s,
                                               u"Marigold Boatyard\n4 Slipway Lane"_s,
                                               u"2023-06-27"_s,
                                               u"Sail to the islands ⛵"_s };
    QTest::newRow("reminders") << u"Reminders"_s << 18 << wide << 8 << u"Return the borrowed pump"_s
                               << QStringList { u"Robin's Reminders"_s,
                                                u"Part of “Paint the hull”"_s,
                                                u"Two coats <b>at least</b>"_s };
    QTest::newRow("reminders-old") << u"Reminders"_s << 11 << wide << 7 << QString()
                                   << QStringList { u"Robin's Reminders"_s, u"Buy rope"_s };
}

void tst_TablePages::looksAsItShould()
{
    QFETCH(QString, type);
    QFETCH(int, release);
    QFETCH(QSize, window);
    QFETCH(int, rows);
    QFETCH(QString, deleted);
    QFETCH(QStringList, parts);
    const QString output = exported(release);
    QVERIFY(!output.isEmpty());
    const QDir folder(output + u'/' + type);
    const QStringList pages = folder.entryList({ u"*.html"_s });
    QCOMPARE(pages.size(), 1);
    QVERIFY2(m_browser.open(folder.filePath(pages.first()), window), qPrintable(m_browser.error()));

    QCOMPARE(pageFaults(m_browser, folder.path(), 0), QString());
    QCOMPARE(m_browser.evaluate(kCells).toArray().size(), rows);
    QCOMPARE(joined(m_browser.evaluate(kRedRows)), deleted);
    const QString text = m_browser.evaluate(u"document.body.innerText"_s).toString();
    for (const QString &part : parts)
        QVERIFY2(text.contains(part), qPrintable(part));
    const QString name = QLatin1StringView(QTest::currentDataTag());
    QVERIFY(writeScreenshots(m_browser, QStringLiteral(SCREENSHOTS "/tables-") + name) > 0);
}

void tst_TablePages::keepsLinesAndIndents()
{
    const QString folder = exported(18) + u"/Notes/"_s;
    const QStringList pages = QDir(folder).entryList({ u"*.html"_s });
    QCOMPARE(pages.size(), 1);
    QVERIFY(m_browser.open(folder + pages.first(), { 1280, 900 }));
    const QString text = m_browser.evaluate(kCells)[0][4].toString();
    QCOMPARE(text.section(u'\n', 3, 4),
             u"\u00A0\u00A0\u00A0\u00A0☑ main tank\n\u00A0\u00A0\u00A0\u00A0☐ spare can"_s);
    const QStringList files = Files::tree(exported(18) + u"/Note Attachments"_s);
    QCOMPARE(files,
             QStringList({ u"Mooring sketch/"_s,
                           u"Mooring sketch/Drawing.jpg"_s,
                           u"Mooring sketch/Harbour fees.pdf"_s,
                           u"Mooring sketch/mooring.jpg"_s }));
}

QTEST_GUILESS_MAIN(tst_TablePages)
#include "tst_TablePages.moc"
