#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "support/Files.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

using namespace CliTest;
using namespace Qt::StringLiterals;

//! What the program understands, and what it says on which output.
class tst_CommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void refusesWrongUse_data();
    void refusesWrongUse();
    void helpTellsOptionsTypesAndExitCodes();
    void tellsItsVersion();
    void takesTheOnlyBackupOfAFolder();
    void asksWhichOfSeveralBackups();
    void listsWhatIsInside();
    void listsForPrograms();
    void exportsSelectedTypesOnly_data();
    void exportsSelectedTypesOnly();
    void summaryTellsWhereEachTypeLies();
    void summaryForPrograms();
    void quietSaysNothingWhenAllIsWell();
    void givesUpWhenTheListCannotBeWritten();
    void survivesOutputsThatAreGone_data();
    void survivesOutputsThatAreGone();

private:
    QString backup() const { return m_dir->filePath(u"backup"_s); }
    QString output() const { return m_dir->filePath(u"out"_s); }

    std::unique_ptr<QTemporaryDir> m_dir;
    ExpectedFiles m_expected;
};

void tst_CommandLine::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_expected = writeUsualBackup(backup());
    QVERIFY(!m_expected.isEmpty());
}

void tst_CommandLine::refusesWrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("said");

    QTest::newRow("nothing") << QStringList {} << "BACKUP is missing"_ba;
    QTest::newRow("no OUTPUT") << QStringList { u"BACKUP"_s } << "OUTPUT is missing"_ba;
    QTest::newRow("empty OUTPUT") << QStringList { u"BACKUP"_s, u""_s } << "OUTPUT is missing"_ba;
    QTest::newRow("a third name") << QStringList { u"BACKUP"_s, u"OUT"_s, u"more"_s } << "more"_ba;
    QTest::newRow("unknown option")
        << QStringList { u"--fast"_s, u"BACKUP"_s, u"OUT"_s } << "--fast"_ba;
    QTest::newRow("list with OUTPUT")
        << QStringList { u"--list"_s, u"BACKUP"_s, u"OUT"_s } << "omit OUTPUT"_ba;
    QTest::newRow("unknown type") << QStringList {
        u"--only"_s, u"photos,fotos"_s, u"BACKUP"_s, u"OUT"_s
    } << "Unknown type “fotos”"_ba;
    QTest::newRow("unknown type lists the possible ones")
        << QStringList { u"--skip"_s, u"99"_s, u"BACKUP"_s, u"OUT"_s } << "shared-albums, "_ba;
    for (const char *none : { "", ",", " " }) {
        QTest::addRow("only nothing: '%s'", none)
            << QStringList { u"--only"_s, QString::fromLatin1(none), u"BACKUP"_s, u"OUT"_s }
            << "--only"_ba;
        QTest::addRow("skip nothing: '%s'", none)
            << QStringList { u"--skip"_s, QString::fromLatin1(none), u"BACKUP"_s, u"OUT"_s }
            << "--skip needs a type"_ba;
    }
    QTest::newRow("only without a type") << QStringList { u"--only"_s } << "--only"_ba;
    QTest::newRow("nothing left") << QStringList {
        u"--only=books"_s, u"--skip=books"_s, u"BACKUP"_s, u"OUT"_s
    } << "leave nothing"_ba;
    QTest::newRow("control characters in a word")
        << QStringList { u"--only"_s, u"\u001b[2Jx"_s, u"BACKUP"_s, u"OUT"_s } << "Unknown type"_ba;
    const auto filter = [](const char *name, const QStringList &options, const QByteArray &said) {
        QTest::newRow(name) << options + QStringList { u"BACKUP"_s, u"OUT"_s } << said;
    };
    filter("a word for a date",
           { u"--since"_s, u"yesterday"_s },
           "“yesterday” is not a valid date"_ba);
    filter("a day that does not exist",
           { u"--until=2023-02-29"_s },
           "“2023-02-29” is not a valid date"_ba);
    filter("a time that does not exist",
           { u"--since"_s, u"2024-01-31 24:10"_s },
           "YYYY-MM-DD hh:mm"_ba);
    filter("a date the other way round", { u"--until"_s, u"31.01.2024"_s }, "--until: “31"_ba);
    filter("nothing between", { u"--since=2024-02-01"_s, u"--until=2024-01-31"_s }, "no time"_ba);
    filter("nobody to look for",
           { u"--chat"_s, u"Ann"_s, u"--chat"_s, u" "_s },
           "--chat needs a name"_ba);
    filter("a filter without messages",
           { u"--only=photos"_s, u"--since=2024-02-01"_s },
           "apply to messages"_ba);
}

void tst_CommandLine::refusesWrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, said);
    arguments.replaceInStrings(u"BACKUP"_s, backup());
    arguments.replaceInStrings(u"OUT"_s, output());

    const Result result = run(arguments);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.err.contains(said), result.err.constData());
    QVERIFY(!hasControlBytes(result.err));
    QCOMPARE(result.out, QByteArray());
    QVERIFY(!QFileInfo::exists(output()));
}

void tst_CommandLine::helpTellsOptionsTypesAndExitCodes()
{
    const Result result = run({ u"--help"_s });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QByteArray());
    for (const char *part : { "--list",
                              "--only TYPE",
                              "--skip TYPE",
                              "--since DATE",
                              "--until DATE",
                              "--chat TEXT",
                              "--json",
                              "--quiet",
                              "--into-existing",
                              "--version",
                              "app-documents",
                              "voicemail",
                              "Exit codes",
                              "130" })
        QVERIFY2(result.out.contains(part), part);
    for (const QByteArray &line : result.out.split('\n'))
        QVERIFY2(line.size() <= 80, line.constData());
}

void tst_CommandLine::tellsItsVersion()
{
    const Result result = run({ u"--version"_s });
    QCOMPARE(result.exitCode, 0);
    QVERIFY(QRegularExpression(u"^dataexport \\d+\\.\\d+\\.\\d+\n$"_s)
                .match(QString::fromUtf8(result.out))
                .hasMatch());
}

void tst_CommandLine::takesTheOnlyBackupOfAFolder()
{
    QVERIFY(Files::write(m_dir->filePath(u"holder/notes.txt"_s), "x"));
    QVERIFY(QDir().rename(backup(), m_dir->filePath(u"holder/one"_s)));
    const Result result = run({ m_dir->filePath(u"holder"_s), output() });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(difference(filesBelow(output()), m_expected), QString());
}

void tst_CommandLine::asksWhichOfSeveralBackups()
{
    for (const char *name : { "Anna", "Bert" }) {
        Sample::BackupWriter writer(m_dir->filePath(u"holder/"_s + QLatin1String(name)));
        writer.setInfo(u"Display Name"_s, QString(QLatin1String(name) + u"\u001b[31m phone"_s));
        writer.setInfo(u"Last Backup Date"_s, QDateTime(QDate(2021, 2, 3), QTime(4, 5), Qt::UTC));
        addUsualFiles(writer);
        QVERIFY(writer.finish());
    }
    const Result result = run({ m_dir->filePath(u"holder"_s), output() });
    QCOMPARE(result.exitCode, 2);
    for (const char *part : { "holder/Anna", "holder/Bert", " phone", "2021-02-03 04:05", " KB" })
        QVERIFY2(result.out.contains(part), result.out.constData());
    QVERIFY2(result.err.contains("There are 2 backups"), result.err.constData());
    QVERIFY(!hasControlBytes(result.out) && !hasControlBytes(result.err));
    const Result json = run({ u"--json"_s, m_dir->filePath(u"holder"_s), output() });
    QCOMPARE(json.exitCode, 2);
    QCOMPARE(json.json().value(u"backups"_s).toArray().size(), 2);
    QVERIFY(!QFileInfo::exists(output()));
}

void tst_CommandLine::listsWhatIsInside()
{
    const QStringList before = Files::tree(m_dir->path());
    const Result result = run({ u"--list"_s, backup() });
    QCOMPARE(result.exitCode, 0);
    const QString text = QString::fromUtf8(result.out).simplified();
    QVERIFY2(text.contains(u"Photos 3 0 "_s), result.out.constData());
    QVERIFY2(text.contains(u"App Documents 2 0 12 B"_s), result.out.constData());
    QVERIFY2(text.contains(u"Total 8 0 "_s), result.out.constData());
    QCOMPARE(Files::tree(m_dir->path()), before);
}

void tst_CommandLine::listsForPrograms()
{
    const Result result = run({ u"--list"_s, u"--json"_s, u"--skip"_s, u"videos"_s, backup() });
    QCOMPARE(result.exitCode, 0);
    const QJsonObject json = result.json();
    QCOMPARE(json.value(u"status"_s).toString(), u"complete"_s);
    QCOMPARE(json.value(u"items"_s).toInt(), 7);
    QCOMPARE(json.value(u"bytes"_s).toInteger(), 40000 + 1 + 16384 + 20000 + 16385 + 12);
    QMap<QString, int> items;
    const QJsonArray types = json.value(u"types"_s).toArray();
    for (const QJsonValue &type : types)
        items.insert(type[u"type"_s].toString(), type[u"items"_s].toInt());
    QCOMPARE(items.value(u"photos"_s), 3);
    QCOMPARE(items.value(u"books"_s), 1);
    QVERIFY(!items.contains(u"videos"_s));
    QCOMPARE(json.value(u"backup"_s)[u"path"_s].toString(), backup());
}

void tst_CommandLine::exportsSelectedTypesOnly_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("folders");

    const QStringList all {
        u"App Documents"_s, u"Books"_s, u"Photos"_s, u"Videos"_s, u"Voice Memos"_s
    };
    QTest::newRow("all") << QStringList {} << all;
    QTest::newRow("one") << QStringList { u"--only"_s, u"books"_s } << QStringList { u"Books"_s };
    QTest::newRow("two in one word") << QStringList { u"--only=books,voice-memos"_s }
                                     << QStringList { u"Books"_s, u"Voice Memos"_s };
    QTest::newRow("two options") << QStringList { u"--only=books"_s, u"--only=photos"_s }
                                 << QStringList { u"Books"_s, u"Photos"_s };
    QTest::newRow("by number") << QStringList { u"--only=0,10"_s }
                               << QStringList { u"App Documents"_s, u"Photos"_s };
    QTest::newRow("as the folder is called")
        << QStringList { u"--only=App Documents"_s } << QStringList { u"App Documents"_s };
    QTest::newRow("skip") << QStringList { u"--skip=photos,videos"_s, u"--skip=10"_s }
                          << QStringList { u"Books"_s, u"Voice Memos"_s };
    QTest::newRow("only and skip") << QStringList { u"--only=photos,videos"_s, u"--skip=videos"_s }
                                   << QStringList { u"Photos"_s };
}

void tst_CommandLine::exportsSelectedTypesOnly()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, folders);
    const Result result = run(options + QStringList { backup(), output() });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QDir(output()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name), folders);
}

void tst_CommandLine::summaryTellsWhereEachTypeLies()
{
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, 0);
    const QString text = QString::fromUtf8(result.out).simplified();
    QVERIFY2(text.startsWith(
                 u"Type Exported Failed Where Photos 3 0 %1/Photos Videos 1 0 "_s.arg(output())),
             result.out.constData());
    QVERIFY2(text.contains(u"Total 8 0 "_s), result.out.constData());
    // For a log: which backup it was, and nothing for each type.
    QCOMPARE(result.err, "Backup: Sample Phone (iPhone 11, version 14.3), 2024-06-01 07:45\n"_ba);
}

void tst_CommandLine::summaryForPrograms()
{
    const Result result = run({ u"--json"_s, backup(), output() });
    QCOMPARE(result.exitCode, 0);
    const QJsonObject json = result.json();
    QCOMPARE(json.value(u"exitCode"_s).toInt(-1), 0);
    QCOMPARE(json.value(u"exported"_s).toInt(), 8);
    QCOMPARE(json.value(u"failed"_s).toInt(-1), 0);
    QCOMPARE(json.value(u"output"_s).toString(), output());
    QVERIFY(json.value(u"report"_s).isNull());
    const QJsonValue photos = json.value(u"types"_s)[0];
    QCOMPARE(photos[u"type"_s].toString(), u"photos"_s);
    QCOMPARE(photos[u"exported"_s].toInt(), 3);
    QCOMPARE(photos[u"folder"_s].toString(), output() + u"/Photos"_s);
}

void tst_CommandLine::quietSaysNothingWhenAllIsWell()
{
    const Result result = run({ u"-q"_s, backup(), output() });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out + result.err, QByteArray());
    QCOMPARE(difference(filesBelow(output()), m_expected), QString());
}

void tst_CommandLine::givesUpWhenTheListCannotBeWritten()
{
    const Result result = run({ u"--list"_s, backup() },
                              [] { ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO); });
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains("standard output"), result.err.constData());
}

void tst_CommandLine::survivesOutputsThatAreGone_data()
{
    QTest::addColumn<bool>("closed");
    QTest::addColumn<int>("stream");

    QTest::newRow("nobody reads the results") << false << STDOUT_FILENO;
    QTest::newRow("nobody reads the messages") << false << STDERR_FILENO;
    QTest::newRow("no standard output") << true << STDOUT_FILENO;
    QTest::newRow("no standard error") << true << STDERR_FILENO;
}

void tst_CommandLine::survivesOutputsThatAreGone()
{
    QFETCH(bool, closed);
    QFETCH(int, stream);
    const Result result = run({ backup(), output() }, [closed, stream] {
        int ends[2];
        if (!closed && ::pipe(ends) == 0) {
            ::close(ends[0]);
            ::dup2(ends[1], stream);
            ::close(ends[1]);
        } else {
            ::close(stream);
        }
    });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(difference(filesBelow(output()), m_expected), QString());
}

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"
