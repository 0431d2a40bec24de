// The frame, its export function and the CSV file.
#include "backup/CBackupExporter.h"
#include "message/CWhatsapp2CSVTranslate.h"
#include "message/CWhatsappTranslate.h"
#include "support/FakeBackup.h"
#include "support/FakeSMS.h"
#include "support/FakeWhatsapp.h"
#include "support/Golden.h"
#include "support/RecordingProgress.h"
#include "support/RecordingSink.h"

#include <QStringConverter>
#include <QTemporaryDir>
#include <QtTest>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

// Writes down its steps; the one called failAt answers false.
class StepRecorder final : public CWhatsappTranslate
{
public:
    using CWhatsappTranslate::CWhatsappTranslate;

    bool translateHeader(CIDataExporter * /*exporter*/, const QString &title) override
    {
        return note(u"header "_s + title);
    }
    bool translateDataBefore(CIDataExporter * /*exporter*/) override { return note(u"before"_s); }
    bool translateDataAfter(CIDataExporter * /*exporter*/) override { return note(u"after"_s); }
    bool translateDataItem(CIDataExporter * /*exporter*/, BkWhatsappItem *item) override
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

} // namespace

class tst_CWhatsappTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void walksInSteps_data();
    void walksInSteps();
    void exportsPageAndCsv();
    void exportsNothingOfOtherData();
    void failsAsAWhole();
    void writesLines_data() { Golden::addRows(u"whatsapp-csv"_s); }
    void writesLines();
    void onlyTheHeaderLineMayFail();

private:
    QTemporaryDir m_temp;
};

void tst_CWhatsappTranslate::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void tst_CWhatsappTranslate::walksInSteps_data()
{
    QTest::addColumn<QString>("failAt");
    QTest::addColumn<int>("stopAtCall");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<int>("calls");
    QTest::addColumn<bool>("result");

    constexpr int never = 99;
    const QString header = u"header T"_s;
    const QStringList all { header, u"before"_s, u"A"_s, u"B"_s, u"after"_s };
    QTest::newRow("all succeed") << QString() << never << all << 4 << true;
    QTest::newRow("header fails") << header << never << all.first(1) << 0 << false;
    QTest::newRow("before fails") << u"before"_s << never << all.first(2) << 0 << false;
    QTest::newRow("an item fails") << u"A"_s << never << all.first(3) << 2 << false;
    QTest::newRow("after fails") << u"after"_s << never << all << 4 << false;
    QTest::newRow("stopped") << QString() << 3
                             << QStringList { header, u"before"_s, u"A"_s, u"after"_s } << 3
                             << true;
}

// What is no chat is skipped, and counts for the progress.
void tst_CWhatsappTranslate::walksInSteps()
{
    QFETCH(QString, failAt);
    QFETCH(int, stopAtCall);
    QFETCH(QStringList, steps);
    QFETCH(int, calls);
    QFETCH(bool, result);

    FakeWhatsappItem first({ u"A"_s });
    FakeSMSItem other(u"SMS"_s, {}, {});
    FakeWhatsappItem second({ u"B"_s });
    FakeData data(11);
    data.items = { nullptr, &first, &other, &second };
    RecordingProgress progress;
    progress.initRange(10);
    progress.stopAtCall = stopAtCall;
    StepRecorder translator(&data);
    translator.failAt = failAt;
    QCOMPARE(translator.translate(nullptr, u"T"_s, &progress), result);
    QCOMPARE(translator.steps, steps);
    QCOMPARE(progress.deltas, QList<double>(calls, 2.5));
}

void tst_CWhatsappTranslate::exportsPageAndCsv()
{
    FakeWhatsappItem item({ u"Crew"_s, u"Bob"_s, u"+1"_s });
    item.add(u"hello"_s);
    FakeData data(11);
    data.items = { &item };
    RecordingProgress progress;
    progress.initRange(100);
    const QDir dir(m_temp.path());
    QVERIFY(
        CBackupExporter::exportWhatsapp(&data, dir, u"A/n"_s, u"WhatsApp"_s, &progress, nullptr));
    const QByteArray page = Files::read(dir.filePath(u"WhatsApp/A_n's WhatsApp.html"_s));
    QVERIFY(page.contains("<h1>A/n's WhatsApp</h1>") && page.contains("hello"));
    QVERIFY(page.endsWith("</div></div></body></html>"));
    const QByteArray csv = Files::read(dir.filePath(u"WhatsApp/A_n's WhatsApp.csv"_s));
    QVERIFY(csv.startsWith("\xff\xfe"));
    QCOMPARE(QStringDecoder(QStringDecoder::Utf16)(csv).operator QString(),
             u"Chat,Name,Phone,Date,Type,Content\nCrew,Bob,+1,,Received,hello\n"_s);
    QCOMPARE(QDir(dir.filePath(u"WhatsApp/image"_s)).entryList(QDir::Files).size(), 27);
    double sum = 0;
    for (const double delta : progress.deltas)
        sum += delta;
    QCOMPARE(sum, 100.0);
}

void tst_CWhatsappTranslate::exportsNothingOfOtherData()
{
    FakeSMSData data;
    data.addConversation(u"Bob"_s).addChat(u"hello"_s);
    const QDir dir(m_temp.path());
    QVERIFY(CBackupExporter::exportWhatsapp(&data, dir, u"Ann"_s, u"Other"_s, nullptr, nullptr));
    QVERIFY(!Files::read(dir.filePath(u"Other/Ann's Other.html"_s)).contains("class=\"main\""));
    QVERIFY(QFileInfo::exists(dir.filePath(u"Other/Ann's Other.csv"_s)));
    QVERIFY(!CBackupExporter::exportWhatsapp(nullptr, dir, u"Ann"_s, u"N"_s, nullptr, nullptr));
    QVERIFY(!dir.exists(u"N"_s));
}

void tst_CWhatsappTranslate::failsAsAWhole()
{
    const QDir dir(m_temp.path());
    QVERIFY(Files::write(dir.filePath(u"taken"_s), "x"));
    FakeData data(11);
    QVERIFY(!CBackupExporter::exportWhatsapp(&data, dir, u"Ann"_s, u"taken"_s, nullptr, nullptr));
    QCOMPARE(Files::read(dir.filePath(u"taken"_s)), "x");
}

void tst_CWhatsappTranslate::writesLines()
{
    QFETCH(QString, folder);

    const WhatsappFromJson::Items items = WhatsappFromJson::load(folder);
    FakeData data(11);
    for (const auto &item : items)
        data.items.append(item.get());
    for (const bool hard : { true, false }) {
        RecordingSink sink;
        sink.setHardened(hard);
        QVERIFY(CWhatsapp2CSVTranslate(&data).translate(&sink, u"not shown"_s, nullptr));
        QCOMPARE(sink.images.size() + sink.copied.size(), 0);
        COMPARE_GOLDEN(sink.text().toUtf8(),
                       folder + (hard ? u"/hardened.csv"_s : u"/chats.csv"_s));
    }
}

void tst_CWhatsappTranslate::onlyTheHeaderLineMayFail()
{
    FakeWhatsappItem item({ u"Bob"_s });
    item.add(u"text"_s);
    FakeWhatsappItem lost({ u"Eve"_s });
    lost.readable = false;
    FakeData data(11);
    RecordingSink sink;
    sink.accepts = false;
    CWhatsapp2CSVTranslate translator(&data);
    QVERIFY(translator.translateDataItem(&sink, &item));
    QVERIFY(translator.translateDataItem(&sink, &lost));
    QVERIFY(!translator.translate(&sink, {}, nullptr));
    QCOMPARE(sink.writes.size(), 2);
}

QTEST_GUILESS_MAIN(tst_CWhatsappTranslate)
#include "tst_CWhatsappTranslate.moc"
