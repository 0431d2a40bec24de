#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/Database.h"
#include "sample/MessageSample.h"
#include "sample/Options.h"
#include "sample/WhatsappSample.h"
#include "support/Files.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

#include <algorithm>

using namespace CliTest;
using namespace Qt::StringLiterals;

//! index.html, the page that leads to what was exported.
class tst_IndexPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void leadsToEverything();
    void encodesWhatABackupSays();
    void tellsWhatFailed();
    void saysTheSameNumbersEverywhere();
    void tellsWhatABackupCannotHold();
    void replacesOnlyItsOwn_data();
    void replacesOnlyItsOwn();
    void isNoReasonToFailQuietly();

private:
    QString backup() const { return m_dir->filePath(u"backup"_s); }
    QString output() const { return m_dir->filePath(u"out"_s); }
    QString page(const QString &name = u"index.html"_s) const
    {
        return QString::fromUtf8(Files::read(output() + u'/' + name));
    }
    //! Every target of a link, as a path below OUTPUT.
    QStringList targets() const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_IndexPage::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

QStringList tst_IndexPage::targets() const
{
    static const QRegularExpression link(u"<a href=\"([^\"]*)\">"_s);
    QStringList found;
    auto matches = link.globalMatch(page());
    while (matches.hasNext())
        found += QUrl::fromPercentEncoding(matches.next().captured(1).toLatin1());
    return found;
}

void tst_IndexPage::leadsToEverything()
{
    Sample::BackupWriter writer(backup());
    addUsualFiles(writer);
    Sample::Database history({},
                             "CREATE TABLE history_items (id INTEGER PRIMARY KEY, url);"
                             "CREATE TABLE history_visits (id INTEGER PRIMARY KEY, history_item, "
                             "visit_time, title);"
                             "INSERT INTO history_items VALUES (1, 'http://a.org');"
                             "INSERT INTO history_visits VALUES (1, 1, 700000000, 'T')");
    writer.addFile(u"HomeDomain"_s, u"Library/Safari/History.db"_s, history.image());
    QVERIFY(writer.finish());
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.out.contains("out/index.html”."), result.out.constData());

    const QStringList links = targets();
    for (const QString &target : links)
        QVERIFY2(QFileInfo::exists(output() + u'/' + target), qPrintable(target));
    for (const char *folder : { "Photos", "Videos", "Voice Memos", "Books", "App Documents" })
        QCOMPARE(links.count(QString::fromLatin1(folder)), 1);
    // What is a page is opened itself.
    QCOMPARE(links.filter(QRegularExpression(u"^Safari/.+\\.html$"_s)).size(), 1);
    const QString html = page();
    QVERIFY(html.contains("<title>Sample Phone's Backup</title>"_L1));
    QVERIFY(html.contains("(iPhone 11, version 14.3), made 2024-06-01 "_L1));
    QVERIFY(html.contains(" Times are in the time zone UTC (UTC+00:00)."_L1));
    QVERIFY(html.contains(QRegularExpression(u">Photos</a></td><td class=\"n\">3</td>"_s)));
    QVERIFY(html.contains("default-src 'none'"_L1));
    QVERIFY(!html.contains("<script"_L1) && !html.contains("http:"_L1)
            && !html.contains("https:"_L1));
    QVERIFY(!html.contains("could not be exported"_L1));
}

void tst_IndexPage::encodesWhatABackupSays()
{
    Sample::BackupWriter writer(backup());
    addUsualFiles(writer);
    writer.setInfo(u"Display Name"_s, u"<img src=x>\"'"_s);
    writer.setInfo(u"Device Name"_s, u"<script>a</script>"_s);
    writer.setInfo(u"Product Name"_s, u"</p>&amp;"_s);
    QVERIFY(writer.finish());
    QCOMPARE(run({ backup(), output() }).exitCode, 0);
    const QString html = page();
    QVERIFY(!html.contains("<script"_L1) && !html.contains("<img"_L1));
    QVERIFY(html.contains("&lt;/p&gt;&amp;amp;"_L1));
}

void tst_IndexPage::tellsWhatFailed()
{
    Sample::BackupWriter writer(backup());
    addUsualFiles(writer);
    writer.addWithoutContent(u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/<b>LOST.JPG"_s, 10);
    writer.addFile(u"HomeDomain"_s, u"Library/Safari/History.db"_s, QByteArray(5000, 'x'));
    QVERIFY(writer.finish());
    QCOMPARE(run({ backup(), output() }).exitCode, 3);
    const QString html = page();
    QVERIFY(html.contains("What could not be exported"_L1));
    QVERIFY(html.contains("100APPLE/"_L1) && html.contains("LOST.JPG"_L1));
    QVERIFY(!html.contains("<b>"_L1));
    QVERIFY(html.contains("Library/Safari/History.db"_L1));
    QVERIFY(targets().contains(u"export-report.csv"_s));
}

void tst_IndexPage::saysTheSameNumbersEverywhere()
{
    Sample::BackupWriter writer(backup());
    addUsualFiles(writer);
    Sample::addMessages(writer, {});
    Sample::addWhatsapp(writer, {});
    writer.addWithoutContent(u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/LOST.JPG"_s, 10);
    // Nobody knows how many visits were in the history: none of them is an item that failed.
    writer.addFile(u"HomeDomain"_s, u"Library/Safari/History.db"_s, QByteArray(5000, 'x'));
    QVERIFY(writer.finish());
    const QString again = m_dir->filePath(u"again"_s);
    const QJsonObject json = run({ u"--json"_s, backup(), again }).json();
    const Result result = run({ backup(), output() });
    const QString said = QString::fromUtf8(result.err);
    const QString html = page();
    const QByteArray report = Files::read(output() + u"/export-report.csv"_s);
    QCOMPARE(report, Files::read(again + u"/export-report.csv"_s));
    const QString lines = QString::fromUtf8(report);
    const auto listed = [&lines](const QString &pattern) {
        return int(lines.count(QRegularExpression(pattern, QRegularExpression::MultilineOption)));
    };

    QList<int> sums { 0, 0, 0, 0 };
    QStringList withFaults;
    for (const QJsonValue &type : json.value(u"types"_s).toArray()) {
        const QString name = type[u"name"_s].toString();
        const int items = type[u"items"_s].toInt();
        QList<int> numbers;
        for (const char *key : { "exported", "failed", "missing", "neverDownloaded" })
            numbers += type[QLatin1String(key)].toInt();
        if (items == 0 && numbers == QList<int> { 0, 0, 0, 0 })
            continue;
        const auto text = [&numbers](const QString &between) {
            QStringList texts;
            for (const int number : numbers)
                texts += QString::number(number);
            return texts.join(between);
        };
        QCOMPARE(numbers[0] + numbers[1], items);
        const QRegularExpression row(u'^' + name + u" +"_s + text(u" +"_s) + u"( |$)"_s,
                                     QRegularExpression::MultilineOption);
        QVERIFY2(QString::fromUtf8(result.out).contains(row), qPrintable(row.pattern()));
        const QRegularExpression cells(u'>' + name + u"(</a>)?</td><td class=\"n[ rd]*\">"_s
                                       + text(u"</td><td class=\"n[ rd]*\">"_s) + u"</td>"_s);
        QVERIFY2(html.contains(cells), qPrintable(cells.pattern()));
        QCOMPARE(listed(u'^' + name + u",.*,Never downloaded,"_s), numbers[3]);
        QCOMPARE(listed(u'^' + name + u','), numbers[1] + numbers[2] + numbers[3]);
        // The lists of JSON name a type by the same word as its numbers do.
        const auto named = [&](const QString &key) {
            const QJsonArray list = json.value(key).toArray();
            return int(std::count_if(list.begin(), list.end(), [&type](const QJsonValue &entry) {
                return entry[u"type"_s] == type[u"type"_s];
            }));
        };
        QCOMPARE(named(u"failures"_s), numbers[1] + numbers[2]);
        QCOMPARE(named(u"neverDownloadedFiles"_s), numbers[3]);
        if (numbers.mid(1) != QList<int> { 0, 0, 0 })
            withFaults += name + u' ' + text(u" "_s);
        for (int i = 0; i < 4; ++i)
            sums[i] += numbers[i];
    }
    QCOMPARE(withFaults.join(u", "_s),
             u"Photos 3 1 0 0, Messages 12 0 1 0, Message Attachments 12 0 1 1, "
             "WhatsApp Attachments 7 0 0 3, Safari 0 0 1 0"_s);
    QCOMPARE(json.value(u"exported"_s).toInt(), sums[0]);
    QCOMPARE(json.value(u"failed"_s).toInt(), sums[1]);
    QCOMPARE(json.value(u"missing"_s).toInt(), sums[2]);
    QCOMPARE(json.value(u"neverDownloaded"_s).toInt(), sums[3]);
    QCOMPARE(json.value(u"failureCount"_s).toInt(), sums[1] + sums[2]);
    QVERIFY2(said.contains(u"(%1 in total)"_s.arg(sums[1] + sums[2])), result.err.constData());
    QVERIFY2(said.contains(u"\n%1 files were never downloaded"_s.arg(sums[3])),
             result.err.constData());
    QVERIFY(html.contains(u"All %1 are listed in "_s.arg(sums[1] + sums[2])));
}

void tst_IndexPage::tellsWhatABackupCannotHold()
{
    writeUsualBackup(backup()); // of a newer phone
    for (const QStringList &options :
         { QStringList { u"--list"_s, backup() }, QStringList { backup(), output() } }) {
        const Result result = run(options);
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.out.contains("\nCall History: "), result.out.constData());
        QVERIFY2(result.out.contains("\nSafari: "), result.out.constData());
        QVERIFY2(!result.err.contains("Warning"), result.err.constData());
    }
    QVERIFY(page().contains("<p>Call History: "_L1));
    const Result list = run({ u"--list"_s, u"--json"_s, u"--only=calls,books"_s, backup() });
    const QJsonArray absent = list.json().value(u"absent"_s).toArray();
    QCOMPARE(absent.size(), 1);
    QCOMPARE(absent[0][u"type"_s].toString(), u"calls"_s);
    QVERIFY(list.json().value(u"warnings"_s).toArray().isEmpty());
}

void tst_IndexPage::replacesOnlyItsOwn_data()
{
    QTest::addColumn<QByteArray>("there"); // empty: that of an earlier export
    QTest::addColumn<QString>("written");

    QTest::newRow("that of an earlier export") << QByteArray() << u"index.html"_s;
    QTest::newRow("somebody's") << "<html>mine</html>"_ba << u"index (2).html"_s;
}

void tst_IndexPage::replacesOnlyItsOwn()
{
    QFETCH(QByteArray, there);
    QFETCH(QString, written);
    writeUsualBackup(backup());
    if (there.isEmpty())
        QCOMPARE(run({ u"--only=books"_s, backup(), output() }).exitCode, 0);
    else
        QVERIFY(Files::write(output() + u"/index.html"_s, there));
    const Result result =
        run({ u"--into-existing"_s, u"--only=photos"_s, u"--json"_s, backup(), output() });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.json().value(u"index"_s).toString(), output() + u'/' + written);
    QVERIFY(page(written).contains(">Photos</a>"_L1));
    QVERIFY(!page(written).contains(">Books</a>"_L1));
    if (!there.isEmpty())
        QCOMPARE(page(), QString::fromUtf8(there));
}

// A folder that holds what it leads to, but takes no file more: all is there, and it is said.
void tst_IndexPage::isNoReasonToFailQuietly()
{
    writeUsualBackup(backup());
    QVERIFY(QDir().mkpath(output() + u"/Books"_s));
    QVERIFY(QFile::setPermissions(output(), QFile::ReadOwner | QFile::ExeOwner));
    const Result result =
        run({ u"--into-existing"_s, u"--only=books"_s, backup(), output() }, &obeyFileModes);
    QFile::setPermissions(output(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY2(result.exitCode == 3 || result.exitCode == 12, result.err.constData());
    QVERIFY2(!result.err.isEmpty(), "silence");
}

QTEST_GUILESS_MAIN(tst_IndexPage)
#include "tst_IndexPage.moc"
