#include "backup/CFileTranslate.h"
#include "export/CFileExporter.h"
#include "export/CPlainFileExporter.h"
#include "support/FakeBackup.h"
#include "support/Files.h"
#include "support/RecordingProgress.h"
#include "support/RecordingReport.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

//! Gives noughts up to its length, or up to where it cannot be read on.
class Noughts : public QIODevice
{
public:
    Noughts(qint64 size, bool breaks)
        : m_left(size)
        , m_breaks(breaks)
    {
        setErrorString(u"the disk went away"_s);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (m_left == 0 && m_breaks) {
            setErrorString(u"the disk went away"_s); // opening forgets what was set before
            return -1;
        }
        const qint64 count = std::min<qint64>({ maxSize, m_left, 1000 });
        std::fill_n(data, count, '0');
        m_left -= count;
        return count;
    }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    qint64 m_left;
    bool m_breaks;
};

struct StreamedFile : FakeFile
{
    bool isStreamed() const override { return true; }
    qint64 sizeBytes() const override { return size; }
    std::unique_ptr<QIODevice> openStream() const override
    {
        if (!exists)
            return nullptr;
        auto stream = std::make_unique<Noughts>(size, breaks);
        if (opens)
            stream->open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        return stream;
    }

    qint64 size = 0;
    bool exists = true;
    bool opens = true;
    bool breaks = false;
};

} // namespace

class tst_CFileTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void copiesItemsIntoGroups();
    void sharesProgressByBytes();
    void stopsBeforeAFileAndInsideOne_data();
    void stopsBeforeAFileAndInsideOne();
    void goesOnAfterAFailure();
    void readsStreams();
    void refusesOtherSinks();
    void emptySetsDoNothing();

private:
    FakeFile *addFile(const QString &name, const QByteArray &content, BkAbstractItem *group = {});

    std::unique_ptr<QTemporaryDir> m_temp;
    std::unique_ptr<FakeData> m_data;
    std::vector<std::unique_ptr<BkAbstractItem>> m_items;
    std::unique_ptr<CFileExporter> m_sink;
};

void tst_CFileTranslate::init()
{
    m_temp = std::make_unique<QTemporaryDir>();
    m_data = std::make_unique<FakeData>(0);
    m_sink = std::make_unique<CFileExporter>();
    QVERIFY(QDir(m_temp->path()).mkpath(u"out"_s));
    QVERIFY(m_sink->initExporter(QDir(m_temp->filePath(u"out"_s)), u"Ann"_s, u"T"_s));
}

void tst_CFileTranslate::cleanup()
{
    m_items.clear();
}

FakeFile *
tst_CFileTranslate::addFile(const QString &name, const QByteArray &content, BkAbstractItem *group)
{
    auto file = std::make_unique<FakeFile>();
    file->name = name;
    file->group = group;
    file->path = m_temp->filePath(u"src/%1"_s.arg(m_items.size()));
    if (!content.isNull())
        Files::write(file->path, content);
    FakeFile *added = file.get();
    m_items.push_back(std::move(file));
    m_data->items.append(added);
    return added;
}

void tst_CFileTranslate::copiesItemsIntoGroups()
{
    FakeGroup album(u"Sea/Side"_s);
    FakeGroup impossible(u".."_s);
    FakeGroup noFile(u"no file"_s);
    const QDateTime date(QDate(2015, 3, 1), QTime(12, 0), Qt::UTC);
    addFile(u"a.jpg"_s, "1", &album)->date = date;
    addFile(u"a.jpg"_s, "2", &album);
    addFile(u"plain.jpg"_s, "3");
    addFile(u"up.jpg"_s, "4", &impossible);
    addFile(u"memory.txt"_s, "on disk", &album)->data = "in memory";
    m_data->items.insert(1, nullptr);
    m_data->items.insert(2, &noFile); // an item that is no file

    QVERIFY(CFileTranslate(m_data.get()).translate(m_sink.get(), nullptr, false));
    const QString out = m_temp->filePath(u"out/T/"_s);
    QCOMPARE(Files::tree(out),
             (QStringList { u"Sea_Side/"_s,
                            u"Sea_Side/a (2).jpg"_s,
                            u"Sea_Side/a.jpg"_s,
                            u"Sea_Side/memory.txt"_s,
                            u"plain.jpg"_s,
                            u"up.jpg"_s }));
    QCOMPARE(Files::read(out + u"Sea_Side/a (2).jpg"_s), QByteArray("2"));
    QCOMPARE(Files::read(out + u"Sea_Side/memory.txt"_s), QByteArray("in memory"));
    QCOMPARE(QFileInfo(out + u"Sea_Side/a.jpg"_s).lastModified().toUTC(), date);
    QVERIFY(QFileInfo(out + u"Sea_Side/a (2).jpg"_s).lastModified() > date.addYears(1));
}

void tst_CFileTranslate::sharesProgressByBytes()
{
    addFile(u"a"_s, QByteArray(30000, 'a'));
    addFile(u"b"_s, QByteArray(10000, 'b'));
    addFile(u"c"_s, QByteArray())->data = QByteArray(20000, 'c');
    addFile(u"d"_s, QByteArray()); // missing: counts nothing
    RecordingProgress progress;
    QVERIFY(CFileTranslate(m_data.get()).translate(m_sink.get(), &progress, false));
    // 400 units for 60000 bytes; a poll of 0 stands before each file.
    const double unit = 400.0 / 60000;
    const QList<double> expected { 0, 16384 * unit, 13616 * unit, 0, 10000 * unit, 0, 20000 * unit,
                                   0 };
    QCOMPARE(progress.deltas.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QVERIFY2(qAbs(progress.deltas[i] - expected[i]) < 1e-9, qPrintable(QString::number(i)));
    QVERIFY(progress.ranges.isEmpty());
}

void tst_CFileTranslate::stopsBeforeAFileAndInsideOne_data()
{
    QTest::addColumn<int>("stopAtCall");
    QTest::addColumn<QStringList>("copied");

    QTest::newRow("before the first") << 1 << QStringList {};
    QTest::newRow("inside the first") << 2 << QStringList {};
    QTest::newRow("at the last chunk of the first") << 3 << QStringList {};
    QTest::newRow("before the second") << 4 << QStringList { u"a"_s };
}

void tst_CFileTranslate::stopsBeforeAFileAndInsideOne()
{
    QFETCH(int, stopAtCall);
    addFile(u"a"_s, QByteArray(30000, 'a'));
    addFile(u"b"_s, QByteArray(30000, 'b'));
    RecordingProgress progress;
    RecordingReport report;
    m_sink->setReport(&report);
    progress.stopAtCall = stopAtCall;
    QVERIFY(CFileTranslate(m_data.get()).translate(m_sink.get(), &progress, false));
    QTEST(Files::tree(m_temp->filePath(u"out/T"_s)), "copied");
    QCOMPARE(report.exported.size(), Files::tree(m_temp->filePath(u"out/T"_s)).size());
    QVERIFY(report.failures.isEmpty());
}

void tst_CFileTranslate::goesOnAfterAFailure()
{
    FakeGroup album(u"Album"_s);
    addFile(u"missing"_s, QByteArray(), &album);
    addFile(u"there"_s, "x", &album);
    RecordingReport report;
    m_sink->setReport(&report);
    QVERIFY(CFileTranslate(m_data.get()).translate(m_sink.get(), nullptr, false));
    QCOMPARE(Files::tree(m_temp->filePath(u"out/T"_s)),
             (QStringList { u"Album/"_s, u"Album/there"_s }));
    QCOMPARE(report.exported, QStringList { u"T: Album/there"_s });
    QCOMPARE(report.failures.size(), 1);
    QCOMPARE(report.failures[0].type, u"T"_s);
    QCOMPARE(report.failures[0].item, u"Album/missing"_s);
}

void tst_CFileTranslate::readsStreams()
{
    RecordingReport report;
    m_sink->setReport(&report);
    const auto add = [this](const QString &name, qint64 size) {
        auto file = std::make_unique<StreamedFile>();
        StreamedFile *added = file.get();
        added->name = name;
        added->size = size;
        added->date = QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
        added->data = "never asked for";
        added->onPathAsked = [] { QFAIL("a streamed item has no path"); };
        m_data->items.append(added);
        m_items.push_back(std::move(file));
        return added;
    };
    add(u"whole"_s, 40000);
    add(u"empty"_s, 0);
    add(u"broken"_s, 20000)->breaks = true;
    add(u"shut"_s, 10)->opens = false;
    add(u"none"_s, 10)->exists = false;
    RecordingProgress progress;
    QVERIFY(CFileTranslate(m_data.get()).translate(m_sink.get(), &progress, true));

    const QString out = m_temp->filePath(u"out/T"_s);
    QCOMPARE(Files::tree(out), (QStringList { u"empty"_s, u"whole"_s }));
    QCOMPARE(Files::read(out + u"/whole"_s), QByteArray(40000, '0'));
    QCOMPARE(QFileInfo(out + u"/whole"_s).lastModified().toUTC(),
             QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC));
    QCOMPARE(report.exported.size(), 2);
    QCOMPARE(report.failures.size(), 3);
    QVERIFY(report.failures[0].reason.contains(u"could not be read: the disk went away"_s));
    QVERIFY(report.failures[1].reason.contains(u"the disk went away"_s));
    QVERIFY(report.failures[2].reason.contains(u"missing"_s));
}

void tst_CFileTranslate::refusesOtherSinks()
{
    addFile(u"a"_s, "x");
    CPlainFileExporter other(u".txt"_s, false);
    QVERIFY(!CFileTranslate(m_data.get()).translate(&other, nullptr, false));
    QVERIFY(!CFileTranslate(m_data.get()).translate(nullptr, nullptr, false));
}

void tst_CFileTranslate::emptySetsDoNothing()
{
    RecordingProgress progress;
    QVERIFY(CFileTranslate(m_data.get()).translate(m_sink.get(), &progress, false));
    QVERIFY(progress.deltas.isEmpty());
    addFile(u"a"_s, "");
    addFile(u"b"_s, "");
    QVERIFY(CFileTranslate(m_data.get()).translate(m_sink.get(), &progress, false));
    QCOMPARE(progress.deltas, (QList<double> { 0, 0 }));
    QCOMPARE(Files::tree(m_temp->filePath(u"out/T"_s)), (QStringList { u"a"_s, u"b"_s }));
}

QTEST_GUILESS_MAIN(tst_CFileTranslate)
#include "tst_CFileTranslate.moc"
