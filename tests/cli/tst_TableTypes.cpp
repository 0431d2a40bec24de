#include "cli/Program.h"
#include "sample/BackupWriter.h"
#include "sample/NoteSample.h"
#include "sample/PlannerSample.h"
#include "support/Files.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

using namespace CliTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPartlyFailed = 3;
const QString kNotes = u"AppDomainGroup-group.com.apple.notes"_s;

// "word items exported", for each type that has items.
QString counts(const QJsonObject &json)
{
    QStringList lines;
    for (const QJsonValue &type : json.value(u"types"_s).toArray()) {
        if (type[u"items"_s].toInt() > 0)
            lines.append(type[u"name"_s].toString() + u' '
                         + QString::number(type[u"items"_s].toInt()));
    }
    return lines.join(u", "_s);
}

} // namespace

//! Notes, calendar and reminders from the backup to the page.
class tst_TableTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void listsAndExportsThem();
    void exportsWhatIsChosen();
    void saysWhatIsLostAndExportsTheRest_data();
    void saysWhatIsLostAndExportsTheRest();

private:
    QString backup() const { return m_dir->filePath(u"backup"_s); }
    QString output() const { return m_dir->filePath(u"out"_s); }
    QByteArray page(const QString &type) const
    {
        const QDir folder(output() + u'/' + type);
        return Files::read(folder.filePath(folder.entryList({ u"*.html"_s }).value(0)));
    }
    // Writes the sample; \a domain and \a path name a file that is damaged afterwards.
    void makeBackup(const QString &domain = {}, const QString &path = {}, qsizetype bytesLeft = 0);

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_TableTypes::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void tst_TableTypes::makeBackup(const QString &domain, const QString &path, qsizetype bytesLeft)
{
    Sample::Options options;
    options.plannerRelease = 14;
    Sample::BackupWriter writer(backup());
    Sample::addNotes(writer, options);
    Sample::addPlanner(writer, options);
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
    if (path.isEmpty())
        return;
    const QString id = Sample::BackupWriter::fileId(domain, path);
    QFile file(u"%1/%2/%3"_s.arg(backup(), id.first(2), id));
    QVERIFY(file.resize(bytesLeft));
}

void tst_TableTypes::listsAndExportsThem()
{
    makeBackup();
    const Result list = run({ u"--list"_s, u"--json"_s, backup() });
    QCOMPARE(list.exitCode, 0);
    QCOMPARE(counts(list.json()), u"Notes 9, Reminders 8, Calendar 9, Note Attachments 3"_s);
    const Result result = run({ backup(), output() });
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QVERIFY(page(u"Notes"_s).contains("Words &amp; signs &lt;b&gt;"));
    QVERIFY(page(u"Notes"_s).contains("☑ Bilge dry<br>"));
    QVERIFY(page(u"Reminders"_s).contains("Two coats &lt;b&gt;at least&lt;/b&gt;"));
    QVERIFY(page(u"Calendar"_s).contains("Repeats every 2 weeks on Tuesday and Saturday"));
    QVERIFY(QFile::exists(output() + u"/Note Attachments/Mooring sketch/mooring.jpg"_s));
}

void tst_TableTypes::exportsWhatIsChosen()
{
    makeBackup();
    QCOMPARE(run({ u"--only=notes,reminders"_s, backup(), output() }).exitCode, 0);
    QStringList folders = QDir(output()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(folders, QStringList({ u"Notes"_s, u"Reminders"_s }));
}

void tst_TableTypes::saysWhatIsLostAndExportsTheRest_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("bytesLeft");
    QTest::addColumn<QStringList>("types"); // that are exported all the same

    const QString calendar = u"Library/Calendar/Calendar.sqlitedb"_s;
    const QStringList withoutNotes { u"Calendar"_s, u"Note Attachments"_s, u"Reminders"_s };
    const QStringList withoutCalendar { u"Note Attachments"_s, u"Notes"_s, u"Reminders"_s };
    QTest::newRow("notes empty") << kNotes << u"NoteStore.sqlite"_s << 0 << withoutNotes;
    QTest::newRow("notes cut") << kNotes << u"NoteStore.sqlite"_s << 3000 << withoutNotes;
    QTest::newRow("calendar cut") << u"HomeDomain"_s << calendar << 3000 << withoutCalendar;
}

void tst_TableTypes::saysWhatIsLostAndExportsTheRest()
{
    QFETCH(QString, domain);
    QFETCH(QString, path);
    QFETCH(int, bytesLeft);
    QFETCH(QStringList, types);
    makeBackup(domain, path, bytesLeft);
    const Result result = run({ backup(), output() });
    QCOMPARE(result.exitCode, kPartlyFailed);
    QVERIFY2(result.err.contains(path.toUtf8()), result.err.constData());
    for (const QString &type : types)
        QVERIFY2(QDir(output() + u'/' + type).exists(), qPrintable(type));
    QVERIFY(Files::read(output() + u"/export-report.csv"_s).size() > 0);
}

QTEST_GUILESS_MAIN(tst_TableTypes)
#include "tst_TableTypes.moc"
