#include "backup/CBackupExporter.h"
#include "support/FakeBackup.h"
#include "support/FakeContact.h"
#include "support/FakeSMS.h"
#include "support/FakeTable.h"
#include "support/FakeWhatsapp.h"
#include "support/Files.h"
#include "support/RecordingProgress.h"
#include "support/RecordingReport.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using Contents = QMap<QString, QByteArray>; // of files, by their paths

const QByteArray kEarlier = "an earlier page";

Contents contentsBelow(const QString &folder)
{
    Contents contents;
    for (const QString &path : Files::tree(folder)) {
        if (!path.endsWith(u'/'))
            contents.insert(path, Files::read(folder + u'/' + path));
    }
    return contents;
}

// "Type 8: cards" for the output whose file \a path is.
QString outputOf(const QString &path)
{
    const bool isPage = path.endsWith(".html"_L1) || path.contains("/image/"_L1);
    return path.section(u'/', 0, 0)
        + (isPage                         ? ": page"_L1
               : path.endsWith(".csv"_L1) ? ": table"_L1
               : path.endsWith(".vcf"_L1) ? ": cards"_L1
                                          : ": copies"_L1);
}

} // namespace

class tst_CBackupExporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void walksInOrderAndWeights();
    void anEmptyBackupOnlyFinishes();
    void stopsBetweenDataTypes();
    void stopsAtEveryCall();
    void goesOnAfterAFailedDataType();
    void liftsProtectionInDfuModeOnly_data();
    void liftsProtectionInDfuModeOnly();

private:
    FakeData *addSet(int code, int files);

    std::unique_ptr<QTemporaryDir> m_temp;
    std::unique_ptr<FakeBackup> m_backup;
    std::vector<std::unique_ptr<BkAbstractItem>> m_items;
    std::vector<std::unique_ptr<FakeData>> m_sets;
};

void tst_CBackupExporter::init()
{
    m_temp = std::make_unique<QTemporaryDir>();
    m_backup = std::make_unique<FakeBackup>();
    QVERIFY(QDir(m_temp->path()).mkpath(u"out"_s));
}

void tst_CBackupExporter::cleanup()
{
    m_items.clear();
    m_sets.clear();
}

FakeData *tst_CBackupExporter::addSet(int code, int files)
{
    auto set = std::make_unique<FakeData>(code);
    for (int i = 0; i < files; ++i) {
        auto file = std::make_unique<FakeFile>();
        file->name = u"f%1"_s.arg(i);
        file->path = m_temp->filePath(u"src/%1-%2"_s.arg(code).arg(i));
        Files::write(file->path, "x");
        set->items.append(file.get());
        m_items.push_back(std::move(file));
    }
    m_backup->sets.insert(code, set.get());
    m_sets.push_back(std::move(set));
    return m_sets.back().get();
}

void tst_CBackupExporter::walksInOrderAndWeights()
{
    // Every file type with one file more than the one before, in the documented order.
    const QList<int> order { 0, 1, 2, 7, 16, 12, 3, 4, 5, 18, 10 };
    for (int i = 0; i < order.size(); ++i)
        addSet(order[i], i + 1);
    RecordingProgress progress;
    RecordingReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    QVERIFY(exporter.exportBackup(m_backup.get(), QDir(m_temp->filePath(u"out"_s)), &progress));

    QStringList expected;
    QStringList starts;
    for (int i = 0; i < order.size(); ++i) {
        starts.append(u"%1: Type %1"_s.arg(order[i]));
        for (int file = 0; file <= i; ++file)
            expected.append(u"Type %1: f%2"_s.arg(order[i]).arg(file));
    }
    QCOMPARE(report.exported, expected);
    QCOMPARE(report.starts, starts);
    QCOMPARE(progress.ranges, QList<int> { 100 * int(expected.size()) });
    QVERIFY(qAbs(progress.sum - 100.0 * double(expected.size())) < 1e-6);
    QCOMPARE(progress.finishes, 1);
    QCOMPARE(m_backup->ownerAsked, 1);
    for (const int code : order)
        QCOMPARE(m_backup->asked.count(code), 2);
}

void tst_CBackupExporter::anEmptyBackupOnlyFinishes()
{
    addSet(0, 0);
    RecordingProgress progress;
    CBackupExporter exporter;
    QVERIFY(exporter.exportBackup(m_backup.get(), QDir(m_temp->filePath(u"out"_s)), &progress));
    QVERIFY(progress.ranges.isEmpty());
    QVERIFY(progress.deltas.isEmpty());
    QCOMPARE(progress.finishes, 1);
    QCOMPARE(Files::tree(m_temp->filePath(u"out"_s)), QStringList());
    QVERIFY(exporter.exportBackup(m_backup.get(), QDir(m_temp->filePath(u"out"_s)), nullptr));
}

void tst_CBackupExporter::stopsBetweenDataTypes()
{
    addSet(0, 1);
    addSet(1, 3);
    addSet(2, 1);
    RecordingProgress progress;
    progress.stopAtCall = 4; // poll and byte of the photo, poll of the first video, its byte
    CBackupExporter exporter;
    QVERIFY(exporter.exportBackup(m_backup.get(), QDir(m_temp->filePath(u"out"_s)), &progress));
    QCOMPARE(Files::tree(m_temp->filePath(u"out"_s)),
             (QStringList { u"Type 0/"_s, u"Type 0/f0"_s, u"Type 1/"_s }));
    QCOMPARE(progress.finishes, 1);
    QCOMPARE(progress.deltas.size(), 4);
}

// What is called complete is complete, and nothing else has its final name but whole cards and
// copies.
void tst_CBackupExporter::stopsAtEveryCall()
{
    addSet(0, 2);
    FakeContactData contacts;
    FakeSMSData talks;
    FakeData chats(11);
    FakeTable notes(9);
    FakeTable links(17);
    FakeWhatsappItem chatItems[] { FakeWhatsappItem({ u"Bo"_s }), FakeWhatsappItem({ u"Cy"_s }) };
    notes.columns = links.columns = QStringList { u"Title"_s, u"Text"_s };
    for (int i = 0; i < 2; ++i) {
        const QString name = u"Name %1"_s.arg(i);
        contacts.addContact(name);
        talks.addConversation(name, u"+1"_s).addChat(name);
        chatItems[i].add(name);
        chats.items.append(&chatItems[i]);
        notes.addRow({ name, u"text"_s });
        links.addRow({ name, u"http://a.org"_s });
    }
    m_backup->sets.insert({ { 8, &contacts }, { 6, &talks }, { 11, &chats } });
    m_backup->sets.insert({ { 9, &notes }, { 17, &links } });

    Contents whole;
    QSet<QString> ends;
    for (qsizetype call = 0, calls = 0; call <= calls; ++call) {
        const QTemporaryDir output;
        const QStringList pages = QStringList(whole.keys()).filter(u".html"_s);
        for (const QString &page : pages)
            QVERIFY(Files::write(output.filePath(page), kEarlier));
        RecordingProgress progress;
        if (call > 0)
            progress.stopAtCall = call;
        RecordingReport report;
        CBackupExporter exporter;
        exporter.setHardened(true);
        exporter.setReport(&report);
        QVERIFY(exporter.exportBackup(m_backup.get(), QDir(output.path()), &progress));
        const Contents found = contentsBelow(output.path());
        if (call == 0) {
            whole = found;
            calls = progress.deltas.size();
            QCOMPARE(report.ends.size(), 10);
        }

        QSet<QString> cut;
        for (auto file = whole.cbegin(); file != whole.cend(); ++file) {
            if (found.value(file.key()) != file.value())
                cut.insert(outputOf(file.key()));
        }
        QSet<QString> ended;
        for (const QString &end : std::as_const(report.ends)) {
            const QString which = end.section(u' ', 0, 2);
            ended.insert(which);
            ends.insert(end);
            QVERIFY2(end.endsWith(" complete"_L1) != cut.contains(which), qPrintable(end));
        }
        for (auto file = found.cbegin(); file != found.cend(); ++file) {
            const bool isNew =
                ended.contains(outputOf(file.key())) && file.value() == whole.value(file.key());
            const bool isEarlier = pages.contains(file.key()) && file.value() == kEarlier;
            QVERIFY2(isNew || isEarlier, qPrintable(file.key()));
        }
    }
    // Each output ended in each way, but those that come first always start.
    QCOMPARE(ends.size(), 3 * 10 - 6);
}

void tst_CBackupExporter::goesOnAfterAFailedDataType()
{
    addSet(0, 1);
    addSet(1, 1);
    m_backup->names.insert(0, u"../escape"_s);
    RecordingReport report;
    CBackupExporter exporter;
    QVERIFY(!CBackupExporter::exportFile(m_backup->sets[0],
                                         QDir(m_temp->filePath(u"out"_s)),
                                         u"Ann"_s,
                                         u"../escape"_s,
                                         nullptr,
                                         nullptr));
    exporter.setReport(&report);
    QVERIFY(exporter.exportBackup(m_backup.get(), QDir(m_temp->filePath(u"out"_s)), nullptr));
    QCOMPARE(Files::tree(m_temp->filePath(u"out"_s)),
             (QStringList { u"Type 1/"_s, u"Type 1/f0"_s }));
    QCOMPARE(report.failures.size(), 1);
    QCOMPARE(report.failures[0].type, u"../escape"_s);
    QCOMPARE(report.failures[0].item, QString());
}

void tst_CBackupExporter::liftsProtectionInDfuModeOnly_data()
{
    QTest::addColumn<bool>("dfu");
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("inMemory");
    QTest::addColumn<bool>("lifted");

    QTest::newRow("ordinary backup") << false << 0 << false << false;
    QTest::newRow("photos of a device in DFU mode") << true << 0 << false << true;
    QTest::newRow("never voicemail") << true << 16 << false << false;
    QTest::newRow("never what is in memory") << true << 0 << true << false;
}

void tst_CBackupExporter::liftsProtectionInDfuModeOnly()
{
    QFETCH(bool, dfu);
    QFETCH(int, code);
    QFETCH(bool, inMemory);
    FakeData *set = addSet(code, 1);
    auto *file = static_cast<FakeFile *>(set->items[0]);
    const QByteArray path = QFile::encodeName(file->path);
    QVERIFY(::chmod(path.constData(), 0040) == 0);
    if (inMemory)
        file->data = "bytes";

    // The status change time tells of a lifted and restored mode; root reads the file in any case.
    struct stat before
    {
    };
    struct stat after
    {
    };
    QVERIFY(::stat(path.constData(), &before) == 0);
    CBackupExporter exporter;
    QVERIFY(!exporter.fromDFU());
    exporter.setFromDFU(dfu);
    QTest::qWait(20);
    QVERIFY(exporter.exportBackup(m_backup.get(), QDir(m_temp->filePath(u"out"_s)), nullptr));
    QVERIFY(::stat(path.constData(), &after) == 0);
    QCOMPARE(after.st_mode, before.st_mode);
    const bool touched = after.st_ctim.tv_sec != before.st_ctim.tv_sec
        || after.st_ctim.tv_nsec != before.st_ctim.tv_nsec;
    QTEST(touched, "lifted");
}

QTEST_GUILESS_MAIN(tst_CBackupExporter)
#include "tst_CBackupExporter.moc"
