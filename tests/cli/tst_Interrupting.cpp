#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/CallSample.h"
#include "sample/ContactSample.h"
#include "sample/Database.h"
#include "sample/MessageSample.h"
#include "sample/NoteSample.h"
#include "sample/PlannerSample.h"
#include "sample/SafariSample.h"
#include "sample/WhatsappSample.h"
#include "support/Files.h"

#include <QElapsedTimer>
#include <QJsonArray>
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
    void stopsInAnyOutput_data();
    void stopsInAnyOutput();
    void endsAnEndlessQuery_data();
    void endsAnEndlessQuery();
    void drawsABarThatFits_data();
    void drawsABarThatFits();
    void logsPlainLinesElsewhere();

private:
    static bool writeLongTexts(const QString &backup);
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

bool tst_Interrupting::writeLongTexts(const QString &backup)
{
    Sample::BackupWriter writer(backup);
    Sample::Options options;
    options.contacts = options.messages = options.whatsappMessages = 3000;
    options.notes = options.events = options.reminders = 3000;
    options.calls = options.history = 20000;
    Sample::addContacts(writer, options);
    Sample::addMessages(writer, options);
    Sample::addWhatsapp(writer, options);
    Sample::addNotes(writer, options);
    Sample::addPlanner(writer, options);
    Sample::addCalls(writer, options);
    Sample::addBrowserData(writer, options);
    return writer.finish();
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
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("files"); // so many in the folder: the output is written
    const auto row = [](const char *name, const QString &type, const QString &folder, int files) {
        QTest::newRow(name) << type << folder << files;
    };
    row("contacts, page", u"contacts"_s, u"Contacts/HTML"_s, 1);
    row("contacts, CSV", u"contacts"_s, u"Contacts/CSV"_s, 1);
    row("contacts, vCards", u"contacts"_s, u"Contacts/VCF"_s, 1);
    row("messages, page", u"messages"_s, u"Messages"_s, 1);
    row("messages, CSV", u"messages"_s, u"Messages"_s, 2);
    row("WhatsApp, page", u"whatsapp"_s, u"WhatsApp"_s, 1);
    row("WhatsApp, CSV", u"whatsapp"_s, u"WhatsApp"_s, 2);
    row("notes", u"notes"_s, u"Notes"_s, 1);
    row("calendar", u"calendar"_s, u"Calendar"_s, 1);
    row("reminders", u"reminders"_s, u"Reminders"_s, 1);
    row("calls", u"calls"_s, u"Call History"_s, 1);
    row("Safari", u"safari"_s, u"Safari"_s, 1);
}

// Wherever the signal comes, what is called complete is complete.
void tst_Interrupting::stopsInAnyOutput()
{
    QFETCH(QString, type);
    QFETCH(QString, folder);
    QFETCH(int, files);
    const QString backup = m_dir.filePath(u"texts"_s);
    if (!QFileInfo::exists(backup))
        QVERIFY(writeLongTexts(backup));
    const Result result =
        runOnFailingMedia({ u"--json"_s, u"--only"_s, type, backup, output() },
                          { { u"DATAEXPORT_TEST_INTERRUPT"_s, output() + u'/' + folder },
                            { u"DATAEXPORT_TEST_INTERRUPT_FILE"_s, QString::number(files) } });

    const QJsonObject told = result.json().value(u"types"_s)[0].toObject();
    const int items = told.value(u"items"_s).toInt();
    const QStringList found = Files::tree(output() + u'/' + folder.section(u'/', 0, 0));
    bool isComplete = true;
    bool hasPage = false;
    for (const QJsonValue &value : told.value(u"outputs"_s).toArray()) {
        const QString name = value[u"output"_s].toString();
        const QString suffix = name == "page"_L1 ? u".html"_s
            : name == "csv"_L1                   ? u".csv"_s
                                                 : u".vcf"_s;
        const bool isWhole = value[u"state"_s].toString() == "complete"_L1;
        const qsizetype count = found.filter(suffix).size();
        QVERIFY2(isWhole == (count == (name == "vcards"_L1 ? items : 1)), qPrintable(name));
        QVERIFY2(isWhole || count == 0 || name == "vcards"_L1, qPrintable(name));
        isComplete &= isWhole;
        hasPage |= isWhole && name == "page"_L1;
    }
    QCOMPARE(found.filter(u".part"_s), QStringList());
    QCOMPARE(result.exitCode, isComplete ? 0 : 130);
    QCOMPARE(told.value(u"state"_s).toString(), isComplete ? u"complete"_s : u"stopped"_s);
    QCOMPARE(told.value(u"exported"_s).toInt(), hasPage ? items : 0);
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

void tst_Interrupting::logsPlainLinesElsewhere()
{
    QProcess process;
    prepare(process, { u"--no-space-check"_s, m_backup, output() });
    process.start();
    QVERIFY(waitForHugeCopy());
    QVERIFY(sendSignal(process, SIGINT));
    const Result result = finish(process);
    QVERIFY(!hasControlBytes(result.err));
    QVERIFY2(result.err.contains("Photos: 3 items, 55.1 KB\nPhotos: 3 exported\nVideos: 2 items, "),
             result.err.constData());
    QVERIFY2(result.out.contains("stopped"), result.out.constData());
}

QTEST_GUILESS_MAIN(tst_Interrupting)
#include "tst_Interrupting.moc"
