#include "cli/Program.h"
#include "sample/BackupWriter.h"
#include "sample/ContactSample.h"
#include "sample/MessageSample.h"
#include "support/Files.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace CliTest;
using namespace Qt::StringLiterals;

namespace {

//! The conversations of a page, by the names in their headings.
QStringList conversationsOf(const QString &page)
{
    static const QRegularExpression heading(u"<h2>Name: (.*?)&nbsp;"_s);
    QStringList names;
    auto matches = heading.globalMatch(page);
    while (matches.hasNext())
        names += matches.next().captured(1);
    names.sort();
    return names;
}

} // namespace

//! Which messages --since, --until and --chat let through, from the command line to the page.
class tst_MessageFilters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void choosesConversations_data();
    void choosesConversations();
    void cutsAtTheMinute_data();
    void cutsAtTheMinute();
    void daysAreThoseOfThisPlace_data();
    void daysAreThoseOfThisPlace();
    void listsWhatIsChosen();
    void saysThatNothingFits();

private:
    QString exportedPage(const QStringList &options);
    QString page() const;
    QString output() const { return m_dir->filePath(u"out"_s); }

    QTemporaryDir m_temp;
    QString m_backup;
    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_MessageFilters::initTestCase()
{
    m_backup = m_temp.filePath(u"backup"_s);
    Sample::BackupWriter writer(m_backup);
    Sample::addMessages(writer, {});
    Sample::addContacts(writer, {});
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
}

void tst_MessageFilters::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

QString tst_MessageFilters::exportedPage(const QStringList &options)
{
    run(options + QStringList { u"--only=messages"_s, m_backup, output() });
    return page();
}

QString tst_MessageFilters::page() const
{
    const QDir folder(output() + u"/Messages"_s);
    const QStringList pages = folder.entryList({ u"*.html"_s });
    return pages.isEmpty() ? QString()
                           : QString::fromUtf8(Files::read(folder.filePath(pages.first())));
}

void tst_MessageFilters::choosesConversations_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("names");

    const QString noor = u"Noor Haddad"_s;
    const QString mara = u"Mara Lindqvist"_s;
    const QString crew = u"Marigold Crew ⛵"_s;
    const QString yard = u"Marigold Boatyard"_s;
    QTest::newRow("a name") << QStringList { u"--chat=Noor"_s } << QStringList { noor };
    QTest::newRow("the name of somebody, and the groups that they are in")
        << QStringList { u"--chat=lindqvist"_s } << QStringList { mara, crew };
    QTest::newRow("two names") << QStringList { u"--chat=Noor"_s, u"--chat"_s, u"boatyard"_s }
                               << QStringList { yard, noor };
    QTest::newRow("part of names, in any case")
        << QStringList { u"--chat=marigold"_s } << QStringList { yard, crew };
    QTest::newRow("an address") << QStringList { u"--chat=noor@example.org"_s }
                                << QStringList { noor };
    QTest::newRow("a number, and the groups that it is in")
        << QStringList { u"--chat=(202) 555-0142"_s } << QStringList { mara, crew };
    QTest::newRow("letters beyond ASCII")
        << QStringList { u"--chat=TOMÁS"_s } << QStringList { u"Tomás Oliveira"_s };
    QTest::newRow("one day") << QStringList { u"--since=2024-05-18"_s, u"--until=2024-05-18"_s }
                             << QStringList { noor };
    QTest::newRow("from a day on")
        << QStringList { u"--since=2024-05-24"_s } << QStringList { mara, crew };
    QTest::newRow("dates and a name")
        << QStringList { u"--chat=Marigold"_s, u"--since=2024-05-20"_s } << QStringList { crew };
}

void tst_MessageFilters::choosesConversations()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, names);
    QCOMPARE(conversationsOf(exportedPage(options)), names);
}

void tst_MessageFilters::cutsAtTheMinute_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("nine"); // "Nine as in nine" was said at 18:04:37,
    QTest::addColumn<bool>("ruth"); // "Hello everybody" at 18:07:15.

    QTest::newRow("since") << QStringList { u"--since=2024-05-24 18:05"_s } << false << true;
    QTest::newRow("since, with a T")
        << QStringList { u"--since=2024-05-24T18:05"_s } << false << true;
    QTest::newRow("since its own minute")
        << QStringList { u"--since=2024-05-24 18:04"_s } << true << true;
    QTest::newRow("until") << QStringList { u"--until=2024-05-24 18:05"_s } << true << false;
    QTest::newRow("until the day") << QStringList { u"--until=2024-05-24"_s } << true << true;
    QTest::newRow("until the day before")
        << QStringList { u"--until=2024-05-23"_s } << false << false;
}

void tst_MessageFilters::cutsAtTheMinute()
{
    QFETCH(QStringList, options);
    QFETCH(bool, nine);
    QFETCH(bool, ruth);
    const QString page = exportedPage(options);
    QVERIFY(!page.isEmpty());
    // The line itself; a reaction to it quotes it.
    QCOMPARE(page.contains(u">Nine as in nine"_s), nine);
    QCOMPARE(page.contains(u">Hello everybody"_s), ruth);
}

void tst_MessageFilters::daysAreThoseOfThisPlace_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QStringList>("names");

    // The crew wrote from 18:03 in Greenwich on, which is after midnight further east.
    QTest::newRow("Greenwich") << u"UTC"_s << QStringList { u"Marigold Crew ⛵"_s };
    QTest::newRow("Tokyo") << u"Asia/Tokyo"_s << QStringList {};
}

void tst_MessageFilters::daysAreThoseOfThisPlace()
{
    QFETCH(QString, zone);
    QFETCH(QStringList, names);
    QProcess process;
    prepare(
        process,
        { u"--only=messages"_s, u"--chat=Crew"_s, u"--until=2024-05-24"_s, m_backup, output() });
    QProcessEnvironment environment = process.processEnvironment();
    environment.insert(u"TZ"_s, zone);
    process.setProcessEnvironment(environment);
    process.start();
    QCOMPARE(finish(process).exitCode, 0);
    QCOMPARE(conversationsOf(page()), names);
}

void tst_MessageFilters::listsWhatIsChosen()
{
    const Result result =
        run({ u"--list"_s, u"--json"_s, u"--only=messages"_s, u"--chat=Marigold"_s, m_backup });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.json().value(u"items"_s).toInt(), 2);
    const int messages = result.json().value(u"types"_s)[0][u"messages"_s].toInt();
    const Result text = run({ u"--list"_s, u"--only=messages"_s, u"--chat=Marigold"_s, m_backup });
    QVERIFY(messages > 2);
    QVERIFY2(QString::fromUtf8(text.out).simplified().contains(
                 u"Type Items Messages Deleted Size Messages 2 %1 0 – "_s.arg(messages)),
             text.out.constData());
}

void tst_MessageFilters::saysThatNothingFits()
{
    const Result result =
        run({ u"--only=messages"_s, u"--chat=Nobody of this name"_s, m_backup, output() });
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.err.contains("No messages match"), result.err.constData());
    QCOMPARE(page(), QString());

    const Result other = run({ u"--list"_s, u"--chat=Noor"_s, m_backup });
    QVERIFY2(!other.err.contains("No messages match"), other.err.constData());
}

QTEST_GUILESS_MAIN(tst_MessageFilters)
#include "tst_MessageFilters.moc"
