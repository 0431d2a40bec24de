#include "auto/sample/SqliteRows.h"
#include "browser/Browser.h"
#include "browser/PageFaults.h"
#include "cli/Program.h"
#include "sample/BackupWriter.h"
#include "sample/ContactSample.h"
#include "sample/WhatsappSample.h"
#include "sample/WhatsappShowcase.h"
#include "support/Files.h"

#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace BrowserTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPageWidth = 500;
constexpr int kPhoneWidth = 400;

// Messages of chats that are shown; those that name a file in the CSV file.
const QByteArray kShown = " FROM ZWAMESSAGE m JOIN ZWACHATSESSION c ON c.Z_PK = m.ZCHATSESSION "
                          "WHERE c.ZCONTACTJID <> 'status@broadcast'";
const QByteArray kMediaTypes = "(1, 2, 3, 8, 11, 15, 38, 39, 53, 54)";

// How many bubbles stand at each side of the column, how many pictures they show, and which icons.
const QString kShownOnPage = uR"js(
    (() => {
        const edge = document.getElementById('wrap').getBoundingClientRect();
        const count = (name, atEdge) => [...document.getElementsByClassName(name)].filter(
            e => atEdge(e.getBoundingClientRect())).length;
        const sources = [...document.querySelectorAll('.mid-c img')].map(
            i => i.getAttribute('src').replace('image/', ''));
        return { left: count('main-left', r => Math.abs(r.left - edge.left) < 0.5),
                 right: count('main-right', r => Math.abs(r.right - edge.right) < 0.5),
                 pictures: sources.filter(s => /^\d+\.png$/.test(s)).length,
                 icons: [...new Set(sources.filter(s => !/^\d/.test(s)))].sort().join(' '),
                 dates: [...document.querySelectorAll('.main > p')].filter(
                     p => p.innerText.startsWith('Date: 20')).length,
                 broadcasts: document.querySelectorAll("img[src='image/broadcast.png']").length,
                 failed: document.querySelectorAll("img[src='image/exclamation.png']").length,
                 outside: [...document.querySelectorAll('.mid-c img')].filter(
                     i => i.getBoundingClientRect().right
                          > i.closest('.mid-c').getBoundingClientRect().right + 0.5).length,
                 thin: [...document.querySelectorAll('.mid-c td')].filter(
                     t => t.innerText.trim().length > 12 && t.offsetWidth < 100).length,
                 deleted: document.querySelectorAll("img[src^='image/del_msg']").length,
                 scripts: document.scripts.length };
    })())js"_s;

int countOf(const QString &database, const QByteArray &sql)
{
    return sqliteRows(database, sql.constData()).value(0).value(0).toInt();
}

// The rows of a CSV file as an independent reader has them.
QJsonArray csvRows(const QString &path)
{
    QProcess python;
    python.start(u"python3"_s,
                 { u"-c"_s,
                   u"import csv, json, sys\n"
                   "with open(sys.argv[1], encoding='utf-8-sig', newline='') as f:\n"
                   "    print(json.dumps(list(csv.reader(f, strict=True))))"_s,
                   path });
    if (!python.waitForFinished(60000) || python.exitCode() != 0)
        qWarning() << python.errorString() << python.readAllStandardError();
    return QJsonDocument::fromJson(python.readAllStandardOutput()).array();
}

} // namespace

//! A page of WhatsApp's chats, made by the program from a sample backup, as a browser shows it.
class tst_WhatsappPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsEverything_data();
    void showsEverything();
    void saysEverythingOfEveryKind();
    void filters_data();
    void filters();

private:
    //! Makes a backup and exports it. \return the path of the page, empty after a failure.
    QString
    exported(const QString &name, const Sample::Options &options, const QStringList &filters = {});
    QString databaseOf(const QString &name) const
    {
        const QString id =
            Sample::BackupWriter::fileId(Sample::whatsappDomain(), u"ChatStorage.sqlite"_s);
        return m_temp.filePath(u"%1/backup/%2/%3"_s.arg(name, id.first(2), id));
    }

    QTemporaryDir m_temp;
    Browser m_browser;
};

void tst_WhatsappPage::initTestCase()
{
    QVERIFY2(m_browser.start(), qPrintable(m_browser.error()));
    QVERIFY(QDir().mkpath(QStringLiteral(SCREENSHOTS)));
}

QString tst_WhatsappPage::exported(const QString &name,
                                   const Sample::Options &options,
                                   const QStringList &filters)
{
    const QString backup = m_temp.filePath(name + u"/backup"_s);
    const QString output = m_temp.filePath(name + u"/out"_s);
    Sample::BackupWriter writer(backup);
    writer.setInfo(u"Display Name"_s, u"Robin"_s);
    Sample::addContacts(writer, options);
    Sample::addWhatsapp(writer, options);
    if (!writer.finish())
        return {};
    CliTest::run(filters + QStringList { u"--only=whatsapp"_s, backup, output });
    const QDir folder(output + u"/WhatsApp"_s);
    const QStringList pages = folder.entryList({ u"*.html"_s });
    return pages.size() == 1 ? folder.filePath(pages.first()) : QString();
}

void tst_WhatsappPage::showsEverything_data()
{
    QTest::addColumn<int>("messages");
    QTest::addColumn<QSize>("window");

    QTest::newRow("every-kind") << Sample::Options::kShowcase << QSize(560, 900);
    QTest::newRow("every-kind-narrow") << Sample::Options::kShowcase << QSize(kPhoneWidth, 900);
    QTest::newRow("small-talk") << 1500 << QSize(1200, 800);
}

void tst_WhatsappPage::showsEverything()
{
    QFETCH(int, messages);
    QFETCH(QSize, window);
    const bool isShowcase = messages == Sample::Options::kShowcase;
    const QString name = QLatin1StringView(QTest::currentDataTag());
    Sample::Options options;
    options.whatsappMessages = messages;
    options.whatsappChats = 8;
    const QString page = exported(name, options);
    QVERIFY(!page.isEmpty());
    QVERIFY2(m_browser.open(page, window), qPrintable(m_browser.error()));
    const int width = window.width() < kPageWidth ? 0 : kPageWidth; // as wide as it can be
    QCOMPARE(pageFaults(m_browser, QFileInfo(page).path(), width), QString());

    const QString database = databaseOf(name);
    const auto count = [&](const QByteArray &condition) {
        return countOf(database, "SELECT count(*)" + kShown + condition);
    };
    // Each reaction is a line of its own; the number of its field says whose it is.
    const auto reactions = [&](const QByteArray &field) {
        return countOf(database,
                       "SELECT count(*) FROM ZWAMESSAGEINFO WHERE substr(ZRECEIPTINFO, 5, 1) = x'"
                           + field + '\'');
    };
    const int fromOthers = reactions("0A");
    const int fromOwner = reactions("12");
    QCOMPARE(fromOthers > 0 && fromOwner > 0, isShowcase);
    const QJsonValue shown = m_browser.evaluate(kShownOnPage);
    QCOMPARE(shown["left"_L1].toInt(),
             fromOthers + count(" AND ZISFROMME = 0 AND ZMESSAGETYPE NOT IN (6, 10)"));
    QCOMPARE(shown["right"_L1].toInt(), fromOwner + count(" AND ZISFROMME = 1"));
    QCOMPARE(shown["dates"_L1].toInt(), fromOthers + fromOwner + count({}));
    QCOMPARE(shown["scripts"_L1].toInt(), 0);
    QCOMPARE(shown["outside"_L1].toInt(), 0);
    QCOMPARE(shown["thin"_L1].toInt(), 0);
    QCOMPARE(shown["failed"_L1].toInt(), count(" AND ZMESSAGEERRORSTATUS <> 0"));
    if (isShowcase) {
        QCOMPARE(shown["pictures"_L1].toInt(),
                 5); // three photos, the preview of another, a sticker
        QCOMPARE(shown["icons"_L1].toString(),
                 u"audio.png location.png picture.png vcard.png video.png"_s);
        QCOMPARE(shown["broadcasts"_L1].toInt(), 2);
        QCOMPARE(shown["deleted"_L1].toInt(), 2);
        QVERIFY(writeScreenshots(m_browser, QStringLiteral(SCREENSHOTS "/whatsapp-") + name) > 0);
    }

    QString csv = page;
    const QJsonArray rows = csvRows(csv.replace(u".html"_s, u".csv"_s));
    QCOMPARE(rows.size(), 1 + fromOthers + fromOwner + count({}));
    int media = -1; // the head is none
    for (const QJsonValue &row : rows) {
        QCOMPARE(row.toArray().size(), 8);
        media += row[7].toString().isEmpty() ? 0 : 1;
    }
    QCOMPARE(media, count(" AND ZMESSAGETYPE IN " + kMediaTypes));
    QCOMPARE(rows[0].toArray(),
             (QJsonArray { u"Chat"_s,
                           u"Name"_s,
                           u"Phone"_s,
                           u"Date"_s,
                           u"Type"_s,
                           u"Sender"_s,
                           u"Content"_s,
                           u"Attachments"_s }));
}

void tst_WhatsappPage::saysEverythingOfEveryKind()
{
    const QString page = exported(u"words"_s, {});
    QVERIFY2(m_browser.open(page, { 560, 900 }), qPrintable(m_browser.error()));
    const QString text = m_browser.evaluate(u"document.body.innerText"_s).toString();
    const QStringList wanted {
        u"Robin's WhatsApp"_s, // heading
        u"Name: Mara Lindqvist\u00A0\u00A0Phone: +12025550142"_s,
        u"Chat: Priya Raman"_s, // the app had her number only
        u"Chat: +12025550171"_s, // nobody has a name
        u"Chat: Lighthouse Walkers 🏮"_s,
        u"Messages are end-to-end encrypted"_s,
        u"Jonas Weber created the group “Walkers”"_s,
        u"Jonas Weber added Priya Raman, you"_s,
        u"Priya Raman changed the subject to “Lighthouse Walkers 🏮”"_s,
        u"+12025550187 left"_s,
        u"Ruth ⛵"_s, // the name that she chose
        u"Unknown"_s,
        u"Missed voice call"_s,
        u"Old Lighthouse, Cliff Road 1, 54.123456,-7.654321, https://www.openstreetmap.org/"_s,
        u"Jonas Weber, +12025550117"_s,
        u"Tide table May.pdf"_s,
        u"https://tide-and-timber.example/walks/lighthouse"_s,
        u"[Deleted message]"_s,
        u"Sticker"_s,
        u"You reacted with ❤️ to “Good morning from the lighthouse! ☀️”"_s,
        u"[Reply to “Good morning from the lighthouse! ☀️”]\nAnd good night to it"_s,
        u"View once"_s,
        u"Soup or sandwiches?\n• Soup\n• Sandwiches"_s,
        u"Soup! ¡Sopa! スープ! 🍲"_s,
        u"See you at seven & bring the <big> torch"_s,
        u"صباح النور ☀️ as Noor would say"_s,
    };
    for (const QString &part : wanted)
        QVERIFY2(text.contains(part), qPrintable(part));
    QVERIFY(!text.contains(u"A status post is no message"_s));
    QVERIFY(!text.contains(u"Nobody wrote here"_s));
}

void tst_WhatsappPage::filters_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("chats");

    QTest::newRow("name") << QStringList { u"--chat=lighthouse"_s }
                          << QStringList { u"Lighthouse Walkers 🏮"_s };
    QTest::newRow("number, and the groups that it is in")
        << QStringList { u"--chat=(202) 555-0163"_s }
        << QStringList { u"Lighthouse Walkers 🏮"_s, u"Priya Raman"_s };
    QTest::newRow("one day") << QStringList { u"--since=2024-05-14"_s, u"--until=2024-05-14"_s }
                             << QStringList { u"Grandma Elsie"_s };
}

void tst_WhatsappPage::filters()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, chats);
    const QString page =
        exported(u"filter "_s + QLatin1StringView(QTest::currentDataTag()), {}, options);
    const QString text = QString::fromUtf8(Files::read(page));
    QCOMPARE(text.count(u"<h2>Chat: "_s), chats.size());
    for (const QString &chat : chats)
        QVERIFY2(text.contains(u"<h2>Chat: %1&nbsp;"_s.arg(chat)), qPrintable(chat));
}

QTEST_GUILESS_MAIN(tst_WhatsappPage)
#include "tst_WhatsappPage.moc"
