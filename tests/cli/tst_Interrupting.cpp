#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/ContactSample.h"
#include "support/Files.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace CliTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPatienceMs = 60000;
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
    void stopsInAnyOutput_data();
    void stopsInAnyOutput();
    void drawsABarThatFits_data();
    void drawsABarThatFits();
    void logsPlainLinesElsewhere();

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
    ::kill(static_cast<pid_t>(process.processId()), number);
    const Result result = finish(process);

    QCOMPARE(result.exitCode, 130);
    QVERIFY2(result.err.contains("Complete:   Photos (3)"), result.err.constData());
    QVERIFY2(result.err.contains("Stopped in: Videos after 1 of 2 items"), result.err.constData());
    QVERIFY2(result.err.contains("Not begun:  Voice Memos, Books, App Documents"),
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

void tst_Interrupting::stopsInAnyOutput_data()
{
    QTest::addColumn<QString>("folder"); // its first file comes into being: the output is written
    QTest::newRow("page") << u"Contacts/HTML"_s;
    QTest::newRow("CSV") << u"Contacts/CSV"_s;
    QTest::newRow("vCards") << u"Contacts/VCF"_s;
}

// Wherever the signal comes, what is called complete is complete.
void tst_Interrupting::stopsInAnyOutput()
{
    QFETCH(QString, folder);
    constexpr int kContacts = 3000;
    const QString backup = m_dir.filePath(u"contacts"_s);
    if (!QFileInfo::exists(backup)) {
        Sample::BackupWriter writer(backup);
        Sample::Options options;
        options.contacts = kContacts;
        Sample::addContacts(writer, options);
        QVERIFY(writer.finish());
    }
    QProcess process;
    prepare(process, { u"--json"_s, u"--only=contacts"_s, backup, output() });
    process.start();
    QVERIFY(QTest::qWaitFor(
        [&] { return !QDir(output() + u'/' + folder).isEmpty(QDir::Files | QDir::Hidden); },
        kPatienceMs));
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    const Result result = finish(process);

    const QJsonObject type = result.json().value(u"types"_s)[0].toObject();
    const bool isComplete = type.value(u"state"_s).toString() == u"complete"_s;
    QCOMPARE(result.exitCode, isComplete ? 0 : 130);
    const QJsonArray outputs = type.value(u"outputs"_s).toArray();
    QCOMPARE(outputs.size(), 3);
    const auto isWritten = [&](int index) {
        return outputs.at(index)[u"state"_s].toString() == u"complete"_s;
    };
    QCOMPARE(isWritten(0) && isWritten(1) && isWritten(2), isComplete);
    const auto count = [this](const QString &files) {
        return int(QDir(output() + u"/Contacts/"_s + files).entryList(QDir::Files).size());
    };
    QCOMPARE(count(u"HTML"_s), isWritten(0) ? 1 : 0);
    QCOMPARE(count(u"CSV"_s), isWritten(1) ? 1 : 0);
    QCOMPARE(count(u"VCF"_s) == type.value(u"items"_s).toInt(), isWritten(2));
    QCOMPARE(type.value(u"exported"_s).toInt(), isWritten(0) ? type.value(u"items"_s).toInt() : 0);
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
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
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

void tst_Interrupting::logsPlainLinesElsewhere()
{
    QProcess process;
    prepare(process, { u"--no-space-check"_s, m_backup, output() });
    process.start();
    QVERIFY(waitForHugeCopy());
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    const Result result = finish(process);
    QVERIFY(!hasControlBytes(result.err));
    QVERIFY2(result.err.contains("Photos: 3 items, 55.1 KB\nPhotos: 3 exported\nVideos: 2 items, "),
             result.err.constData());
    QVERIFY2(result.out.contains("stopped"), result.out.constData());
}

QTEST_GUILESS_MAIN(tst_Interrupting)
#include "tst_Interrupting.moc"
