#include "backup/CBackupExporter.h"
#include "contact/CContact2CSVTranslate.h"
#include "contact/CContact2HtmlTranslate.h"
#include "contact/CContact2VCFTranslate.h"
#include "contact/CContactTranslate.h"
#include "export/CIDataExporter.h"
#include "support/FakeBackup.h"
#include "support/FakeContact.h"
#include "support/Files.h"
#include "support/FullDevice.h"
#include "support/RecordingProgress.h"
#include "support/RecordingReport.h"
#include "support/RecordingSink.h"

#include <QStringConverter>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Writes down what happens to it and to the sink that is built in; the step called failAt fails.
class StepRecorder final : public CContactTranslate
{
public:
    class Sink final : public CIDataExporter
    {
    public:
        explicit Sink(StepRecorder &recorder)
            : m_recorder(recorder)
        {
        }
        bool itemExportBegin(const QString &name) override
        {
            return m_recorder.note(u"begin "_s + name);
        }
        bool itemExportEnd() override { return m_recorder.note(u"end"_s); }
        bool exportData(const QString & /*text*/, const QString & /*name*/) override
        {
            return true;
        }
        using CIDataExporter::exportData;
        bool exportDepends(const QString & /*path*/, const QString & /*name*/) override
        {
            return true;
        }
        bool exportDepends(const QByteArray & /*data*/, const QString & /*name*/) override
        {
            return true;
        }
        bool openExporter(const QDir & /*outDir*/) override { return true; }
        bool closeExporter(bool /*ok*/) override { return true; }

    private:
        StepRecorder &m_recorder;
    };

    using CContactTranslate::CContactTranslate;

    bool translateHeader(CIDataExporter * /*exporter*/, const QString &title) override
    {
        return note(u"header "_s + title);
    }
    bool translateDataBefore(CIDataExporter * /*exporter*/) override { return note(u"before"_s); }
    bool translateDataAfter(CIDataExporter * /*exporter*/) override { return note(u"after"_s); }
    bool translateDataItem(CIDataExporter * /*exporter*/, BkContactItem *item) override
    {
        return note(item->value(0));
    }

    QString failAt;
    QStringList steps;

private:
    bool note(const QString &step)
    {
        steps.append(step);
        return step != failAt;
    }
};

// The caller's bar: 900 units for the whole set.
class CallerProgress final : public CIProgressCallback
{
public:
    void initRange(int /*total*/) override { ++inits; }
    int range() override { return 900; }
    bool progress(double delta) override
    {
        sum += delta;
        return ++calls < stopAtCall;
    }
    bool finish() override
    {
        ++finishes;
        return true;
    }

    double sum = 0;
    int calls = 0;
    int inits = 0;
    int finishes = 0;
    int stopAtCall = std::numeric_limits<int>::max();
};

} // namespace

class tst_CContactTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_temp = std::make_unique<QTemporaryDir>(); }
    void walksInSteps_data();
    void walksInSteps();
    void skipsWhatIsNoContact();
    void exportsAllFormats();
    void hardensPagesWhenAsked_data();
    void hardensPagesWhenAsked();
    void tellsTheReportOnce();
    void refusesOtherData();
    void cancelsInAnyPass_data();
    void cancelsInAnyPass();
    void failsWithoutOutput_data();
    void failsWithoutOutput();
    void losesOnlyTheCardThatCannotBeWritten();

private:
    QDir dir() const { return QDir(m_temp->path()); }

    std::unique_ptr<QTemporaryDir> m_temp;
};

void tst_CContactTranslate::walksInSteps_data()
{
    QTest::addColumn<QString>("failAt");
    QTest::addColumn<int>("stopAtCall");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<bool>("result");

    constexpr int kNever = 100;
    const QString until = u"header T|before"_s;
    const QString a = until + u"|begin A|A|end"_s;
    QTest::newRow("all succeed") << QString() << kNever << a + u"|begin B|B|end|after"_s << true;
    QTest::newRow("header fails") << u"header T"_s << kNever << u"header T"_s << false;
    QTest::newRow("before fails") << u"before"_s << kNever << until << false;
    QTest::newRow("an item is refused")
        << u"begin A"_s << kNever << until + u"|begin A|begin B|B|end|after"_s << true;
    QTest::newRow("an item fails") << u"A"_s << kNever << a << false;
    QTest::newRow("an item's end fails") << u"end"_s << kNever << a << false;
    QTest::newRow("after fails") << u"after"_s << kNever << a + u"|begin B|B|end|after"_s << false;
    QTest::newRow("stopped at once") << QString() << 1 << until + u"|after"_s << true;
    QTest::newRow("stopped after one") << QString() << 2 << a + u"|after"_s << true;
    QTest::newRow("stopped, and after fails") << u"after"_s << 2 << a + u"|after"_s << false;
}

void tst_CContactTranslate::walksInSteps()
{
    QFETCH(QString, failAt);
    QFETCH(int, stopAtCall);

    FakeContactData data;
    data.addContact(u"A"_s);
    data.addContact(u"B"_s);
    RecordingProgress progress;
    progress.initRange(100);
    progress.stopAtCall = stopAtCall;
    StepRecorder translator(&data);
    translator.failAt = failAt;
    StepRecorder::Sink sink(translator);
    const bool result = translator.translate(&sink, u"T"_s, &progress);
    QTEST(result, "result");
    QTEST(translator.steps.join(u'|'), "steps");
    for (const double delta : progress.deltas)
        QCOMPARE(delta, 50.0);
}

void tst_CContactTranslate::skipsWhatIsNoContact()
{
    FakeContactData data;
    FakeFile file;
    data.addForeign(nullptr);
    data.addContact(u"A"_s);
    data.addForeign(&file);
    data.addContact(u"B"_s).readable = false;
    RecordingProgress progress;
    progress.initRange(10);
    StepRecorder translator(&data);
    StepRecorder::Sink sink(translator);
    QVERIFY(translator.translate(&sink, u"T"_s, &progress));
    QCOMPARE(translator.steps.join(u'|'), u"header T|before|begin A|A|end|after"_s);
    QCOMPARE(progress.deltas, (QList<double> { 2.5, 2.5, 2.5, 2.5 }));

    // Also when somebody else walks them.
    auto *unreadable = dynamic_cast<BkContactItem *>(data.at(3, true));
    RecordingSink each;
    QVERIFY(CContact2HtmlTranslate(&data).translateDataItem(&each, unreadable));
    QVERIFY(CContact2CSVTranslate(&data).translateDataItem(&each, unreadable));
    QVERIFY(CContact2VCFTranslate(&data).translateDataItem(&each, unreadable));
    QCOMPARE(each.writes, QStringList());
}

void tst_CContactTranslate::exportsAllFormats()
{
    FakeContactData data;
    data.addContact(u"Bo"_s).fields = { { u"givenName"_s, u"Bo"_s } };
    data.addContact(u"Bo"_s).add(4, {}, u"b@example.org"_s);
    data.addContact(u"a/b"_s);
    data.addContact({});
    CallerProgress progress;
    QVERIFY(CBackupExporter::exportContact(
        &data, dir(), u"A%2/n"_s, u"Contacts"_s, &progress, nullptr));

    // Each pass covers a third of the caller's range; the range itself is the caller's to start.
    QCOMPARE(progress.sum, 900.0);
    QCOMPARE(progress.inits, 0);
    QCOMPARE(progress.finishes, 0);

    QCOMPARE(Files::tree(dir().filePath(u"Contacts"_s)),
             (QStringList { u"CSV/"_s,
                            u"CSV/A%2_n's Contacts.csv"_s,
                            u"HTML/"_s,
                            u"HTML/A%2_n's Contacts.html"_s,
                            u"HTML/image/"_s,
                            u"HTML/image/default_contact.png"_s,
                            u"HTML/image/deleted.png"_s,
                            u"VCF/"_s,
                            u"VCF/Bo (2).vcf"_s,
                            u"VCF/Bo.vcf"_s,
                            u"VCF/_.vcf"_s,
                            u"VCF/a_b.vcf"_s }));
    const QByteArray page = Files::read(dir().filePath(u"Contacts/HTML/A%2_n's Contacts.html"_s));
    QVERIFY(page.contains("<title>A%2_n's Contacts</title><style type=\"text/css\">html, div"));
    QVERIFY(page.contains("<body><div id=\"wrap\"><div id=\"top\"><h1>A%2/n's Contacts</h1>"));
    QVERIFY(page.endsWith("</table></div></div></body></html>"));
    QCOMPARE(page.count("<div class=\"main nc\">"), 4);
    const QByteArray csv = Files::read(dir().filePath(u"Contacts/CSV/A%2_n's Contacts.csv"_s));
    QVERIFY(csv.startsWith("\xff\xfe"));
    const QString text = QStringDecoder(QStringDecoder::Utf16)(csv);
    QCOMPARE(text.count(u'\n'), 5);
    QVERIFY(text.startsWith(u"Family Name,"_s) && text.contains(u",b@example.org,\n"_s));
    QCOMPARE(Files::read(dir().filePath(u"Contacts/VCF/Bo.vcf"_s)),
             QByteArray("BEGIN:VCARD\r\nVERSION:2.1\r\nFN;CHARSET=utf-8:Bo\r\n"
                        "N;CHARSET=utf-8:Bo\r\nEND:VCARD\r\n\r\n\r\n"));
}

void tst_CContactTranslate::hardensPagesWhenAsked_data()
{
    QTest::addColumn<bool>("hardened");

    QTest::newRow("as stored") << false;
    QTest::newRow("hardened") << true;
}

void tst_CContactTranslate::hardensPagesWhenAsked()
{
    QFETCH(bool, hardened);

    FakeContactData data;
    data.addContact(u"<b>\nBo"_s);
    CBackupExporter exporter;
    QVERIFY(!exporter.isHardened());
    exporter.setHardened(hardened);
    QVERIFY(CBackupExporter::exportContact(&data, dir(), u"Ann"_s, u"C"_s, nullptr, &exporter));
    const QByteArray page = Files::read(dir().filePath(u"C/HTML/Ann's C.html"_s));
    QCOMPARE(page.contains("http-equiv=\"Content-Security-Policy\""), hardened);
    QVERIFY(page.contains(hardened ? "<div class=\"main-title\">&lt;b&gt;<br>Bo</div>"
                                   : "<div class=\"main-title\"><b>\nBo</div>"));
    QVERIFY(Files::read(dir().filePath(hardened ? u"C/VCF/_b__Bo.vcf"_s : u"C/VCF/_b_\nBo.vcf"_s))
                .contains(hardened ? ":<b>=0D=0ABo\r\n" : ":<b>\nBo\r\n"));
    QVERIFY(Files::read(dir().filePath(u"C/CSV/Ann's C.csv"_s))
                .startsWith(hardened ? "\xef\xbb\xbf" : "\xff\xfe"));
}

void tst_CContactTranslate::tellsTheReportOnce()
{
    FakeContactData data;
    data.addContact(u"Bo"_s);
    data.addContact(u"Lost"_s).readable = false;
    data.addContact({}).photoBytes = "no picture";
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    QVERIFY(CBackupExporter::exportContact(&data, dir(), u"Ann"_s, u"C"_s, nullptr, &exporter));
    QCOMPARE(report.exported, (QStringList { u"C: Bo"_s, u"C: (no name)"_s }));
    QCOMPARE(report.failures.size(), 2);
    QCOMPARE(report.failures[0].item, u"Lost"_s);
    QCOMPARE(report.failures[0].type, u"C"_s);
    QCOMPARE(report.failures[1].item, u"(no name)"_s);
    QCOMPARE(Files::tree(dir().filePath(u"C/VCF"_s)), (QStringList { u"Bo.vcf"_s, u"_.vcf"_s }));
}

void tst_CContactTranslate::refusesOtherData()
{
    FakeData other(8);
    CallerProgress progress;
    QVERIFY(!CBackupExporter::exportContact(&other, dir(), u"A"_s, u"C"_s, &progress, nullptr));
    QVERIFY(!CBackupExporter::exportContact(nullptr, dir(), u"A"_s, u"C"_s, nullptr, nullptr));
    QCOMPARE(Files::tree(dir().path()), QStringList());
    QCOMPARE(progress.calls, 0);
}

void tst_CContactTranslate::cancelsInAnyPass_data()
{
    QTest::addColumn<int>("stopAtCall");
    QTest::addColumn<int>("onPage");
    QTest::addColumn<int>("linesInCsv"); // -1: no file
    QTest::addColumn<int>("cards"); // -1: no folder
    QTest::addColumn<QString>("ends"); // of page, CSV file and cards

    const QString inPage = u"stopped, not started, not started"_s;
    QTest::newRow("before the first of the page") << 1 << 0 << -1 << -1 << inPage;
    QTest::newRow("before the second of the page") << 2 << 1 << -1 << -1 << inPage;
    QTest::newRow("before the first of the CSV file")
        << 3 << 2 << 1 << -1 << u"complete, stopped, not started"_s;
    QTest::newRow("before the second card") << 6 << 2 << 3 << 1 << u"complete, complete, stopped"_s;
    QTest::newRow("never") << 7 << 2 << 3 << 2 << u"complete, complete, complete"_s;
}

// A cancelled export is no failure: what is there stays, and is complete in itself.
void tst_CContactTranslate::cancelsInAnyPass()
{
    QFETCH(int, stopAtCall);

    FakeContactData data;
    data.addContact(u"A"_s);
    data.addContact(u"B"_s);
    CallerProgress progress;
    progress.stopAtCall = stopAtCall;
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    QVERIFY(CBackupExporter::exportContact(&data, dir(), u"Ann"_s, u"C"_s, &progress, &exporter));
    QTEST(report.ends.join(u", "_s)
              .remove(u"C: page "_s)
              .remove(u"C: table "_s)
              .remove(u"C: cards "_s),
          "ends");

    const QByteArray page = Files::read(dir().filePath(u"C/HTML/Ann's C.html"_s));
    QVERIFY(page.endsWith("</div></body></html>"));
    QTEST(int(page.count("main-title\">")), "onPage");
    const QByteArray csv = Files::read(dir().filePath(u"C/CSV/Ann's C.csv"_s));
    QTEST(csv.isNull() ? -1 : int(csv.count('\n')), "linesInCsv");
    const QDir cards(dir().filePath(u"C/VCF"_s));
    QTEST(cards.exists() ? int(cards.entryList(QDir::Files).size()) : -1, "cards");
}

void tst_CContactTranslate::failsWithoutOutput_data()
{
    QTest::addColumn<bool>("hardened");
    QTest::addColumn<QStringList>("ends");

    const QStringList first { u"C: page complete"_s, u"C: table failed"_s };
    QTest::newRow("the last one") << false << first + QStringList { u"C: cards not started"_s };
    QTest::newRow("hardened, the others go on")
        << true << first + QStringList { u"C: cards complete"_s };
}

void tst_CContactTranslate::failsWithoutOutput()
{
    QFETCH(bool, hardened);
    QVERIFY(Files::write(dir().filePath(u"C/CSV"_s), "in the way"));
    FakeContactData data;
    data.addContact(u"Bo"_s);
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    exporter.setHardened(hardened);
    QVERIFY(!CBackupExporter::exportContact(&data, dir(), u"Ann"_s, u"C"_s, nullptr, &exporter));
    QCOMPARE(QFileInfo::exists(dir().filePath(u"C/VCF/Bo.vcf"_s)), hardened);
    QCOMPARE(report.failures.size(), 1);
    QCOMPARE(report.failures.first().cause, CIExportReport::Cause::Target);
    QTEST(report.ends, "ends");
}

void tst_CContactTranslate::losesOnlyTheCardThatCannotBeWritten()
{
    FakeContactData data;
    data.addContact(u"Bo"_s).photoBytes = QByteArray(100000, 'x');
    data.addContact(u"Eve"_s);
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    {
        const FullDevice device(50000);
        QVERIFY(CBackupExporter::exportContact(&data, dir(), u"Ann"_s, u"C"_s, nullptr, &exporter));
    }
    QCOMPARE(Files::tree(dir().filePath(u"C/VCF"_s)), QStringList { u"Eve.vcf"_s });
    QCOMPARE(report.failures.size(), 2); // its photo is no picture, either
    QCOMPARE(report.failures.last().item, u"Bo.vcf"_s);
    QCOMPARE(report.failures.last().cause, CIExportReport::Cause::Target);
}

QTEST_GUILESS_MAIN(tst_CContactTranslate)
#include "tst_CContactTranslate.moc"
