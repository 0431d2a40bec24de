#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/Database.h"
#include "support/Files.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace CliTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPatienceMs = 60000;
constexpr int kPromptMs = 20000;
constexpr qint64 kHugeBytes = qint64(6) << 30;
const QString kCamera = u"CameraRollDomain"_s;

//! The two ends of a terminal that is not there.
class PseudoTerminal
{
public:
    explicit PseudoTerminal(unsigned short columns)
        : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        ::grantpt(m_master);
        ::unlockpt(m_master);
        m_slave = ::open(::ptsname(m_master), O_RDWR | O_NOCTTY);
        const winsize size { 25, columns, 0, 0 };
        ::ioctl(m_slave, TIOCSWINSZ, &size);
    }
    ~PseudoTerminal()
    {
        ::close(m_slave);
        ::close(m_master);
    }
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    int slave() const { return m_slave; }

    QByteArray shown()
    {
        char chunk[4096];
        for (ssize_t n = ::read(m_master, chunk, sizeof chunk); n > 0;
             n = ::read(m_master, chunk, sizeof chunk))
            m_shown.append(chunk, n);
        return m_shown;
    }

private:
    int m_master;
    int m_slave = -1;
    QByteArray m_shown;
};

// The database \a image, whose last page is the root of a table with its one row, with levels of
// pages between the two that lead down in more ways than can ever be walked.
QByteArray withManyWays(QByteArray image)
{
    constexpr qsizetype kPage = 4096;
    constexpr int kLevels = 16;
    constexpr quint16 kWays = 400;
    constexpr quint16 kHeader = 12;
    constexpr quint16 kCell = 5;
    const auto root = quint32(image.size() / kPage);
    const QByteArray leaf = image.last(kPage);
    for (quint32 level = 0; level < kLevels; ++level) {
        const quint32 below = qToBigEndian(root + level + 1);
        const auto *child = reinterpret_cast<const char *>(&below);
        QByteArray page(kPage, '\0');
        char *const at = page.data();
        constexpr quint16 kFirst = kPage - kWays * kCell;
        at[0] = 5; // an inner page of a table
        qToBigEndian(kWays, at + 3);
        qToBigEndian(kFirst, at + 5);
        std::copy_n(child, 4, at + 8);
        for (quint16 way = 0; way < kWays; ++way) {
            const auto cell = quint16(kFirst + way * kCell);
            qToBigEndian(cell, at + kHeader + 2 * way);
            std::copy_n(child, 4, at + cell);
            at[cell + 4] = 1; // the row's number
        }
        image.replace(image.size() - kPage, kPage, page);
        image += leaf;
    }
    qToBigEndian(quint32(image.size() / kPage), image.data() + 28);
    return image;
}

} // namespace

//! Stopping in the middle, and what is seen meanwhile.
class tst_Interrupting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void stopsWithinAFile_data();
    void stopsWithinAFile();
    void endsAnEndlessQuery_data();
    void endsAnEndlessQuery();
    void drawsABarThatFits_data();
    void drawsABarThatFits();

private:
    bool waitForHugeCopy() const;
    QString output() const { return m_out->filePath(u"out"_s); }

    QTemporaryDir m_dir;
    std::unique_ptr<QTemporaryDir> m_out;
    ExpectedFiles m_usual;
    QString m_backup;
};

void tst_Interrupting::initTestCase()
{
    m_backup = m_dir.filePath(u"backup"_s);
    Sample::BackupWriter writer(m_backup);
    m_usual = addUsualFiles(writer);
    // A hole is read fast and takes no room, and its copy keeps the program busy for seconds.
    const QString path = u"Media/DCIM/100APPLE/IMG_0009.MOV"_s;
    QVERIFY(Files::write(writer.contentPath(kCamera, path), {}));
    QVERIFY(QFile::resize(writer.contentPath(kCamera, path), kHugeBytes));
    writer.addWritten(kCamera, path);
    QVERIFY(writer.finish());
}

void tst_Interrupting::init()
{
    m_out = std::make_unique<QTemporaryDir>();
}

bool tst_Interrupting::waitForHugeCopy() const
{
    return QTest::qWaitFor(
        [this] {
            // It has a temporary name until it is whole.
            const QDir folder(output() + u"/Videos/100APPLE"_s);
            const auto largest = folder.entryInfoList(QDir::Files | QDir::Hidden, QDir::Size);
            return !largest.isEmpty() && largest.first().size() > 1 << 20;
        },
        kPatienceMs);
}

void tst_Interrupting::stopsWithinAFile_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("asked to end") << SIGTERM;
    QTest::newRow("terminal closed") << SIGHUP;
}

void tst_Interrupting::stopsWithinAFile()
{
    QFETCH(int, number);
    QProcess process;
    prepare(process, { u"--json"_s, u"--no-space-check"_s, m_backup, output() });
    process.start();
    QVERIFY(waitForHugeCopy());
    QVERIFY(sendSignal(process, number));
    const Result result = finish(process);

    QCOMPARE(result.exitCode, 130);
    // For a log, not one line of progress.
    QVERIFY2(
        result.err.startsWith("Backup: Sample Phone (iPhone 11, version 14.3), 2024-06-01 07:45\n"
                              "Stopped.\n  Complete:    Photos (3)\n"),
        result.err.constData());
    QVERIFY2(result.err.contains("Stopped in:  Videos after 1 of 2 items"), result.err.constData());
    QVERIFY2(result.err.contains("Not started: Voice Memos, Books, App Documents"),
             result.err.constData());
    QCOMPARE(result.json().value(u"status"_s).toString(), u"cancelled"_s);
    QCOMPARE(result.json().value(u"exported"_s).toInt(), 4);

    ExpectedFiles expected = m_usual;
    for (const QString &path : m_usual.keys()) {
        if (!path.startsWith(u"Photos/"_s) && !path.startsWith(u"Videos/"_s))
            expected.remove(path);
    }
    QCOMPARE(difference(filesBelow(output()), expected), QString());
}

void tst_Interrupting::endsAnEndlessQuery_data()
{
    stopsWithinAFile_data();
}

// The pages of a table lead to each other, and its one row never answers the query.
void tst_Interrupting::endsAnEndlessQuery()
{
    QFETCH(int, number);
    const QTemporaryDir dir;
    Sample::Database photos({},
                            "CREATE TABLE ZASSET (Z_PK INTEGER PRIMARY KEY, ZDIRECTORY, ZFILENAME, "
                            "ZKIND INTEGER, ZTRASHEDSTATE INTEGER);"
                            "INSERT INTO ZASSET VALUES (1, 'DCIM/100APPLE', 'IMG_1.JPG', 0, 0)");
    Sample::BackupWriter writer(dir.filePath(u"backup"_s));
    const QString path = u"Media/PhotoData/Photos.sqlite"_s;
    QVERIFY(Files::write(writer.contentPath(kCamera, path), withManyWays(photos.image())));
    QVERIFY(QFile::resize(writer.contentPath(kCamera, path), kHugeBytes)); // its share of steps
    writer.addWritten(kCamera, path);
    QVERIFY(writer.finish());
    QProcess process;
    prepare(process, { u"--no-space-check"_s, dir.filePath(u"backup"_s), output() });
    process.start();
    const QString times = u"/proc/%1/stat"_s.arg(process.processId());
    const auto isBusy = [&] {
        constexpr int kUserTime = 13; // all else takes far less than these ticks
        return Files::read(times).split(' ').value(kUserTime).toLongLong() > ::sysconf(_SC_CLK_TCK);
    };
    QVERIFY(QTest::qWaitFor(isBusy, kPatienceMs));
    QCOMPARE(process.state(), QProcess::Running);
    QVERIFY(sendSignal(process, number));
    QElapsedTimer clock;
    clock.start();
    const Result result = finish(process);
    QVERIFY(clock.elapsed() < kPromptMs);
    QCOMPARE(result.exitCode, 130);
    QVERIFY2(result.err.contains("Stopped before anything was written."), result.err.constData());
    QCOMPARE(Files::tree(output()), QStringList());
}

void tst_Interrupting::drawsABarThatFits_data()
{
    QTest::addColumn<int>("columns");
    QTest::newRow("wide") << 120;
    QTest::newRow("usual") << 80;
    QTest::newRow("narrow") << 40;
    QTest::newRow("a sliver") << 16;
}

void tst_Interrupting::drawsABarThatFits()
{
    QFETCH(int, columns);
    PseudoTerminal terminal(static_cast<unsigned short>(columns));
    QProcess process;
    prepare(process,
            { u"--no-space-check"_s, u"--only=videos"_s, m_backup, output() },
            [&terminal] { ::dup2(terminal.slave(), STDERR_FILENO); });
    process.start();
    QVERIFY(waitForHugeCopy());
    // A quick machine has the first part of the bar filled before the time left is known, a slow
    // one afterwards.
    const bool isWide = columns >= 80;
    const bool seen = QTest::qWaitFor(
        [&] {
            const QByteArray shown = terminal.shown();
            return isWide ? shown.contains(" left\r") && shown.contains("[#")
                          : shown.count('%') > 18;
        },
        kPatienceMs);
    QVERIFY(sendSignal(process, SIGINT));
    QElapsedTimer clock;
    clock.start();
    while (process.state() != QProcess::NotRunning && clock.elapsed() < kPatienceMs) {
        process.waitForFinished(20);
        static_cast<void>(terminal.shown()); // a terminal that nobody reads holds its writers up
    }
    QVERIFY(seen);
    QCOMPARE(process.exitCode(), 130);

    const QByteArray shown = terminal.shown();
    const QList<QByteArray> frames = shown.split('\r');
    int bars = 0;
    for (const QByteArray &frame : frames) {
        if (!frame.startsWith("\033[K") || !frame.contains('%'))
            continue;
        ++bars;
        const QString text = QString::fromUtf8(frame.mid(3));
        QVERIFY2(text.size() < columns, frame.constData());
        QVERIFY2(text.startsWith(u"Videos"_s), frame.constData());
    }
    QVERIFY(bars > 1);
    if (isWide)
        QVERIFY2(shown.contains("B/s  0:"), shown.right(400).constData());
    // After the last frame comes an erased line, and then only whole lines.
    const QByteArray end = shown.mid(shown.lastIndexOf("\r\033[K") + 4);
    QVERIFY2(end.startsWith("Stopped.\r\n"), end.constData());
    QVERIFY(end.endsWith('\n') && !end.contains('\033'));
}

QTEST_GUILESS_MAIN(tst_Interrupting)
#include "tst_Interrupting.moc"
