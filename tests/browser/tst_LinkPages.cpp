#include "auto/sample/SqliteRows.h"
#include "browser/Browser.h"
#include "browser/PageFaults.h"
#include "cli/Program.h"
#include "sample/BackupWriter.h"
#include "sample/SampleBackup.h"
#include "sample/WhatsappShowcase.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace BrowserTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPhoneWidth = 400;

// Lines of text in each cell of the fourth column.
const QString kLinesOfDates = uR"js(
    [...document.querySelectorAll('.main tr:not(.dark)')].map(row => {
        const range = document.createRange();
        range.selectNodeContents(row.cells[3]);
        return new Set([...range.getClientRects()].map(r => r.top)).size;
    }))js"_s;

const QString kTargets = u"[...document.querySelectorAll('.main a')].map(a => a.href)"_s;

// As the links stand in the page's text, title and target, group by group.
const QString kHeadings =
    u"[...document.querySelectorAll('.main tr.dark')].map(r => r.innerText.trim())"_s;

} // namespace

//! Pages of tables and bookmarks, and the index, made from a sample backup, as a browser shows
//! them.
class tst_LinkPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void callsLookAsTheyShould_data();
    void callsLookAsTheyShould();
    void linksGoWhereTheySay();
    void indexLeadsToThePages();

private:
    QString page(const QString &folder) const
    {
        const QDir dir(m_temp.filePath(u"out/"_s + folder));
        const QStringList pages = dir.entryList({ u"*.html"_s });
        return pages.size() == 1 ? dir.filePath(pages.first()) : QString();
    }
    QString database(const QString &path, const QString &domain = u"HomeDomain"_s) const
    {
        const QString id = Sample::BackupWriter::fileId(domain, path);
        return m_temp.filePath(u"backup/%1/%2"_s.arg(id.first(2), id));
    }
    void shoot(const QString &name)
    {
        QVERIFY(writeScreenshots(m_browser, QStringLiteral(SCREENSHOTS "/") + name) > 0);
    }

    QTemporaryDir m_temp;
    Browser m_browser;
};

void tst_LinkPages::initTestCase()
{
    QVERIFY2(m_browser.start(), qPrintable(m_browser.error()));
    QVERIFY(QDir().mkpath(QStringLiteral(SCREENSHOTS)));
    Sample::BackupWriter writer(m_temp.filePath(u"backup"_s));
    Sample::addSampleContents(writer, {});
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
    CliTest::run({ m_temp.filePath(u"backup"_s), m_temp.filePath(u"out"_s) });
}

void tst_LinkPages::callsLookAsTheyShould_data()
{
    QTest::addColumn<QSize>("window");

    QTest::newRow("wide") << QSize(1200, 900);
    QTest::newRow("narrow") << QSize(700, 900);
    QTest::newRow("phone") << QSize(kPhoneWidth, 900);
}

void tst_LinkPages::callsLookAsTheyShould()
{
    QFETCH(QSize, window);
    const QString path = page(u"Call History"_s);
    QVERIFY(!path.isEmpty());
    QVERIFY2(m_browser.open(path, window), qPrintable(m_browser.error()));
    QCOMPARE(pageFaults(m_browser, QFileInfo(path).path(), 0), QString());
    const QJsonArray lines = m_browser.evaluate(kLinesOfDates).toArray();
    const auto withWhatsapp =
        sqliteRows(database(u"CallHistory.sqlite"_s, Sample::whatsappDomain()),
                   "SELECT Z_PK FROM ZWACDCALLEVENT");
    QVERIFY(!withWhatsapp.isEmpty());
    QCOMPARE(lines.size(), Sample::Options().calls + withWhatsapp.size());
    for (const QJsonValue &count : lines)
        QCOMPARE(count.toInt(), 1);
    shoot(u"calls-"_s + QLatin1StringView(QTest::currentDataTag()));
}

void tst_LinkPages::linksGoWhereTheySay()
{
    const QString path = page(u"Safari"_s);
    QVERIFY(!path.isEmpty());
    QVERIFY2(m_browser.open(path, { kPhoneWidth, 900 }), qPrintable(m_browser.error()));
    QCOMPARE(pageFaults(m_browser, QFileInfo(path).path(), kPhoneWidth), QString());
    QVERIFY2(m_browser.open(path, { 1000, 900 }), qPrintable(m_browser.error()));
    QCOMPARE(pageFaults(m_browser, QFileInfo(path).path(), 910), QString());

    QSet<QString> shown;
    for (const QJsonValue &target : m_browser.evaluate(kTargets).toArray())
        shown.insert(target.toString());
    QSet<QString> wanted;
    const auto add = [&](const QString &file, const char *sql) {
        for (const QByteArrayList &row : sqliteRows(database(file), sql))
            wanted.insert(m_browser
                              .evaluate(u"new URL('%1').href"_s.arg(
                                  QString::fromUtf8(row[0]).replace(u'\'', u"\\'"_s)))
                              .toString());
    };
    add(u"Library/Safari/Bookmarks.db"_s,
        "SELECT url FROM bookmarks WHERE type = 0 AND url LIKE 'http%'");
    add(u"Library/Safari/History.db"_s, "SELECT url FROM history_items");
    QVERIFY(wanted.size() > 30);
    QCOMPARE(shown, wanted); // what is no address of the web is none of them
    QStringList headings;
    for (const QJsonValue &heading : m_browser.evaluate(kHeadings).toArray())
        headings.append(heading.toString());
    QCOMPARE(headings.join(u'|'),
             u"Reading List|Boats|Bookmarks Menu|Favorites|Knots & Rigging|recipes|History"_s);
    const QString text = m_browser.evaluate(u"document.body.innerText"_s).toString();
    QVERIFY(text.contains(u"<Harbour> \"live\" & more"_s));
    QVERIFY(text.contains(u"javascript:window.print()"_s));
    shoot(u"safari"_s);
}

void tst_LinkPages::indexLeadsToThePages()
{
    const QString path = m_temp.filePath(u"out/index.html"_s);
    for (const QSize window : { QSize(1000, 900), QSize(420, 800) }) {
        QVERIFY2(m_browser.open(path, window), qPrintable(m_browser.error()));
        QCOMPARE(pageFaults(m_browser, QFileInfo(path).path(), 0), QString());
        shoot(u"index-%1"_s.arg(window.width()));
    }
    const QJsonArray links =
        m_browser.evaluate(u"[...document.links].map(a => decodeURI(a.href))"_s).toArray();
    QVERIFY(links.size() > 15);
    for (const QJsonValue &link : links)
        QVERIFY2(QFileInfo::exists(QUrl(link.toString()).toLocalFile()),
                 qPrintable(link.toString()));
}

QTEST_GUILESS_MAIN(tst_LinkPages)
#include "tst_LinkPages.moc"
