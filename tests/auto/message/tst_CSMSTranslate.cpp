#include "backup/CBackupExporter.h"
#include "message/CSMSTranslate.h"
#include "support/FakeBackup.h"
#include "support/FakeSMS.h"
#include "support/Files.h"
#include "support/RecordingProgress.h"
#include "support/RecordingReport.h"
#include "support/RecordingSink.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Writes down its steps; the one called failAt answers false.
class StepRecorder final : public CSMSTranslate
{
public:
    using CSMSTranslate::CSMSTranslate;

    bool translateHeader(CIDataExporter * /*exporter*/, const QString &title) override
    {
        return note(u"header "_s + title);
    }
    bool translateDataBefore(CIDataExporter * /*exporter*/) override { return note(u"before"_s); }
    bool translateDataAfter(CIDataExporter * /*exporter*/) override { return note(u"after"_s); }
    bool translateDataItem(CIDataExporter * /*exporter*/, BkSMSItem *item) override
    {
        return note(item->value(0));
    }

    QStringList steps;
    QString failAt;

private:
    bool note(const QString &step)
    {
        steps.append(step);
        return step != failAt;
    }
};

// Counts the units that reach the caller, whose bar has room for twice as many.
class CallerProgress final : public CIProgressCallback
{
public:
    void initRange(int /*total*/) override { ++inits; }
    int range() override { return 400; }
    bool progress(double delta) override
    {
        sum += delta;
        ++calls;
        if (onCall)
            onCall(calls);
        return calls < stopAtCall;
    }
    bool finish() override
    {
        ++finishes;
        return true;
    }

    std::function<void(int)> onCall;
    double sum = 0;
    int calls = 0;
    int inits = 0;
    int finishes = 0;
    int stopAtCall = std::numeric_limits<int>::max();
};

} // namespace

class tst_CSMSTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_temp = std::make_unique<QTemporaryDir>(); }
    void walksInSteps_data();
    void walksInSteps();
    void skipsWhatIsNoConversation();
    void stopsWhenAsked_data();
    void stopsWhenAsked();
    void exportsPageAndCsv();
    void tellsTheReportOnce();
    void refusesOtherData();
    void cancelsBetweenAndInPasses_data();
    void cancelsBetweenAndInPasses();
    void failsWithoutOutput_data();
    void failsWithoutOutput();
    void failsWhenTheCsvFileCannotBeMade();

private:
    QDir dir() const { return QDir(m_temp->path()); }

    std::unique_ptr<QTemporaryDir> m_temp;
};

void tst_CSMSTranslate::walksInSteps_data()
{
    QTest::addColumn<QString>("failAt");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QList<double>>("deltas");
    QTest::addColumn<bool>("result");

    const QString header = u"header T"_s;
    const QStringList all { header, u"before"_s, u"A"_s, u"B"_s, u"C"_s, u"after"_s };
    const QList<double> each { 100, 100, 100 };
    QTest::newRow("all succeed") << QString() << all << each << true;
    QTest::newRow("header fails") << header << all.first(1) << QList<double>() << false;
    QTest::newRow("before fails") << u"before"_s << all.first(2) << QList<double>() << false;
    QTest::newRow("an item fails") << u"B"_s << all.first(4) << each.first(2) << false;
    QTest::newRow("after fails") << u"after"_s << all << each << false;
}

void tst_CSMSTranslate::walksInSteps()
{
    QFETCH(QString, failAt);
    QFETCH(QStringList, steps);
    QFETCH(QList<double>, deltas);
    QFETCH(bool, result);

    FakeSMSData data;
    for (const QString &name : { u"A"_s, u"B"_s, u"C"_s })
        data.addConversation(name);
    RecordingSink sink;
    RecordingProgress progress;
    progress.initRange(300);
    StepRecorder translator(&data);
    translator.failAt = failAt;
    QCOMPARE(translator.translate(&sink, u"T"_s, &progress), result);
    QCOMPARE(translator.steps, steps);
    QCOMPARE(progress.deltas, deltas);
}

void tst_CSMSTranslate::skipsWhatIsNoConversation()
{
    FakeSMSData data;
    FakeFile file;
    data.addForeign(nullptr);
    data.addConversation(u"A"_s);
    data.addForeign(&file);
    data.addConversation(u"B"_s);
    RecordingProgress progress;
    progress.initRange(10);
    StepRecorder translator(&data);
    QVERIFY(translator.translate(nullptr, u"T"_s, &progress));
    QCOMPARE(translator.steps,
             (QStringList { u"header T"_s, u"before"_s, u"A"_s, u"B"_s, u"after"_s }));
    QCOMPARE(progress.deltas, (QList<double> { 2.5, 2.5, 2.5, 2.5 }));
}

void tst_CSMSTranslate::stopsWhenAsked_data()
{
    QTest::addColumn<int>("stopAtCall");
    QTest::addColumn<QString>("failAt");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<bool>("result");

    const QString header = u"header T"_s;
    QTest::newRow("before the first")
        << 1 << QString() << QStringList { header, u"before"_s, u"after"_s } << true;
    QTest::newRow("before the second")
        << 2 << QString() << QStringList { header, u"before"_s, u"A"_s, u"after"_s } << true;
    QTest::newRow("and the end fails")
        << 2 << u"after"_s << QStringList { header, u"before"_s, u"A"_s, u"after"_s } << false;
}

void tst_CSMSTranslate::stopsWhenAsked()
{
    QFETCH(int, stopAtCall);
    QFETCH(QString, failAt);
    QFETCH(QStringList, steps);
    QFETCH(bool, result);

    FakeSMSData data;
    data.addConversation(u"A"_s);
    data.addConversation(u"B"_s);
    RecordingProgress progress;
    progress.initRange(100);
    progress.stopAtCall = stopAtCall;
    StepRecorder translator(&data);
    translator.failAt = failAt;
    QCOMPARE(translator.translate(nullptr, u"T"_s, &progress), result);
    QCOMPARE(translator.steps, steps);
}

void tst_CSMSTranslate::exportsPageAndCsv()
{
    FakeSMSData data;
    data.addConversation(u"Bob"_s).addChat(u"hello"_s);
    data.addConversation(u"Eve"_s).addChat(u"bye"_s);
    CallerProgress progress;
    QVERIFY(
        CBackupExporter::exportSMS(&data, dir(), u"A%2/n"_s, u"Messages"_s, &progress, nullptr));

    // Each pass covers half of the caller's range; the range itself is the caller's to start.
    QCOMPARE(progress.sum, 400.0);
    QCOMPARE(progress.inits, 0);
    QCOMPARE(progress.finishes, 0);

    const QByteArray page = Files::read(dir().filePath(u"Messages/A%2_n's Messages.html"_s));
    QVERIFY(page.contains("<title>A%2_n's Messages</title><style type=\"text/css\">html, div"));
    QVERIFY(
        page.contains("</head><body><div id=\"wrap\"><div id=\"top\"><h1>A%2/n's Messages</h1>"));
    QVERIFY(page.endsWith("</div></div></body></html>"));
    QVERIFY(page.contains("hello") && page.contains("bye"));
    const QByteArray csv = Files::read(dir().filePath(u"Messages/A%2_n's Messages.csv"_s));
    QCOMPARE(QStringDecoder(QStringDecoder::Utf16)(csv).operator QString(),
             u"Name,Phone,Email,Date,Type,Content\nBob,,,,Received,hello\nEve,,,,Received,bye\n"_s);
    QVERIFY(csv.startsWith("\xff\xfe"));
    // The nine parts of three bubbles, three marks, two placeholders.
    QCOMPARE(QDir(dir().filePath(u"Messages/image"_s)).entryList(QDir::Files).size(), 32);
}

void tst_CSMSTranslate::tellsTheReportOnce()
{
    FakeSMSData data;
    data.addConversation(u"Bob"_s).addChat(u"hello"_s);
    data.addConversation({}, u"+1"_s);
    data.addConversation({}, {}, u"e@x.org"_s);
    data.addConversation(u"Lost"_s).readable = false;
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    QVERIFY(CBackupExporter::exportSMS(&data, dir(), u"Ann"_s, u"SMS"_s, nullptr, &exporter));
    QCOMPARE(report.exported, (QStringList { u"SMS: Bob"_s, u"SMS: +1"_s, u"SMS: e@x.org"_s }));
    QCOMPARE(report.failures.size(), 1);
    QCOMPARE(report.failures.first().type, u"SMS"_s);
    QCOMPARE(report.failures.first().item, u"Lost"_s);
    QCOMPARE(report.failures.first().cause, CIExportReport::Cause::Source);
}

void tst_CSMSTranslate::refusesOtherData()
{
    FakeData other(6);
    CallerProgress progress;
    QVERIFY(!CBackupExporter::exportSMS(&other, dir(), u"Ann"_s, u"SMS"_s, &progress, nullptr));
    QVERIFY(!CBackupExporter::exportSMS(nullptr, dir(), u"Ann"_s, u"SMS"_s, nullptr, nullptr));
    QCOMPARE(Files::tree(dir().path()), QStringList());
    QCOMPARE(progress.calls, 0);
}

void tst_CSMSTranslate::cancelsBetweenAndInPasses_data()
{
    QTest::addColumn<int>("stopAtCall");
    QTest::addColumn<int>("conversations");
    QTest::addColumn<QStringList>("inPage");
    QTest::addColumn<QString>("csv");

    const QString header = u"Name,Phone,Email,Date,Type,Content\n"_s;
    const QString bob = u"Bob,,,,Received,text\n"_s;
    const QStringList both { u"Bob"_s, u"Eve"_s };
    QTest::newRow("before the first conversation of the page")
        << 1 << 2 << QStringList() << QString();
    QTest::newRow("before the second of the page") << 2 << 2 << both.first(1) << QString();
    QTest::newRow("at the end of an empty page") << 1 << 0 << QStringList() << QString();
    QTest::newRow("before the first of the CSV file") << 3 << 2 << both << header;
    QTest::newRow("before the second of the CSV file") << 4 << 2 << both << header + bob;
}

// A cancelled export is no failure: what is there stays, and is complete in itself.
void tst_CSMSTranslate::cancelsBetweenAndInPasses()
{
    QFETCH(int, stopAtCall);
    QFETCH(int, conversations);
    QFETCH(QStringList, inPage);
    QFETCH(QString, csv);

    FakeSMSData data;
    for (int i = 0; i < conversations; ++i)
        data.addConversation(i == 0 ? u"Bob"_s : u"Eve"_s).addChat(u"text"_s);
    CallerProgress progress;
    progress.stopAtCall = stopAtCall;
    QVERIFY(CBackupExporter::exportSMS(&data, dir(), u"Ann"_s, u"SMS"_s, &progress, nullptr));
    QCOMPARE(progress.calls, stopAtCall);

    const QByteArray page = Files::read(dir().filePath(u"SMS/Ann's SMS.html"_s));
    QVERIFY(page.endsWith("</div></body></html>"));
    QCOMPARE(page.count("<h2>"), inPage.size());
    for (const QString &name : inPage)
        QVERIFY(page.contains("<h2>Name: " + name.toUtf8()));
    const QString csvPath = dir().filePath(u"SMS/Ann's SMS.csv"_s);
    QCOMPARE(QFileInfo::exists(csvPath), !csv.isNull());
    QCOMPARE(QStringDecoder(QStringDecoder::Utf16)(Files::read(csvPath)).operator QString(), csv);
}

void tst_CSMSTranslate::failsWithoutOutput_data()
{
    QTest::addColumn<QString>("typeName");
    QTest::addColumn<QStringList>("left");

    QTest::newRow("a file has the folder's name") << u"taken"_s << QStringList { u"taken"_s };
    QTest::newRow("outside of the target") << u"../x"_s << QStringList { u"taken"_s };
    QTest::newRow("no name") << QString() << QStringList { u"taken"_s };
}

void tst_CSMSTranslate::failsWithoutOutput()
{
    QFETCH(QString, typeName);
    QFETCH(QStringList, left);

    QVERIFY(Files::write(dir().filePath(u"taken"_s), "x"));
    FakeSMSData data;
    data.addConversation(u"Bob"_s).addChat(u"text"_s);
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    QVERIFY(!CBackupExporter::exportSMS(&data, dir(), u"Ann"_s, typeName, nullptr, &exporter));
    QCOMPARE(Files::tree(dir().path()), left);
    QCOMPARE(report.failures.size(), 1); // the second pass is not tried
    QCOMPARE(report.exported, QStringList());
}

void tst_CSMSTranslate::failsWhenTheCsvFileCannotBeMade()
{
    FakeSMSData data;
    data.addConversation(u"Bob"_s).addChat(u"text"_s);
    const QString folder = dir().filePath(u"SMS"_s);
    CallerProgress progress;
    progress.onCall = [&](int call) {
        if (call == 1) {
            QDir(folder).removeRecursively();
            Files::write(folder, "in the way");
        }
    };
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    QVERIFY(!CBackupExporter::exportSMS(&data, dir(), u"Ann"_s, u"SMS"_s, &progress, &exporter));
    QCOMPARE(Files::read(folder), "in the way");
    QCOMPARE(report.failures.size(), 1);
    QCOMPARE(report.failures.first().item, QString()); // the data type as a whole
}

QTEST_APPLESS_MAIN(tst_CSMSTranslate)
#include "tst_CSMSTranslate.moc"
