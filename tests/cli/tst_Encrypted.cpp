#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/Encryption.h"
#include "sample/SampleBackup.h"
#include "support/Files.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace CliTest;
using namespace Qt::StringLiterals;
using Sample::Encryption;

namespace {

constexpr int kPatienceMs = 60000;
const QString kPassword = u"correct hörse"_s;

Encryption::Settings quick()
{
    Encryption::Settings settings;
    settings.password = kPassword;
    settings.iterations = 1000;
    return settings;
}

//! The program at a terminal of its own, as a person meets it.
class Terminal
{
public:
    explicit Terminal(const QStringList &arguments)
    {
        QList<QByteArray> words { QByteArrayLiteral(DATAEXPORT_PROGRAM),
                                  "--formats",
                                  "page,csv,vcard" };
        for (const QString &argument : arguments)
            words += QFile::encodeName(argument);
        QList<char *> argv;
        for (QByteArray &word : words)
            argv += word.data();
        argv += nullptr;
        m_pid = ::forkpty(&m_master, nullptr, nullptr, nullptr);
        if (m_pid == 0) {
            ::setenv("TERM", "xterm", 1);
            ::setenv("LC_ALL", "C.UTF-8", 1);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
    }
    ~Terminal()
    {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
        ::close(m_master);
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    //! Waits until \a text is shown for the \a count-th time.
    bool waitFor(const QByteArray &text, int count = 1)
    {
        QElapsedTimer patience;
        patience.start();
        while (m_shown.count(text) < count && !patience.hasExpired(kPatienceMs) && read()) { }
        return m_shown.count(text) >= count;
    }

    void type(const QByteArray &text)
    {
        QCOMPARE(::write(m_master, text.constData(), static_cast<std::size_t>(text.size())),
                 static_cast<ssize_t>(text.size()));
    }

    //! The code that it ended with.
    int end()
    {
        while (read()) { }
        int status = 0;
        ::waitpid(m_pid, &status, 0);
        m_pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    QByteArray shown() const { return m_shown; }

private:
    bool read()
    {
        pollfd input { m_master, POLLIN, 0 };
        if (::poll(&input, 1, kPatienceMs) <= 0)
            return false;
        char chunk[4096];
        const ssize_t count = ::read(m_master, chunk, sizeof chunk);
        if (count > 0)
            m_shown.append(chunk, count);
        return count > 0;
    }

    int m_master = -1;
    pid_t m_pid = -1;
    QByteArray m_shown;
};

} // namespace

//! Encrypted backups from outside.
class tst_Encrypted : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void takesThePassword_data();
    void takesThePassword();
    void refusesWithoutTheRightPassword_data();
    void refusesWithoutTheRightPassword();
    void asksAtATerminal();
    void asksThreeTimes();
    void stopsAsking_data();
    void stopsAsking();
    void reportsWhatIsLocked();
    void exportsWhatAPlainOneGives_data();
    void exportsWhatAPlainOneGives();
    void leavesNothingBehind_data();
    void leavesNothingBehind();

private:
    QString inDir(const QString &name) const { return m_dir.filePath(name); }
    QString output() const { return m_work->filePath(u"out"_s); }
    QStringList temporary() const { return Files::tree(m_work->filePath(u"tmp"_s)); }

    QTemporaryDir m_dir;
    std::unique_ptr<QTemporaryDir> m_work;
    ExpectedFiles m_usual;
};

void tst_Encrypted::initTestCase()
{
    Sample::BackupWriter writer(inDir(u"backup"_s));
    writer.setEncryption(quick());
    m_usual = addUsualFiles(writer);
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
    Encryption::Settings slow = quick();
    slow.iterations = 1;
    Sample::BackupWriter slowWriter(inDir(u"slow"_s));
    slowWriter.setEncryption(slow);
    QByteArray bag = Encryption(slow).keybag();
    bag.replace(bag.indexOf("DPIC") + 8, 4, QByteArray::fromHex("05f5e100")); // 100 million
    slowWriter.setManifest(u"BackupKeyBag"_s, bag);
    addUsualFiles(slowWriter);
    QVERIFY2(slowWriter.finish(), qPrintable(slowWriter.error()));

    QVERIFY(Files::write(inDir(u"password"_s), kPassword.toUtf8() + '\n'));
    QVERIFY(Files::write(inDir(u"of Windows"_s),
                         "\xEF\xBB\xBF" + kPassword.toUtf8() + "\r\nsecond line\r\n"));
    QVERIFY(Files::write(inDir(u"bare"_s), kPassword.toUtf8()));
    QVERIFY(Files::write(inDir(u"wrong"_s), "wrong\n"));
    QVERIFY(Files::write(inDir(u"empty"_s), "\n"));
}

void tst_Encrypted::init()
{
    m_work = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_work->path()).mkdir(u"tmp"_s));
    qputenv("TMPDIR", QFile::encodeName(m_work->filePath(u"tmp"_s)));
    qunsetenv("DATAEXPORT_PASSWORD");
}

void tst_Encrypted::cleanup()
{
    qunsetenv("TMPDIR");
    qunsetenv("DATAEXPORT_PASSWORD");
}

void tst_Encrypted::takesThePassword_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("variable");
    QTest::newRow("file") << u"password"_s << QByteArray();
    QTest::newRow("file of another system") << u"of Windows"_s << QByteArray();
    QTest::newRow("file without a line end") << u"bare"_s << QByteArray();
    QTest::newRow("standard input") << u"-"_s << QByteArray();
    QTest::newRow("environment") << QString() << kPassword.toUtf8();
    QTest::newRow("file before environment") << u"password"_s << QByteArray("wrong");
}

void tst_Encrypted::takesThePassword()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, variable);
    if (!variable.isEmpty())
        qputenv("DATAEXPORT_PASSWORD", variable);
    QStringList arguments { inDir(u"backup"_s) };
    const QString path = file == u"-"_s ? file : inDir(file);
    if (!file.isEmpty())
        arguments = QStringList { u"--password-file"_s, path } + arguments;
    const QByteArray input = QFile::encodeName(inDir(u"password"_s));
    const ChildSetup setup = [&] { ::dup2(::open(input.constData(), O_RDONLY), STDIN_FILENO); };

    const Result result = run(arguments + QStringList { output() }, setup);
    QCOMPARE(result.exitCode, 0);
    QStringList paths = Files::tree(output());
    paths += QString();
    for (const QString &written : std::as_const(paths)) {
        const auto others = QFile::ReadGroup | QFile::ReadOther;
        QVERIFY2(!QFileInfo(output() + u'/' + written).permissions().testAnyFlags(others),
                 qPrintable(written));
    }
    QVERIFY(result.err.contains("Deriving the keys"));
    QCOMPARE(difference(filesBelow(output()), m_usual), QString());
    QCOMPARE(temporary(), QStringList());

    const Result list = run(QStringList { u"--list"_s, u"--json"_s } + arguments, setup);
    QCOMPARE(list.exitCode, 0);
    QCOMPARE(list.json().value(u"backup"_s)[u"encrypted"_s].toBool(), true);
    QCOMPARE(list.json().value(u"items"_s).toInt(), int(m_usual.size()));
    qint64 bytes = 0;
    for (const ExpectedFile &expected : std::as_const(m_usual))
        bytes += expected.content.size();
    QCOMPARE(list.json().value(u"bytes"_s).toInteger(), bytes);
}

void tst_Encrypted::refusesWithoutTheRightPassword_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("words");
    const auto file = [this](const QString &name) {
        return QStringList { u"--password-file"_s, inDir(name) };
    };
    QTest::newRow("none") << QStringList() << QByteArray() << QByteArray("--password-file");
    QTest::newRow("empty variable")
        << QStringList() << QByteArray("") << QByteArray("--password-file");
    QTest::newRow("wrong in a file")
        << file(u"wrong"_s) << QByteArray() << QByteArray("Wrong password.");
    QTest::newRow("wrong in the environment")
        << QStringList() << QByteArray("wrong") << QByteArray("Wrong password.");
    QTest::newRow("empty file") << file(u"empty"_s) << kPassword.toUtf8()
                                << QByteArray("no password in its first line");
    QTest::newRow("no file") << file(u"nowhere"_s) << kPassword.toUtf8()
                             << QByteArray("could not be read");
}

void tst_Encrypted::refusesWithoutTheRightPassword()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, words);
    if (!variable.isNull())
        qputenv("DATAEXPORT_PASSWORD", variable);
    const Result result = run(options + QStringList { u"--json"_s, inDir(u"backup"_s), output() });
    QCOMPARE(result.exitCode, 11);
    QVERIFY2(result.err.contains(words), result.err.constData());
    QCOMPARE(result.json().value(u"status"_s).toString(), u"password"_s);
    QVERIFY(!QFileInfo::exists(output()));
    QCOMPARE(temporary(), QStringList());
}

void tst_Encrypted::asksAtATerminal()
{
    Terminal terminal({ inDir(u"backup"_s), output() });
    QVERIFY(terminal.waitFor("Password for the backup “Sample Phone”: "));
    terminal.type("wrong\n");
    QVERIFY(terminal.waitFor("Password for the backup", 2));
    terminal.type("\n"); // nothing typed is no password
    QVERIFY(terminal.waitFor("Password for the backup", 3));
    terminal.type(kPassword.toUtf8() + '\n');
    QCOMPARE(terminal.end(), 0);
    QVERIFY(!terminal.shown().contains("hörse"));
    QVERIFY(terminal.shown().contains("Wrong password."));
    QCOMPARE(difference(filesBelow(output()), m_usual), QString());
}

void tst_Encrypted::asksThreeTimes()
{
    Terminal terminal({ inDir(u"backup"_s), output() });
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(terminal.waitFor("Password for the backup", i));
        terminal.type("wrong\n");
    }
    QCOMPARE(terminal.end(), 11);
    QCOMPARE(terminal.shown().count("Password for the backup"), 3);
    QCOMPARE(terminal.shown().count("Wrong password."), 3);
    QVERIFY(!terminal.shown().contains("wrong\r\n"));
    QVERIFY(!QFileInfo::exists(output()));
}

void tst_Encrypted::stopsAsking_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("Ctrl-C") << QByteArray("\x03") << 130;
    QTest::newRow("Ctrl-C after some letters") << QByteArray("abc\x03") << 130;
    QTest::newRow("end of input") << QByteArray("\x04") << 11;
}

void tst_Encrypted::stopsAsking()
{
    QFETCH(QByteArray, typed);
    QFETCH(int, exitCode);
    Terminal terminal({ inDir(u"backup"_s), output() });
    QVERIFY(terminal.waitFor("Password for the backup"));
    terminal.type(typed);
    QCOMPARE(terminal.end(), exitCode);
    QVERIFY(!QFileInfo::exists(output()));
}

void tst_Encrypted::reportsWhatIsLocked()
{
    Encryption::Settings settings = quick();
    settings.classes = { 3, 4 };
    const QString backup = m_work->filePath(u"locked"_s);
    Sample::BackupWriter writer(backup);
    writer.setEncryption(settings);
    ExpectedFiles expected = addUsualFiles(writer);
    const QString camera = u"CameraRollDomain"_s;
    Sample::FileTraits traits;
    traits.modified = QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
    const QString cut = u"Media/DCIM/100APPLE/CUT.JPG"_s;
    writer.addFile(camera, cut, noise(9, 1000), traits);
    traits.protectionClass = 1;
    writer.addFile(camera, u"Media/DCIM/100APPLE/LOCKED.JPG"_s, "locked", traits);
    QVERIFY(writer.finish());
    const QString id = Sample::BackupWriter::fileId(camera, cut);
    QVERIFY(QFile::resize(backup + u'/' + id.left(2) + u'/' + id, 500));
    expected.insert(u"Photos/100APPLE/CUT.JPG"_s, { noise(9, 496), traits.modified });

    const Result result = run({ u"--password-file"_s, inDir(u"password"_s), backup, output() });
    QCOMPARE(result.exitCode, 3);
    ExpectedFiles found = filesBelow(output());
    const QByteArray report = found.take(u"export-report.csv"_s).content;
    QVERIFY2(report.contains("LOCKED.JPG") && report.contains("protection class 1"),
             report.constData());
    QVERIFY2(report.contains("CUT.JPG") && report.contains("cut off"), report.constData());
    QCOMPARE(difference(found, expected), QString());
    QCOMPARE(temporary(), QStringList());
}

void tst_Encrypted::exportsWhatAPlainOneGives_data()
{
    QTest::addColumn<bool>("oldStyle");
    QTest::newRow("new") << false;
    QTest::newRow("old style") << true;
}

void tst_Encrypted::exportsWhatAPlainOneGives()
{
    QFETCH(bool, oldStyle);
    Sample::Options options;
    options.oldStyle = oldStyle;
    options.messagesRelease = oldStyle ? 9 : options.messagesRelease;
    QMap<QString, QByteArray> exported[2];
    QByteArray said[2];
    for (const int encrypted : { 0, 1 }) {
        const QString backup = m_work->filePath(u"sample%1"_s.arg(encrypted));
        const QString out = m_work->filePath(u"out%1"_s.arg(encrypted));
        Sample::BackupWriter writer(backup,
                                    oldStyle ? Sample::BackupWriter::Layout::Records
                                             : Sample::BackupWriter::Layout::TwoLevel);
        if (encrypted == 1)
            writer.setEncryption(quick());
        Sample::addSampleContents(writer, options);
        QVERIFY2(writer.finish(), qPrintable(writer.error()));
        const Result result = run({ u"--password-file"_s, inDir(u"password"_s), backup, out });
        QCOMPARE(result.exitCode, 3); // pictures are missing in the sample
        said[encrypted] = result.out;
        const ExpectedFiles files = filesBelow(out);
        for (auto it = files.begin(); it != files.end(); ++it)
            exported[encrypted].insert(it.key(), it->content);
    }
    QVERIFY(exported[0].size() > 80);
    QCOMPARE(exported[1].keys(), exported[0].keys());
    for (auto it = exported[0].cbegin(); it != exported[0].cend(); ++it)
        QVERIFY2(exported[1].value(it.key()) == it.value(), qPrintable(it.key()));
    QCOMPARE(said[1].replace("/out1", "/out0"), said[0]);
    QCOMPARE(temporary(), QStringList());
}

void tst_Encrypted::leavesNothingBehind_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("Ctrl-C while keys are made") << SIGINT << 130;
    QTest::newRow("terminated while keys are made") << SIGTERM << 130;
}

void tst_Encrypted::leavesNothingBehind()
{
    QFETCH(int, signal);
    QFETCH(int, exitCode);
    QProcess process;
    prepare(process, { u"--password-file"_s, inDir(u"password"_s), inDir(u"slow"_s), output() });
    process.setReadChannel(QProcess::StandardError);
    process.start();
    QByteArray said;
    while (!said.contains("Deriving the keys") && process.waitForReadyRead(kPatienceMs))
        said += process.readAllStandardError();
    QVERIFY(said.contains("Deriving the keys"));
    QVERIFY(sendSignal(process, signal));
    QCOMPARE(finish(process).exitCode, exitCode);
    QCOMPARE(temporary(), QStringList());
    QVERIFY(!QFileInfo::exists(output()));
}

QTEST_GUILESS_MAIN(tst_Encrypted)
#include "tst_Encrypted.moc"
