#include "Export/Observer.h"
#include "Export/Request.h"
#include "Export/Run.h"
#include "backup/BkDataType.h"
#include "cli/UsualBackup.h"
#include "sample/CallSample.h"
#include "sample/ContactSample.h"
#include "sample/Encryption.h"
#include "sample/MessageSample.h"
#include "sample/NoteSample.h"
#include "sample/PlannerSample.h"
#include "sample/SafariSample.h"
#include "sample/WhatsappSample.h"
#include "support/Files.h"
#include "support/FullDevice.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

using namespace CliTest;
using namespace Qt::StringLiterals;
using Export::Failure;
using Export::Outcome;
using Export::Status;
using End = CIExportReport::End;

namespace {

const QString kPassword = u"correct hörse"_s;

//! Keeps what it is told, stops at one of the events, and has passwords to answer with.
class RecordingObserver final : public Export::Observer
{
public:
    bool goesOn() const { return stopAt.isEmpty() || !events.contains(stopAt); }
    Export::KeepGoing keepGoing() const
    {
        return [this] { return goesOn(); };
    }

    std::variant<Export::Secret, Failure> password(const Export::BackupInfo &info,
                                                   const Failure *wrong) override
    {
        events += wrong ? u"wrong password"_s : u"password"_s;
        if (whenAsked)
            whenAsked();
        if (passwords.isEmpty())
            return Observer::password(info, wrong);
        return Export::Secret(passwords.takeFirst().toUtf8());
    }
    void readingIndex() override { events += u"index"_s; }
    void opened(const Export::BackupInfo &info) override { events += info.displayName; }
    void readingType(const QString &typeName) override { events += u"reads "_s + typeName; }
    void inventoryRead(const Export::Inventory &inventory) override
    {
        events += u"%1 items"_s.arg(inventory.total().items);
    }
    void problemsFound(const QList<Export::Problem> &problems) override
    {
        for (const Export::Problem &problem : problems)
            events += problem.sentence();
    }
    void typeStarts(const Export::TypeTotals &type) override { events += type.name + u" starts"_s; }
    void typeEnds(const Export::TypeOutcome &type) override
    {
        events += u"%1 ends, %2"_s.arg(type.totals.name).arg(type.exported);
    }
    void allTypesEnded() override { events += u"end"_s; }

    QStringList events;
    QString stopAt;
    QStringList passwords;
    std::function<void()> whenAsked;
};

const Export::TypeOutcome &typeOf(const Outcome &outcome, int code)
{
    return *std::find_if(outcome.types.begin(), outcome.types.end(), [code](const auto &type) {
        return type.totals.code == code;
    });
}

} // namespace

//! A run as a front end other than the program sees it: all that it learns is values.
class tst_Run : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void tellsWhatItDoes();
    void looksWithoutWriting();
    void startsNothing_data();
    void startsNothing();
    void stopsAtAnyPoint_data();
    void stopsAtAnyPoint();
    void stopsInAnyOutput_data();
    void stopsInAnyOutput();
    void tellsWhyTheOutputRefused_data();
    void tellsWhyTheOutputRefused();
    void asksUntilThePasswordIsRight_data();
    void asksUntilThePasswordIsRight();
    void looksAtOutputAgain_data();
    void looksAtOutputAgain();
    void leavesNothingToTheNextRun();

private:
    QString inDir(const QString &name) const { return m_dir.filePath(name); }
    Export::Request request(const QString &backup = u"usual"_s) const;

    QTemporaryDir m_dir;
    std::unique_ptr<QTemporaryDir> m_out;
    ExpectedFiles m_usual;
};

Export::Request tst_Run::request(const QString &backup) const
{
    Export::Request request;
    request.backup = inDir(backup);
    request.output = m_out->filePath(u"out"_s);
    request.types = Export::Backup::dataTypes();
    request.formats.archive = false;
    request.formats.json = false;
    return request;
}

void tst_Run::initTestCase()
{
    m_usual = writeUsualBackup(inDir(u"usual"_s));
    QVERIFY(!m_usual.isEmpty());
    Sample::BackupWriter locked(inDir(u"locked"_s));
    Sample::Encryption::Settings settings;
    settings.password = kPassword;
    settings.iterations = 1000;
    locked.setEncryption(settings);
    addUsualFiles(locked);
    QVERIFY2(locked.finish(), qPrintable(locked.error()));
    for (const char *name : { "holder/one", "holder/two" })
        QVERIFY(!writeUsualBackup(inDir(QLatin1String(name))).isEmpty());

    Sample::BackupWriter texts(inDir(u"texts"_s));
    Sample::Options options;
    options.contacts = options.messages = options.whatsappMessages = 300;
    options.notes = options.events = options.reminders = 300;
    options.calls = options.history = 300;
    Sample::addContacts(texts, options);
    Sample::addMessages(texts, options);
    Sample::addWhatsapp(texts, options);
    Sample::addNotes(texts, options);
    Sample::addPlanner(texts, options);
    Sample::addCalls(texts, options);
    Sample::addBrowserData(texts, options);
    QVERIFY2(texts.finish(), qPrintable(texts.error()));
}

void tst_Run::init()
{
    m_out = std::make_unique<QTemporaryDir>();
}

void tst_Run::tellsWhatItDoes()
{
    RecordingObserver observer;
    Export::Request wanted = request();
    wanted.types = { BkDataType::Photos, BkDataType::Videos, BkDataType::Books };
    const Outcome outcome = Export::run(wanted, observer, observer.keepGoing());
    QCOMPARE(observer.events,
             QStringList({ u"index"_s,
                           u"Sample Phone"_s,
                           u"reads Photos"_s,
                           u"reads Videos"_s,
                           u"reads Books"_s,
                           u"5 items"_s,
                           u"Photos starts"_s,
                           u"Photos ends, 3"_s,
                           u"Videos starts"_s,
                           u"Videos ends, 1"_s,
                           u"Books starts"_s,
                           u"Books ends, 1"_s,
                           u"end"_s }));
    QCOMPARE(outcome.status, Status::Complete);
    QVERIFY(outcome.hasStarted && !outcome.failure);
    QCOMPARE(outcome.failureCount, 0);
    QCOMPARE(outcome.types.size(), 3);
    QCOMPARE(outcome.types.first().exported, 3);
    QCOMPARE(outcome.types.first().state, End::Complete);
    QCOMPARE(outcome.indexPath, wanted.output + u"/index.html"_s);
    QCOMPARE(outcome.reportPath, QString());
    ExpectedFiles expected = m_usual;
    expected.removeIf([](const auto &file) {
        return file.key().startsWith("Voice"_L1) || file.key().startsWith("App"_L1);
    });
    QCOMPARE(difference(filesBelow(wanted.output), expected), QString());
}

void tst_Run::looksWithoutWriting()
{
    RecordingObserver observer;
    const QStringList before = Files::tree(m_dir.path());
    const auto found = Export::look(request(), observer, observer.keepGoing());
    const auto *contents = std::get_if<Export::Contents>(&found);
    QVERIFY(contents);
    QCOMPARE(contents->status(), Status::Complete);
    QCOMPARE(contents->inventory.total().items, int(m_usual.size()));
    QCOMPARE(contents->backup.path, inDir(u"usual"_s));
    QCOMPARE(Files::tree(m_dir.path()), before);
    QCOMPARE(Files::tree(m_out->path()), QStringList());
}

void tst_Run::startsNothing_data()
{
    QTest::addColumn<QString>("backup");
    QTest::addColumn<QString>("output");
    QTest::addColumn<Failure::Cause>("cause");
    QTest::addColumn<Status>("status");
    QTest::addColumn<int>("several");
    using Cause = Failure::Cause;
    const QString out = u"out"_s;
    QTest::newRow("nothing there")
        << u"nowhere"_s << out << Cause::NoBackup << Status::NoBackup << 0;
    QTest::newRow("no backup") << u"usual/00"_s << out << Cause::NoBackup << Status::NoBackup << 0;
    QTest::newRow("two backups") << u"holder"_s << out << Cause::Unsuitable << Status::Usage << 2;
    QTest::newRow("nobody knows the password")
        << u"locked"_s << out << Cause::NoPassword << Status::Password << 0;
}

void tst_Run::startsNothing()
{
    QFETCH(QString, backup);
    QFETCH(QString, output);
    const QStringList before = Files::tree(m_dir.path());
    RecordingObserver observer;
    Export::Request wanted = request(backup);
    wanted.output = inDir(output);
    const Outcome outcome = Export::run(wanted, observer, observer.keepGoing());
    QVERIFY(!outcome.hasStarted && outcome.failure);
    QTEST(outcome.failure->cause, "cause");
    QTEST(outcome.status, "status");
    QTEST(int(outcome.several.size()), "several");
    QVERIFY(!observer.events.contains(u"end"_s));
    QCOMPARE(Files::tree(m_dir.path()), before);
}

void tst_Run::stopsAtAnyPoint_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QList<End>>("states"); // of photos, videos and books; empty: nothing began
    using States = QList<End>;
    QTest::newRow("open") << u"Sample Phone"_s << States {};
    QTest::newRow("reading") << u"reads Videos"_s << States {};
    QTest::newRow("a first type") << u"Photos starts"_s
                                  << States { End::Stopped, End::NotStarted, End::NotStarted };
    QTest::newRow("between two types")
        << u"Photos ends, 3"_s << States { End::Complete, End::Stopped, End::NotStarted };
    QTest::newRow("at the end") << u"end"_s
                                << States { End::Complete, End::Complete, End::Complete };
}

void tst_Run::stopsAtAnyPoint()
{
    QFETCH(QString, event);
    QFETCH(QList<End>, states);
    RecordingObserver observer;
    observer.stopAt = event;
    Export::Request wanted = request();
    wanted.types = { BkDataType::Photos, BkDataType::Videos, BkDataType::Books };
    const Outcome outcome = Export::run(wanted, observer, observer.keepGoing());

    const bool isComplete = !states.isEmpty() && states.last() == End::Complete;
    QCOMPARE(outcome.status, isComplete ? Status::Complete : Status::Cancelled);
    QCOMPARE(outcome.hasStarted, !states.isEmpty());
    QVERIFY(isComplete || outcome.failure->cause == Failure::Cause::Stopped);
    QList<End> found;
    int exported = 0;
    for (const Export::TypeOutcome &type : outcome.types) {
        found += type.state;
        exported += type.exported;
    }
    QCOMPARE(found, states);
    const ExpectedFiles files = filesBelow(wanted.output);
    QCOMPARE(files.size(), exported);
    for (auto it = files.begin(); it != files.end(); ++it)
        QVERIFY2(it->content == m_usual.value(it.key()).content, qPrintable(it.key()));
    QCOMPARE(QFileInfo::exists(wanted.output), !states.isEmpty());
}

void tst_Run::stopsInAnyOutput_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("files"); // so many in the folder: the output is written
    const auto row = [](const char *name, int type, const QString &folder, int files) {
        QTest::newRow(name) << type << folder << files;
    };
    row("contacts, page", BkDataType::Contacts, u"Contacts/HTML"_s, 1);
    row("contacts, CSV", BkDataType::Contacts, u"Contacts/CSV"_s, 1);
    row("contacts, vCards", BkDataType::Contacts, u"Contacts/VCF"_s, 1);
    row("messages, page", BkDataType::Messages, u"Messages"_s, 1);
    row("messages, CSV", BkDataType::Messages, u"Messages"_s, 2);
    row("WhatsApp, page", BkDataType::Whatsapp, u"WhatsApp"_s, 1);
    row("WhatsApp, CSV", BkDataType::Whatsapp, u"WhatsApp"_s, 2);
    row("notes", BkDataType::Notes, u"Notes"_s, 1);
    row("calendar", BkDataType::Calendar, u"Calendar"_s, 1);
    row("reminders", BkDataType::Reminders, u"Reminders"_s, 1);
    row("calls", BkDataType::Calls, u"Call History"_s, 1);
    row("Safari", BkDataType::Safari, u"Safari"_s, 1);
}

// Wherever the wish comes, what is called complete is complete.
void tst_Run::stopsInAnyOutput()
{
    QFETCH(int, type);
    QFETCH(QString, folder);
    QFETCH(int, files);
    RecordingObserver observer;
    Export::Request wanted = request(u"texts"_s);
    wanted.types = { type };
    const QDir watched(wanted.output + u'/' + folder);
    bool stopped = false;
    const Outcome outcome = Export::run(wanted, observer, [&] {
        stopped = stopped || watched.entryList(QDir::Files | QDir::Hidden).size() >= files;
        return !stopped;
    });
    QVERIFY(stopped);

    const Export::TypeOutcome &told = typeOf(outcome, type);
    const QStringList found = Files::tree(wanted.output + u'/' + folder.section(u'/', 0, 0));
    bool isComplete = true;
    bool hasPage = false;
    for (const Export::RunReport::OutputEnd &ended : told.counts.outputs) {
        using Output = CIExportReport::Output;
        const bool areCards = ended.output == Output::Cards;
        const QString suffix = ended.output == Output::Page ? u".html"_s
            : areCards                                      ? u".vcf"_s
                                                            : u".csv"_s;
        const bool isWhole = ended.end == End::Complete;
        const qsizetype count = found.filter(suffix).size();
        QVERIFY2(isWhole == (count == (areCards ? told.totals.items : 1)), qPrintable(suffix));
        QVERIFY2(isWhole || count == 0 || areCards, qPrintable(suffix));
        isComplete &= isWhole;
        hasPage |= isWhole && ended.output == Output::Page;
    }
    QCOMPARE(found.filter(u".part"_s), QStringList());
    QVERIFY(!isComplete);
    QCOMPARE(outcome.status, Status::Cancelled);
    QCOMPARE(told.state, End::Stopped);
    QCOMPARE(told.exported, hasPage ? told.totals.items : 0);
}

void tst_Run::tellsWhyTheOutputRefused_data()
{
    QTest::addColumn<bool>("isFull");
    QTest::addColumn<int>("systemError");
    QTest::addColumn<Status>("status");
    QTest::newRow("a disk") << true << ENOSPC << Status::Output;
    QTest::newRow("one file that is too large") << false << EFBIG << Status::Incomplete;
}

// By number, in whatever words the system's language tells of it.
void tst_Run::tellsWhyTheOutputRefused()
{
    QFETCH(bool, isFull);
    QFETCH(int, systemError);
    QFETCH(Status, status);
    constexpr rlim_t kLongest = 100000;
    Export::Request wanted = request();
    wanted.checkSpace = false;
    const QByteArray disk = QFile::encodeName(m_out->path());
    // A mount of this process only.
    if (isFull
        && (::unshare(CLONE_NEWNS) != 0
            || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
            || ::mount("tmpfs", disk.constData(), "tmpfs", 0, "size=100k") != 0))
        QSKIP("mounting is not possible for this user");
    RecordingObserver observer;
    Outcome outcome;
    {
        const FullDevice limit(isFull ? RLIM_INFINITY : kLongest);
        outcome = Export::run(wanted, observer, observer.keepGoing());
    }
    const ExpectedFiles files = filesBelow(wanted.output);
    if (isFull)
        ::umount(disk.constData());

    QCOMPARE(outcome.status, status);
    QCOMPARE(outcome.failure.has_value(), isFull);
    QVERIFY(!isFull || outcome.failure->cause == Failure::Cause::DiskFull);
    QVERIFY(!isFull || outcome.failure->systemError == systemError);
    const Export::RunReport::Failed &failed = outcome.failures.first();
    QCOMPARE(failed.systemError, systemError);
    QCOMPARE(failed.cause, CIExportReport::Cause::Target);
    QCOMPARE(failed.code, int(BkDataType::Videos));
    QVERIFY(!files.contains(u"Videos/100APPLE/IMG_0003.MOV"_s));
    QVERIFY(files.contains(u"Photos/101APPLE/IMG_0001.JPG"_s));
    QCOMPARE(files.contains(u"Books/Guide.epub"_s), !isFull);
    QCOMPARE(typeOf(outcome, BkDataType::Books).state, isFull ? End::NotStarted : End::Complete);
}

void tst_Run::asksUntilThePasswordIsRight_data()
{
    QTest::addColumn<QStringList>("passwords");
    QTest::addColumn<Status>("status");
    QTest::addColumn<int>("asked");
    const QString wrong = u"wrong"_s;
    QTest::newRow("right") << QStringList { kPassword } << Status::Complete << 1;
    QTest::newRow("right at last")
        << QStringList { wrong, wrong, wrong, kPassword } << Status::Complete << 4;
    QTest::newRow("given up") << QStringList { wrong, wrong } << Status::Password << 3;
}

void tst_Run::asksUntilThePasswordIsRight()
{
    QFETCH(QStringList, passwords);
    QFETCH(Status, status);
    QFETCH(int, asked);
    RecordingObserver observer;
    observer.passwords = passwords;
    const Outcome outcome = Export::run(request(u"locked"_s), observer, observer.keepGoing());
    QCOMPARE(outcome.status, status);
    QCOMPARE(observer.events.count(u"password"_s), 1);
    QCOMPARE(observer.events.count(u"wrong password"_s), asked - 1);
    if (status == Status::Password)
        QCOMPARE(outcome.failure->cause, Failure::Cause::WrongPassword);
    else
        QCOMPARE(difference(filesBelow(request().output), m_usual), QString());
}

void tst_Run::looksAtOutputAgain_data()
{
    QTest::addColumn<QString>("target"); // of the link that takes OUTPUT's place
    QTest::addColumn<Failure::Cause>("cause");
    QTest::newRow("a file was put into it") << QString() << Failure::Cause::NotEmpty;
    QTest::newRow("a link to an empty folder") << u"new"_s << Failure::Cause::Output;
    QTest::newRow("a link to the backup") << u"locked"_s << Failure::Cause::Unsuitable;
}

// What others do while somebody looks for the password.
void tst_Run::looksAtOutputAgain()
{
    QFETCH(QString, target);
    QVERIFY(QDir().mkpath(inDir(u"new"_s)));
    const QStringList before = Files::tree(m_dir.path());
    const QString output = request().output;
    RecordingObserver observer;
    observer.passwords = QStringList { kPassword };
    observer.whenAsked = [&] {
        if (target.isEmpty())
            QVERIFY(Files::write(output + u"/mine"_s, "mine"));
        else
            QVERIFY(QFile::link(inDir(target), output));
    };
    const Outcome outcome = Export::run(request(u"locked"_s), observer, observer.keepGoing());
    QVERIFY(!outcome.hasStarted && outcome.failure);
    QTEST(outcome.failure->cause, "cause");
    QCOMPARE(Files::tree(m_dir.path()), before);
    if (target.isEmpty())
        QCOMPARE(Files::tree(output), QStringList { u"mine"_s });
}

// Neither one that was stopped nor one whose files are for their owner alone.
void tst_Run::leavesNothingToTheNextRun()
{
    constexpr mode_t kUsualMask = S_IWGRP | S_IWOTH;
    const mode_t before = ::umask(kUsualMask);
    const QString secretFile = u"Photos/101APPLE/IMG_0001.JPG"_s;
    const auto others = QFile::ReadGroup | QFile::ReadOther;
    Export::Request wanted = request(u"locked"_s);
    RecordingObserver first;
    first.passwords = QStringList { kPassword };
    first.stopAt = u"Videos starts"_s;
    QCOMPARE(Export::run(wanted, first, first.keepGoing()).status, Status::Cancelled);
    QVERIFY(!QFileInfo(wanted.output + u'/' + secretFile).permissions().testAnyFlags(others));

    wanted = request();
    wanted.output = m_out->filePath(u"second"_s);
    RecordingObserver second;
    const Outcome outcome = Export::run(wanted, second, second.keepGoing());
    ::umask(before);
    QCOMPARE(outcome.status, Status::Complete);
    QCOMPARE(outcome.types.first().exported, 3);
    QVERIFY(QFileInfo(wanted.output + u'/' + secretFile).permissions().testFlags(others));
    QCOMPARE(difference(filesBelow(wanted.output), m_usual), QString());
}

QTEST_GUILESS_MAIN(tst_Run)
#include "tst_Run.moc"
