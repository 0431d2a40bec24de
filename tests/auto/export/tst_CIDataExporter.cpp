#include "export/CIDataExporter.h"
#include "support/Files.h"
#include "support/RecordingReport.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// Sink that keeps what it was asked.
class TracingSink : public CIDataExporter
{
public:
    bool exportData(const QString &text, const QString &name) override
    {
        trace.append(u"data(%1|%2)"_s.arg(text, name.isNull() ? u"null"_s : name));
        return !failData;
    }
    using CIDataExporter::exportData;
    bool exportDepends(const QString & /*path*/, const QString & /*name*/) override { return true; }
    bool exportDepends(const QByteArray & /*data*/, const QString & /*name*/) override
    {
        return true;
    }
    bool openExporter(const QDir &outDir) override
    {
        opened = outDir.absolutePath();
        trace.append(u"open(%1,%2)"_s.arg(m_name, m_folder));
        return !failOpen;
    }
    bool closeExporter(bool ok) override
    {
        trace.append(ok ? u"close(true)"_s : u"close(false)"_s);
        return closeResult;
    }

    QStringList trace;
    QString opened;
    bool failOpen = false;
    bool failData = false;
    bool closeResult = true;
};

} // namespace

class tst_CIDataExporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensInItsFolder_data();
    void opensInItsFolder();
    void opensNothingOutsideItsTarget_data();
    void opensNothingOutsideItsTarget();
    void aFailureRemovesTheWholeFolder();
    void keepsWhatWasThereBefore();
    void passesResultsOn();
};

void tst_CIDataExporter::opensInItsFolder_data()
{
    QTest::addColumn<QString>("subDir");
    QTest::addColumn<QString>("opened");

    QTest::newRow("plain") << QString() << u"Contacts"_s;
    QTest::newRow("with a sub-folder") << u"CSV"_s << u"Contacts/CSV"_s;
}

void tst_CIDataExporter::opensInItsFolder()
{
    QFETCH(QString, subDir);
    QFETCH(QString, opened);
    const QTemporaryDir temp;
    TracingSink sink;
    QVERIFY(sink.initExporterWithSubDir(QDir(temp.path()), u"Ann"_s, u"Contacts"_s, subDir));
    QCOMPARE(sink.opened, temp.filePath(opened));
    QVERIFY(QFileInfo(temp.filePath(opened)).isDir());
    QVERIFY(sink.finish(true));
    QCOMPARE(sink.trace, (QStringList { u"open(Ann,Contacts)"_s, u"close(true)"_s }));
}

void tst_CIDataExporter::opensNothingOutsideItsTarget_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("subDir");

    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("empty with a sub-folder") << u""_s << u"CSV"_s;
    QTest::newRow("the target itself") << u"."_s << u""_s;
    QTest::newRow("parent") << u".."_s << u""_s;
    QTest::newRow("sibling") << u"../x"_s << u""_s;
    QTest::newRow("detour") << u"a/../../x"_s << u""_s;
    QTest::newRow("sub-folder that leads out") << u"a"_s << u"../../x"_s;
    QTest::newRow("absolute") << u"/tmp/dataexport-absolute"_s << u""_s;
    QTest::newRow("resource") << u":/x"_s << u""_s;
    QTest::newRow("taken by a file") << u"file"_s << u""_s;
    QTest::newRow("below a file") << u"file"_s << u"CSV"_s;
}

void tst_CIDataExporter::opensNothingOutsideItsTarget()
{
    QFETCH(QString, folder);
    QFETCH(QString, subDir);
    const QTemporaryDir temp;
    QVERIFY(Files::write(temp.filePath(u"out/file"_s), "kept"));
    QVERIFY(Files::write(temp.filePath(u"out/other/file"_s), "kept"));
    const QStringList before = Files::tree(temp.path());

    TracingSink sink;
    RecordingReport report;
    sink.setReport(&report);
    QVERIFY(!sink.initExporterWithSubDir(QDir(temp.filePath(u"out"_s)), u"Ann"_s, folder, subDir));
    QVERIFY(sink.opened.isEmpty());
    QCOMPARE(report.failures.size(), 1);
    QCOMPARE(report.failures.first().type, folder);
    QVERIFY(!report.failures.first().reason.isEmpty());
    sink.finish(false);
    QCOMPARE(Files::tree(temp.path()), before);
}

void tst_CIDataExporter::aFailureRemovesTheWholeFolder()
{
    const QTemporaryDir temp;
    QVERIFY(Files::write(temp.filePath(u"Contacts/HTML/page"_s), "x"));
    QVERIFY(Files::write(temp.filePath(u"Other/page"_s), "x"));
    TracingSink sink;
    RecordingReport report;
    sink.setReport(&report);
    sink.failOpen = true;
    QVERIFY(!sink.initExporterWithSubDir(QDir(temp.path()), u"Ann"_s, u"Contacts"_s, u"CSV"_s));
    QCOMPARE(report.failures.value(0).cause, CIExportReport::Cause::Target);
    sink.finish(false);
    QCOMPARE(Files::tree(temp.path()), (QStringList { u"Other/"_s, u"Other/page"_s }));
}

void tst_CIDataExporter::keepsWhatWasThereBefore()
{
    const QTemporaryDir temp;
    QVERIFY(Files::write(temp.filePath(u"Photos/old"_s), "x"));
    TracingSink sink;
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"Photos"_s));
    QVERIFY(sink.finish(true));
    QCOMPARE(Files::tree(temp.path()), (QStringList { u"Photos/"_s, u"Photos/old"_s }));
}

void tst_CIDataExporter::passesResultsOn()
{
    const QTemporaryDir temp;
    TracingSink sink;
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
    CIDataExporter &base = sink;
    QVERIFY(base.exportData(u"text"_s));
    sink.failData = true;
    QVERIFY(!base.exportData(u"text"_s));
    QCOMPARE(sink.trace.mid(1), QStringList(2, u"data(text|null)"_s));
    sink.closeResult = false;
    QVERIFY(!sink.finish(true));
}

QTEST_GUILESS_MAIN(tst_CIDataExporter)
#include "tst_CIDataExporter.moc"
