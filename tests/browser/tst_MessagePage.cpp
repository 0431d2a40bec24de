#include "auto/sample/SqliteRows.h"
#include "browser/Browser.h"
#include "browser/PageFaults.h"
#include "cli/Program.h"
#include "sample/BackupWriter.h"
#include "sample/ContactSample.h"
#include "sample/MessageSample.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace BrowserTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPageWidth = 500;
constexpr int kPhoneWidth = 400;

//! How many boxes stand on each side.
struct Sides
{
    int left = 0;
    int rightSms = 0;
    int rightIMessage = 0;
};

QString described(const Sides &sides)
{
    return u"%1 left, %2 right as SMS, %3 right as iMessage"_s.arg(sides.left)
        .arg(sides.rightSms)
        .arg(sides.rightIMessage);
}

//! The boxes that a message of files and stretches of text takes.
int boxesOf(const QString &text, int files)
{
    const QStringList stretches = text.split(QChar(0xfffc), Qt::SkipEmptyParts);
    return std::max(1, static_cast<int>(stretches.size()) + files);
}

//! What the database says that the page has to show.
Sides wantedSides(const QString &database)
{
    // A reaction or a vote counts when it is the last one of that person to that message, and no
    // withdrawal.
    const auto rows =
        sqliteRows(database,
                   "SELECT is_from_me, service, ifnull(text, ''), (SELECT count(*) FROM "
                   "message_attachment_join j JOIN attachment a ON a.ROWID = j.attachment_id WHERE "
                   "j.message_id = m.ROWID AND a.hide_attachment = 0) FROM message m WHERE "
                   "associated_message_type = 0 OR (associated_message_type / 1000 <> 3 AND NOT "
                   "EXISTS (SELECT 1 "
                   "FROM message n WHERE n.associated_message_guid = m.associated_message_guid AND "
                   "n.handle_id = m.handle_id AND n.date > m.date))");
    Sides sides;
    for (const QByteArrayList &row : rows) {
        const int boxes = boxesOf(QString::fromUtf8(row.value(2)), row.value(3).toInt());
        if (row[0] == "0")
            sides.left += boxes;
        else if (row.value(1) == "iMessage")
            sides.rightIMessage += boxes;
        else
            sides.rightSms += boxes;
    }
    return sides;
}

// How many boxes of each side there are, as long as they stand at their edge of the column.
const QString kSides = uR"js(
    (() => {
        const edge = document.getElementById('wrap').getBoundingClientRect();
        const count = (name, atEdge) => [...document.getElementsByClassName(name)].filter(
            e => atEdge(e.getBoundingClientRect())).length;
        const atRight = r => Math.abs(r.right - edge.right) < 0.5;
        return [count('main-left', r => Math.abs(r.left - edge.left) < 0.5),
                count('main-right', atRight), count('main-right-imsg', atRight)];
    })())js"_s;

// The parts of a bubble have to meet: a gap or an overlap shows as a line in it.
const QString kBubblesWithSeams = uR"js(
    [...document.querySelectorAll('.msg-box')].filter(table => {
        const cells = [...table.rows].map(row => [...row.cells].slice(0, 3)
                                                     .map(c => c.getBoundingClientRect()));
        const apart = (a, b) => Math.abs(a - b) > 0.01;
        return cells.length !== 3 || cells.some((row, y) => row.some((cell, x) =>
            x > 0 && apart(row[x - 1].right, cell.left)
            || y > 0 && apart(cells[y - 1][x].bottom, cell.top)));
    }).map(table => table.innerText.slice(0, 80)))js"_s;

const QString kLargestPicture = uR"js(
    Math.max(0, ...[...document.querySelectorAll('.main-left > img, .main-right > img,'
                                                 + '.main-right-imsg > img')]
        .map(i => Math.max(i.width, i.height))))js"_s;

} // namespace

//! A conversation page, made by the program from a sample backup, as a browser shows it.
class tst_MessagePage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void looksAsItShould_data();
    void looksAsItShould();
    void showsEverythingOfEveryKind();

private:
    //! Makes a backup and exports it. \return the path of the page, empty after a failure.
    QString exported(const QString &name, const Sample::Options &options);
    QString databaseOf(const QString &name) const
    {
        const QString id = Sample::BackupWriter::fileId(u"HomeDomain"_s, u"Library/SMS/sms.db"_s);
        return m_temp.filePath(u"%1/backup/%2/%3"_s.arg(name, id.first(2), id));
    }

    QTemporaryDir m_temp;
    Browser m_browser;
};

void tst_MessagePage::initTestCase()
{
    QVERIFY2(m_browser.start(), qPrintable(m_browser.error()));
    QVERIFY(QDir().mkpath(QStringLiteral(SCREENSHOTS)));
}

QString tst_MessagePage::exported(const QString &name, const Sample::Options &options)
{
    const QString backup = m_temp.filePath(name + u"/backup"_s);
    const QString output = m_temp.filePath(name + u"/out"_s);
    Sample::BackupWriter writer(backup);
    writer.setInfo(u"Display Name"_s, u"Robin"_s);
    Sample::addMessages(writer, options);
    Sample::addContacts(writer, options);
    if (!writer.finish())
        return {};
    CliTest::run({ u"--only=messages"_s, backup, output });
    const QDir folder(output + u"/Messages"_s);
    const QStringList pages = folder.entryList({ u"*.html"_s });
    return pages.size() == 1 ? folder.filePath(pages.first()) : QString();
}

void tst_MessagePage::looksAsItShould_data()
{
    QTest::addColumn<int>("messages");
    QTest::addColumn<int>("release");
    QTest::addColumn<QSize>("window");

    QTest::newRow("every-kind") << Sample::Options::kShowcase << 18 << QSize(700, 900);
    QTest::newRow("every-kind-narrow")
        << Sample::Options::kShowcase << 18 << QSize(kPhoneWidth, 900);
    QTest::newRow("every-kind-older") << Sample::Options::kShowcase << 10 << QSize(700, 900);
    QTest::newRow("small-talk") << 1500 << 18 << QSize(1200, 800);
}

void tst_MessagePage::looksAsItShould()
{
    QFETCH(int, messages);
    QFETCH(int, release);
    QFETCH(QSize, window);
    const QString name = QLatin1StringView(QTest::currentDataTag());
    Sample::Options options;
    options.messages = messages;
    options.conversations = 8;
    options.messagesRelease = release;
    const QString page = exported(name, options);
    QVERIFY(!page.isEmpty());
    QVERIFY2(m_browser.open(page, window), qPrintable(m_browser.error()));

    const int width = window.width() < kPageWidth ? 0 : kPageWidth; // as wide as it can be
    QCOMPARE(pageFaults(m_browser, QFileInfo(page).path(), width), QString());
    QVERIFY(m_browser.requests().size() > 10);
    const QJsonValue shown = m_browser.evaluate(kSides);
    QCOMPARE(described({ shown[0].toInt(), shown[1].toInt(), shown[2].toInt() }),
             described(wantedSides(databaseOf(name))));
    QCOMPARE(m_browser.evaluate(kBubblesWithSeams).toArray(), QJsonArray());
    if (messages == Sample::Options::kShowcase) {
        QCOMPARE(m_browser.evaluate(kLargestPicture).toInt(), 250);
        QVERIFY(writeScreenshots(m_browser, QStringLiteral(SCREENSHOTS "/messages-") + name) > 0);
    }
}

void tst_MessagePage::showsEverythingOfEveryKind()
{
    const QString page = exported(u"words"_s, {});
    QVERIFY2(m_browser.open(page, { 700, 900 }), qPrintable(m_browser.error()));
    const QString text = m_browser.evaluate(u"document.body.innerText"_s).toString();
    const QStringList wanted {
        u"Robin's Messages"_s, // heading
        u"Name: Mara Lindqvist"_s, // the number stands differently in the address book
        u"Name: Noor Haddad"_s, // by address
        u"Name: Marigold Boatyard"_s, // an organisation
        u"Name: Marigold Crew ⛵"_s, // a group's own name
        u"Name: Jonas Weber, Priya Raman, Sam Okafor"_s, // a group without one
        u"Phone: 28777"_s,
        u"Priya Raman laughed at “Nine as in nine"_s,
        u"reacted with 🍲 to “Welcome Ruth!"_s,
        u"[Reply to “Forecast: four"_s,
        u"Dinner on Tuesday at seven?"_s,
        u"[Edited]"_s,
        u"[Unsent]"_s,
        u"[Deleted]"_s,
        u"[Voice message 0:12]"_s,
        u"[Contact: Mara Lindqvist"_s,
        u"https://tide-and-timber.example/boats/"_s,
        u"[Payment: $24.00"_s,
        u"Mara Lindqvist added "_s,
        u"left the conversation"_s,
        u"changed the group photo"_s,
        u"Summer party"_s, // a subject
        u"Invoice 2024-117.pdf"_s,
        u"صباح النور ☀️ نعم، الساعة الخامسة"_s,
        u"👨‍👩‍👧‍👦"_s,
        u"This message has lost its conversation"_s,
        u"And this one its sender, too"_s,
        u"is the blue kayak still for sale?"_s,
    };
    for (const QString &part : wanted)
        QVERIFY2(text.contains(part), qPrintable(part));
    QVERIFY2(!text.contains(u"Dinner on Teusday?"_s), "the text before it was edited");
    QVERIFY2(!text.contains(u"liked “Seals"_s), "a reaction that was withdrawn");
    // One was never downloaded, one is missing; all others are shown, whatever their format.
    const QString placeholders =
        u"document.querySelectorAll('img[src$=\"sms_image.png\"]').length"_s;
    QCOMPARE(m_browser.evaluate(placeholders).toInt(), 2);
}

QTEST_GUILESS_MAIN(tst_MessagePage)
#include "tst_MessagePage.moc"
