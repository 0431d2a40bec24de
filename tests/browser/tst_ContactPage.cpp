#include "auto/sample/SqliteRows.h"
#include "browser/Browser.h"
#include "browser/PageFaults.h"
#include "cli/Program.h"
#include "sample/BackupWriter.h"
#include "sample/ContactDatabase.h"
#include "sample/ContactSample.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

using namespace BrowserTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPageWidth = 710;
constexpr int kPhoneWidth = 400;

// A picture fills its box in one direction at least, and the text stands beside it.
const QString kCardsThatFallApart = uR"js(
    [...document.querySelectorAll('.main')].filter(card => {
        const picture = card.querySelector('.main-pic img');
        const box = card.querySelector('.main-pic').getBoundingClientRect();
        const text = card.querySelector('.main-text').getBoundingClientRect();
        return Math.max(picture.width, picture.height) !== 136
            || text.left < box.right || text.top > box.bottom;
    }).map(card => card.innerText.slice(0, 80)))js"_s;

const QString kShownPhotos = uR"js(
    [...document.querySelectorAll('.main-pic img')]
        .filter(i => !i.src.endsWith('default_contact.png')).length)js"_s;

} // namespace

//! The page of contacts, made by the program from a sample backup, as a browser shows it.
class tst_ContactPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void looksAsItShould_data();
    void looksAsItShould();
    void showsEverythingOfEveryKind();
    void runsNothingOfStrangers_data();
    void runsNothingOfStrangers();

private:
    QString backupOf(const QString &name) const { return m_temp.filePath(name + u"/backup"_s); }
    //! Exports the backup of that name. \return the path of the page, empty after a failure.
    QString exported(const QString &name);
    QString exportedSample(const QString &name, const Sample::Options &options);
    int countOf(const QString &name, const QString &database, const char *sql) const;

    QTemporaryDir m_temp;
    Browser m_browser;
};

void tst_ContactPage::initTestCase()
{
    QVERIFY2(m_browser.start(), qPrintable(m_browser.error()));
    QVERIFY(QDir().mkpath(QStringLiteral(SCREENSHOTS)));
}

QString tst_ContactPage::exported(const QString &name)
{
    const QString output = m_temp.filePath(name + u"/out"_s);
    CliTest::run({ u"--only=contacts"_s, backupOf(name), output });
    const QDir folder(output + u"/Contacts/HTML"_s);
    const QStringList pages = folder.entryList({ u"*.html"_s });
    return pages.size() == 1 ? folder.filePath(pages.first()) : QString();
}

QString tst_ContactPage::exportedSample(const QString &name, const Sample::Options &options)
{
    Sample::BackupWriter writer(backupOf(name));
    writer.setInfo(u"Display Name"_s, u"Robin"_s);
    Sample::addContacts(writer, options);
    return writer.finish() ? exported(name) : QString();
}

int tst_ContactPage::countOf(const QString &name, const QString &database, const char *sql) const
{
    const QString id =
        Sample::BackupWriter::fileId(u"HomeDomain"_s, u"Library/AddressBook/"_s + database);
    const auto rows = sqliteRows(u"%1/%2/%3"_s.arg(backupOf(name), id.first(2), id), sql);
    return rows.value(0).value(0).toInt();
}

void tst_ContactPage::looksAsItShould_data()
{
    QTest::addColumn<int>("contacts");
    QTest::addColumn<QSize>("window");

    QTest::newRow("every-kind") << Sample::Options::kShowcase << QSize(900, 900);
    QTest::newRow("every-kind-narrow") << Sample::Options::kShowcase << QSize(kPhoneWidth, 900);
    QTest::newRow("many") << 300 << QSize(1200, 800);
}

void tst_ContactPage::looksAsItShould()
{
    QFETCH(int, contacts);
    QFETCH(QSize, window);
    const QString name = QLatin1StringView(QTest::currentDataTag());
    Sample::Options options;
    options.contacts = contacts;
    options.contactPhotos = 12;
    const QString page = exportedSample(name, options);
    QVERIFY(!page.isEmpty());
    QVERIFY2(m_browser.open(page, window), qPrintable(m_browser.error()));

    const int width = window.width() < kPageWidth ? 0 : kPageWidth; // as wide as it can be
    QCOMPARE(pageFaults(m_browser, QFileInfo(page).path(), width), QString());
    QCOMPARE(m_browser.evaluate(u"document.querySelectorAll('.main').length"_s).toInt(),
             countOf(name,
                     u"AddressBook.sqlitedb"_s,
                     "SELECT count(DISTINCT CASE PersonLink WHEN -1 THEN -ROWID ELSE PersonLink "
                     "END) FROM ABPerson"));
    QCOMPARE(m_browser.evaluate(kShownPhotos).toInt(),
             countOf(name,
                     u"AddressBookImages.sqlitedb"_s,
                     "SELECT count(DISTINCT record_id) FROM ABThumbnailImage"));
    QCOMPARE(m_browser.evaluate(kCardsThatFallApart).toArray(), QJsonArray());
    if (contacts == Sample::Options::kShowcase)
        QVERIFY(writeScreenshots(m_browser, QStringLiteral(SCREENSHOTS "/contacts-") + name) > 0);
}

void tst_ContactPage::showsEverythingOfEveryKind()
{
    const QString page = exportedSample(u"words"_s, {});
    QVERIFY2(m_browser.open(page, { 900, 900 }), qPrintable(m_browser.error()));
    const QString text = m_browser.evaluate(u"document.body.innerText"_s).toString();
    const QStringList wanted {
        u"Robin's Contacts"_s, // heading
        u"Dr. Anneliese Maria von Brandt-Ó Sé Jr."_s, // every part of a name
        u"\"Skipper\""_s, // nickname
        u"さとう はなこ"_s, // as it is spoken
        u"Sailmaker - Canvas - Tide & Timber"_s, // work
        u"Marigold Boatyard"_s, // a company
        u"Boat"_s, // a label of the owner's
        u"_$!<half"_s, // no token
        u"younger sister"_s, // a token that has no word of its own
        u"12 Harbour Lane"_s, // an address of two lines
        u"1987-05-14"_s, // a birthday
        u"1990-03-01"_s, // a birthday at midnight in Berlin
        u"02-29"_s, // a birthday without a year
        u"2015-06-20"_s, // an anniversary
        u"Elias Lindqvist"_s, // a related name
        u"@mara_sails"_s, // a social profile
        u"mara.sails (Skype)"_s, // an account
        u"lena (Harbour Chat)"_s, // one of a service that is not known
        u"Allergic to shellfish."_s, // notes
        u"Theodor Papadopoulos"_s, // linked cards
        u"newsletter@example.com"_s, // without a name
        u"Lena Fischer <3 & Co"_s, // no mark-up
        u"👨‍👩‍👧‍👦"_s,
        u"نور الهدى"_s,
    };
    for (const QString &part : wanted)
        QVERIFY2(text.contains(part), qPrintable(part));
    QCOMPARE(text.count(u"+1 202 555 0166"_s), 1); // on both of the linked cards
    QVERIFY(!text.contains(u"system:Opening"_s)); // a ringtone
    // As the phone lists them: by family name, those that begin with no letter at the end.
    const auto place = [&text](const QString &name) { return text.indexOf(u'\n' + name); };
    QVERIFY(place(u"Noor Haddad"_s) < place(u"Åsa Öberg"_s));
    QVERIFY(place(u"Åsa Öberg"_s) < place(u"Sam Okafor"_s));
    QVERIFY(place(u"Sam Okafor"_s) < place(u"+1 202 555 0188"_s));
}

void tst_ContactPage::runsNothingOfStrangers_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("script") << u"<script>window.ran = 1</script>"_s;
    QTest::newRow("picture") << u"<img src='http://tracker.example/x.png' onerror='ran = 1'>"_s;
    QTest::newRow("file") << u"<img src='file:///etc/hostname'>"_s;
    QTest::newRow("drawing") << u"<svg onload='window.ran = 1'></svg>"_s;
    QTest::newRow("out of an attribute") << u"' onmouseover='ran = 1' x='\" onclick=\"ran = 1"_s;
    QTest::newRow("out of the cell") << u"</td></table></div><script>ran = 1</script>"_s;
    QTest::newRow("link") << u"javascript:window.ran=1"_s;
    QTest::newRow("frame") << u"<iframe src='https://tracker.example/'></iframe>"_s;
    QTest::newRow("elsewhere")
        << u"<meta http-equiv='refresh' content='0;url=https://tracker.example/'>"_s;
    QTest::newRow("style") << u"<style>body{background:url(http://tracker.example/b)}</style>"_s;
    QTest::newRow("base") << u"<base href='https://tracker.example/'>"_s;
    QTest::newRow("comment") << u"<!--"_s;
    QTest::newRow("form") << u"<form action='https://tracker.example/'><input autofocus "
                             "onfocus='ran = 1'>"_s;
}

void tst_ContactPage::runsNothingOfStrangers()
{
    using Db = Sample::ContactDatabase;
    QFETCH(QString, text);
    const QString name = QLatin1StringView(QTest::currentDataTag());
    Sample::BackupWriter writer(backupOf(name));
    writer.setInfo(u"Display Name"_s, text);
    {
        Db database(writer);
        Sample::Card card;
        for (QString *field : { &card.prefix,
                                &card.first,
                                &card.middle,
                                &card.last,
                                &card.suffix,
                                &card.firstSpoken,
                                &card.lastSpoken,
                                &card.nickname,
                                &card.organization,
                                &card.department,
                                &card.jobTitle,
                                &card.note })
            *field = text;
        const qint64 row = database.addCard(card);
        for (const int kind : { Db::kPhone, Db::kEmail, Db::kUrl, Db::kRelatedName })
            database.addValue(row, kind, u'=' + text, text);
        for (const int kind : { Db::kInstantMessage, Db::kSocialProfile }) {
            database.addParts(
                row, kind, u'=' + text, { { u"service"_s, text }, { u"username"_s, text } });
        }
        database.addParts(row,
                          Db::kAddress,
                          u'=' + text,
                          { { u"Street"_s, text }, { u"City"_s, text }, { text, text } });
        Sample::Card last;
        last.first = u"The last one"_s;
        database.addCard(last);
        database.finish();
    }
    QVERIFY(writer.finish());
    const QString page = exported(name);
    QVERIFY(!page.isEmpty());
    QVERIFY2(m_browser.open(page, { 900, 900 }), qPrintable(m_browser.error()));

    QCOMPARE(m_browser.evaluate(u"typeof window.ran"_s).toString(), u"undefined"_s);
    QCOMPARE(m_browser.evaluate(u"document.querySelectorAll('.main').length"_s).toInt(), 2);
    const QString shown = m_browser.evaluate(u"document.body.innerText"_s).toString();
    QVERIFY2(shown.count(text) > 10, qPrintable(shown));
    QVERIFY(shown.contains(u"The last one"_s));
    for (const QString &request : m_browser.requests())
        QVERIFY2(request.startsWith("file:"_L1) && request.contains("/Contacts/HTML/"_L1),
                 qPrintable(request));
    QCOMPARE(m_browser
                 .evaluate(u"document.querySelectorAll('a, script, iframe, form, svg, meta"
                           "[http-equiv=refresh], base').length"_s)
                 .toInt(),
             0);
    QCOMPARE(m_browser.complaints(), QStringList());
}

QTEST_GUILESS_MAIN(tst_ContactPage)
#include "tst_ContactPage.moc"
