#include "export/CFileExporter.h"
#include "export/CICopyStep.h"
#include "export/FileProgress.h"
#include "support/Files.h"
#include "support/FullDevice.h"
#include "support/RecordingProgress.h"
#include "support/RecordingReport.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

//! Keeps the paths that it is told of, and finds fault with those that end in "bad".
class RecordingStep final : public CICopyStep
{
public:
    std::optional<CIExportReport::Fault> fileCopied(const QString &path) override
    {
        paths += path;
        if (!path.endsWith("bad"_L1))
            return std::nullopt;
        return CIExportReport::Fault { CIExportReport::Cause::Content, u"bad"_s };
    }

    QStringList paths;
};

} // namespace

class tst_CFileExporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void makesOutputNames_data();
    void makesOutputNames();
    void copies_data();
    void copies();
    void takesAStepWithEachCopy();
    void numbersEqualNames();
    void neverLeavesItsFolder_data();
    void neverLeavesItsFolder();
    void unreadableSourcesLeaveNothing_data();
    void unreadableSourcesLeaveNothing();
    void cancelsWithinAChunk();
    void reportsFullDeviceAtEveryChunk_data();
    void reportsFullDeviceAtEveryChunk();
    void aHardenedCopyGetsItsNameWhenComplete();
    void goesIntoGroups();
    void staysOutOfAGroupThatIsGone();
    void copiesASequentialDevice_data();
    void copiesASequentialDevice();
    void refusesImpossibleGroups();
    void keepsTheDate();
    void progressCoversItsSpan_data();
    void progressCoversItsSpan();

private:
    QString out(const QString &name = {}) const { return m_temp->filePath(u"out/T/"_s + name); }

    std::unique_ptr<QTemporaryDir> m_temp;
    std::unique_ptr<CFileExporter> m_sink;
    std::unique_ptr<RecordingReport> m_report;
};

void tst_CFileExporter::init()
{
    m_temp = std::make_unique<QTemporaryDir>();
    m_sink = std::make_unique<CFileExporter>();
    m_report = std::make_unique<RecordingReport>();
    m_sink->setReport(m_report.get());
    QVERIFY(QDir(m_temp->path()).mkpath(u"out"_s));
    QVERIFY(m_sink->initExporter(QDir(m_temp->filePath(u"out"_s)), u"Ann"_s, u"T"_s));
}

void tst_CFileExporter::makesOutputNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << u"IMG_0001.JPG"_s << u"IMG_0001.JPG"_s;
    QTest::newRow("several dots") << u"a.tar.gz"_s << u"a.tar.gz"_s;
    QTest::newRow("no extension") << u"README"_s << u"README"_s;
    QTest::newRow("hidden: empty base, all of it extension") << u".profile"_s << u".profile"_s;
    QTest::newRow("leading dots before an extension") << u"..a.txt"_s << u"a.txt"_s;
    QTest::newRow("dot at the end") << u"a."_s << u"a"_s;
    QTest::newRow("forbidden characters") << u"a/b\\c:d.txt"_s << u"a_b_c_d.txt"_s;
    QTest::newRow("empty") << u""_s << u"_"_s;
    QTest::newRow("dot") << u"."_s << u"_"_s;
    QTest::newRow("only dots") << u"....."_s << u"_"_s;
    QTest::newRow("parent") << u"../x"_s << u"._x"_s;
    QTest::newRow("a character that would end it")
        << u"a"_s + QChar(u'\0') + u"b.txt"_s << u"a_b.txt"_s;
    QTest::newRow("too long") << QString(300, u'x') + u".jpeg"_s << QString(250, u'x') + u".jpeg"_s;
    QTest::newRow("too long an extension")
        << u"a."_s + QString(300, u'x') << u"a."_s + QString(253, u'x');
    QTest::newRow("too long, and characters of two bytes")
        << QString(200, u'\u00E9') << QString(127, u'\u00E9');
    QTest::newRow("too long, and taken") << QString(300, u'y') << QString(242, u'y') + u" (2)"_s;
}

void tst_CFileExporter::makesOutputNames()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    for (const QString &taken : { QString(255, u'y'), QString(242, u'y') })
        QVERIFY(Files::write(out(taken), "x"));
    QCOMPARE(m_sink->makeOutputFileName(name), out(expected));
}

void tst_CFileExporter::copies_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QList<double>>("steps");

    using L = QList<double>;
    QTest::newRow("empty") << qint64(0) << L {};
    QTest::newRow("one byte") << qint64(1) << L { 1 };
    QTest::newRow("one chunk") << qint64(16384) << L { 16384 };
    QTest::newRow("one chunk and a byte") << qint64(16385) << L { 16384, 1 };
    QTest::newRow("several chunks") << qint64(40000) << L { 16384, 16384, 7232 };
}

void tst_CFileExporter::copies()
{
    QFETCH(qint64, size);
    QByteArray content(size, Qt::Uninitialized);
    for (qint64 i = 0; i < size; ++i)
        content[i] = static_cast<char>(i * 31 + i / 251);
    QVERIFY(Files::write(m_temp->filePath(u"src"_s), content));
    RecordingProgress progress;
    m_sink->setExportProgress(&progress);
    QVERIFY(m_sink->exportData(m_temp->filePath(u"src"_s), u"a.bin"_s));
    QCOMPARE(Files::read(out(u"a.bin"_s)), content);
    QTEST(progress.deltas, "steps");
    QCOMPARE(m_report->exported, QStringList { u"T: a.bin"_s });

    // The bytes form tells the callback once, and of an empty content, too.
    progress.deltas.clear();
    QVERIFY(m_sink->exportDepends(content, u"b.bin"_s));
    QCOMPARE(Files::read(out(u"b.bin"_s)), content);
    QCOMPARE(progress.deltas, QList<double> { static_cast<double>(size) });
    QVERIFY(m_report->failures.isEmpty());
}

// An item with which the step failed is told once, as a failure; its copy stays.
void tst_CFileExporter::takesAStepWithEachCopy()
{
    RecordingStep step;
    m_sink->setCopyStep(&step);
    QVERIFY(m_sink->exportDepends("1"_ba, u"good"_s));
    QVERIFY(m_sink->exportDepends("2"_ba, u"bad"_s));
    QVERIFY(!m_sink->exportData(m_temp->filePath(u"nowhere"_s), u"none"_s));
    QCOMPARE(step.paths, QStringList({ out(u"good"_s), out(u"bad"_s) }));
    QCOMPARE(m_report->exported, QStringList { u"T: good"_s });
    QCOMPARE(m_report->failures.size(), 2);
    QCOMPARE(m_report->failures.first().item, u"bad"_s);
    QCOMPARE(Files::read(out(u"bad"_s)), QByteArray("2"));
}

void tst_CFileExporter::numbersEqualNames()
{
    for (const char *content : { "1", "2", "3" }) {
        QVERIFY(Files::write(m_temp->filePath(u"src"_s), content));
        QVERIFY(m_sink->exportData(m_temp->filePath(u"src"_s), u"IMG.JPG"_s));
    }
    QCOMPARE(Files::tree(out()),
             (QStringList { u"IMG (2).JPG"_s, u"IMG (3).JPG"_s, u"IMG.JPG"_s }));
    QCOMPARE(Files::read(out(u"IMG.JPG"_s)), QByteArray("1"));
    QCOMPARE(Files::read(out(u"IMG (3).JPG"_s)), QByteArray("3"));
}

void tst_CFileExporter::neverLeavesItsFolder_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("name");

    for (const QString &hostile : { u".."_s,
                                    u"../up"_s,
                                    u"../../../up"_s,
                                    u"/etc/dataexport-up"_s,
                                    u"..\\up"_s,
                                    u"C:\\up"_s,
                                    u":/up"_s,
                                    u"."_s,
                                    u""_s,
                                    u" "_s,
                                    u"~"_s,
                                    u"a/../../up"_s,
                                    u"x\n/../up"_s }) {
        QTest::addRow("name %s", qPrintable(hostile.toHtmlEscaped())) << u"g"_s << hostile;
        QTest::addRow("group %s", qPrintable(hostile.toHtmlEscaped())) << hostile << u"n"_s;
        QTest::addRow("both %s", qPrintable(hostile.toHtmlEscaped())) << hostile << hostile;
    }
}

void tst_CFileExporter::neverLeavesItsFolder()
{
    QFETCH(QString, group);
    QFETCH(QString, name);
    if (m_sink->intoSubDir(group)) {
        QVERIFY(m_sink->exportDepends(QByteArray("x"), name));
        QVERIFY(m_sink->backFromSubDir());
    } else {
        QVERIFY(m_sink->exportDepends(QByteArray("x"), name));
    }
    QVERIFY(m_sink->exportDepends(QByteArray("y"), u"last"_s));
    int files = 0;
    const QStringList all = Files::tree(m_temp->path());
    for (const QString &path : all) {
        QVERIFY2(path == u"out/"_s || path.startsWith(u"out/T/"_s), qPrintable(path));
        files += path.endsWith(u'/') ? 0 : 1;
    }
    QCOMPARE(files, 2);
    QVERIFY2(all.contains(u"out/T/last"_s), "back in the data type's folder");
}

void tst_CFileExporter::unreadableSourcesLeaveNothing_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("missing") << u"missing"_s;
    QTest::newRow("folder") << u"out"_s;
    QTest::newRow("below a file") << u"file/x"_s;
}

void tst_CFileExporter::unreadableSourcesLeaveNothing()
{
    QFETCH(QString, source);
    QVERIFY(Files::write(m_temp->filePath(u"file"_s), "x"));
    QVERIFY(!m_sink->exportData(m_temp->filePath(source), u"a.txt"_s));
    QCOMPARE(Files::tree(out()), QStringList());
    QCOMPARE(m_report->failures.size(), 1);
    QCOMPARE(m_report->failures[0].item, u"a.txt"_s);
    QCOMPARE(m_report->failures[0].cause, CIExportReport::Cause::Source);
    QVERIFY(m_report->exported.isEmpty());
}

void tst_CFileExporter::cancelsWithinAChunk()
{
    QVERIFY(Files::write(m_temp->filePath(u"src"_s), QByteArray(100000, 'x')));
    RecordingProgress progress;
    progress.stopAtCall = 3;
    m_sink->setExportProgress(&progress);
    QVERIFY(m_sink->exportData(m_temp->filePath(u"src"_s), u"a"_s));
    QCOMPARE(progress.deltas.size(), 3);
    QCOMPARE(Files::tree(out()), QStringList());
    QVERIFY(m_report->exported.isEmpty());
    QVERIFY(m_report->failures.isEmpty());
}

void tst_CFileExporter::reportsFullDeviceAtEveryChunk_data()
{
    QTest::addColumn<qint64>("room");
    QTest::addColumn<bool>("fits");

    for (const qint64 room : { 0, 1, 16383, 16384, 16385, 32768, 49999 })
        QTest::addRow("room for %d bytes", int(room)) << room << false;
    QTest::newRow("room for all") << qint64(50000) << true;
}

void tst_CFileExporter::reportsFullDeviceAtEveryChunk()
{
    QFETCH(qint64, room);
    QFETCH(bool, fits);
    const QByteArray content(50000, 'x');
    QVERIFY(Files::write(m_temp->filePath(u"src"_s), content));
    {
        const FullDevice device(static_cast<rlim_t>(room));
        QCOMPARE(m_sink->exportData(m_temp->filePath(u"src"_s), u"copied"_s), fits);
        QCOMPARE(m_sink->exportDepends(content, u"written"_s), fits);
    }
    QCOMPARE(Files::tree(out()),
             fits ? (QStringList { u"copied"_s, u"written"_s }) : QStringList());
    QCOMPARE(m_report->failures.size(), fits ? 0 : 2);
    for (const auto &failure : std::as_const(m_report->failures)) {
        QCOMPARE(failure.cause, CIExportReport::Cause::Target);
        QCOMPARE(failure.systemError, EFBIG);
    }
}

// At the first chunk nothing has the copy's name yet; then somebody else takes it.
void tst_CFileExporter::aHardenedCopyGetsItsNameWhenComplete()
{
    class NameTaker final : public CIProgressCallback
    {
    public:
        explicit NameTaker(const QString &path)
            : m_path(path)
        {
        }
        void initRange(int /*total*/) override { }
        int range() override { return 0; }
        bool progress(double /*delta*/) override
        {
            wasFree = wasFree && !QFileInfo::exists(m_path);
            return m_isTaken || (m_isTaken = Files::write(m_path, "other"));
        }
        bool finish() override { return true; }

        bool wasFree = true;

    private:
        QString m_path;
        bool m_isTaken = false;
    } progress(out(u"a"_s));
    const QByteArray content(100, 'x');
    QVERIFY(Files::write(m_temp->filePath(u"src"_s), content));
    m_sink->setHardened(true);
    m_sink->setExportProgress(&progress);
    QVERIFY(m_sink->exportData(m_temp->filePath(u"src"_s), u"a"_s));
    QVERIFY(progress.wasFree);
    QVERIFY(m_sink->finish(true));
    QCOMPARE(Files::tree(out()), (QStringList { u"a"_s, u"a (2)"_s }));
    QCOMPARE(Files::read(out(u"a"_s)), QByteArray("other"));
    QCOMPARE(Files::read(out(u"a (2)"_s)), content);
    QCOMPARE(m_report->ends, QStringList { u"T: copies complete"_s });
}

void tst_CFileExporter::staysOutOfAGroupThatIsGone()
{
    QVERIFY(m_sink->intoSubDir(u"g"_s) && m_sink->backFromSubDir());
    QVERIFY(QDir(out()).rmdir(u"g"_s));
    QVERIFY(!m_sink->intoSubDir(u"g"_s));
    QVERIFY(!CFileExporter().intoSubDir(u"g"_s));
    QVERIFY(!CFileExporter().exportDepends(QByteArray("x"), u"tst_CFileExporter.left-over"_s));
}

void tst_CFileExporter::copiesASequentialDevice_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QStringList>("left");

    QTest::newRow("to its end") << QString() << QStringList { u"a"_s };
    QTest::newRow("to its error") << u"It broke"_s << QStringList();
}

// Either ends with -1.
void tst_CFileExporter::copiesASequentialDevice()
{
    QFETCH(QString, error);
    class Pipe final : public QIODevice
    {
    public:
        explicit Pipe(const QString &error)
            : m_error(error)
        {
            open(ReadOnly | Unbuffered);
        }
        bool isSequential() const override { return true; }

    protected:
        qint64 readData(char *data, qint64 /*size*/) override
        {
            if (m_isRead && !m_error.isEmpty())
                setErrorString(m_error);
            if (std::exchange(m_isRead, true))
                return -1;
            *data = 'x';
            return 1;
        }
        qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

    private:
        QString m_error;
        bool m_isRead = false;
    } pipe(error);
    QCOMPARE(m_sink->exportStream(&pipe, u"a"_s), error.isEmpty());
    QTEST(Files::tree(out()), "left");
}

void tst_CFileExporter::goesIntoGroups()
{
    for (const QString &group :
         { u"100APPLE"_s, u"a/b"_s, u"100APPLE"_s, u"..b"_s, QString(300, u'x') }) {
        QVERIFY(m_sink->intoSubDir(group));
        QVERIFY(m_sink->exportDepends(QByteArray("x"), u"f"_s));
        QVERIFY(m_sink->backFromSubDir());
    }
    QCOMPARE(Files::tree(out()),
             (QStringList { u"100APPLE/"_s,
                            u"100APPLE/f"_s,
                            u"100APPLE/f (2)"_s,
                            u"a_b/"_s,
                            u"a_b/f"_s,
                            u"b/"_s,
                            u"b/f"_s,
                            QString(255, u'x') + u"/"_s,
                            QString(255, u'x') + u"/f"_s }));
    QCOMPARE(m_report->exported.value(1), u"T: a/b/f"_s);
}

void tst_CFileExporter::refusesImpossibleGroups()
{
    QVERIFY(Files::write(out(u"file"_s), "x"));
    for (const QString &group : { u""_s, u"."_s, u".."_s, u"file"_s }) {
        QVERIFY2(!m_sink->intoSubDir(group), qPrintable(group));
        QCOMPARE(m_sink->makeOutputFileName(u"n"_s), out(u"n"_s));
    }
}

void tst_CFileExporter::keepsTheDate()
{
    QVERIFY(Files::write(m_temp->filePath(u"src"_s), QByteArray(20000, 'x')));
    const QDateTime date(QDate(2019, 7, 14), QTime(9, 41, 7), Qt::UTC);
    m_sink->setFileDate(date);
    QVERIFY(m_sink->exportData(m_temp->filePath(u"src"_s), u"a"_s));
    QVERIFY(m_sink->exportDepends(QByteArray("x"), u"b"_s));
    m_sink->setFileDate(QDateTime());
    QVERIFY(m_sink->exportData(m_temp->filePath(u"src"_s), u"c"_s));
    QCOMPARE(QFileInfo(out(u"a"_s)).lastModified().toUTC(), date);
    QCOMPARE(QFileInfo(out(u"b"_s)).lastModified().toUTC(), date);
    QVERIFY(QFileInfo(out(u"c"_s)).lastModified() > date.addYears(1));
}

void tst_CFileExporter::progressCoversItsSpan_data()
{
    QTest::addColumn<qint64>("total");
    QTest::addColumn<QList<double>>("steps");
    QTest::addColumn<QList<double>>("forwarded");

    using L = QList<double>;
    QTest::newRow("in parts") << qint64(1000) << L { 250, 250 } << L { 50, 50, 100 };
    QTest::newRow("never past the end") << qint64(1000) << L { 900, 900 } << L { 180, 20, 0 };
    QTest::newRow("nothing to copy") << qint64(0) << L {} << L { 200 };
    QTest::newRow("more than an int")
        << (qint64(1) << 40) << L { double(qint64(1) << 39) } << L { 100, 100 };
}

void tst_CFileExporter::progressCoversItsSpan()
{
    QFETCH(qint64, total);
    QFETCH(QList<double>, steps);
    RecordingProgress parent;
    FileProgress progress(&parent, 200);
    progress.setTotal(total);
    for (const double step : steps)
        QVERIFY(progress.progress(step));
    QVERIFY(progress.finish());
    QTEST(parent.deltas, "forwarded");
    QCOMPARE(progress.range(), 1);

    parent.stopAtCall = 1;
    progress.initRange(10);
    QVERIFY(!progress.progress(5));
    FileProgress alone(nullptr, 200);
    QVERIFY(alone.progress(5) && alone.finish());
}

QTEST_GUILESS_MAIN(tst_CFileExporter)
#include "tst_CFileExporter.moc"
