#include "export/CPlainFileExporter.h"
#include "support/Files.h"
#include "support/FullDevice.h"
#include "support/RecordingReport.h"

#include <QStringConverter>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <ctime>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

qint64 residentBytes()
{
    const QList<QByteArray> fields = Files::read(u"/proc/self/statm"_s).split(' ');
    return fields.value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

// Text for a file that is lost already takes no memory.
void writeWithoutKeeping(CPlainFileExporter &sink)
{
    constexpr int kPieces = 64;
    const QString piece(1024 * 1024, u'x');
    const qint64 before = residentBytes();
    for (int i = 0; i < kPieces; ++i)
        sink.exportData(piece);
    QVERIFY(residentBytes() - before < piece.size() * kPieces / 2);
}

} // namespace

class tst_CPlainFileExporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesInTheCodec_data();
    void writesInTheCodec();
    void writesLongTextsWhole();
    void namesTheOneFileSafely_data();
    void namesTheOneFileSafely();
    void oneFilePerItem();
    void namesItemsVisibly_data();
    void namesItemsVisibly();
    void namesManyItemsAlikeInLinearTime();
    void aFailedExportLeavesNothing();
    void survivesAFileThatDoesNotOpen();
    void reportsFullDeviceAtEveryByte();
    void goesOnAfterAFileThatWasCutShort();
    void hardenedFilesGetTheirNamesWhenComplete_data();
    void hardenedFilesGetTheirNamesWhenComplete();
};

void tst_CPlainFileExporter::writesInTheCodec_data()
{
    QTest::addColumn<QString>("codec");
    QTest::addColumn<bool>("bom");
    QTest::addColumn<QByteArray>("expected");

    const auto utf16 = [](const QString &text) {
        return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    };
    const QString text = u"a\u00E9\U0001F600\n"_s;
    QTest::newRow("UTF16 with its mark") << u"UTF16"_s << true << utf16(u"\uFEFF"_s + text);
    QTest::newRow("UTF-16 without") << u"UTF-16"_s << false << utf16(text);
    QTest::newRow("UTF-8 without a mark") << u"UTF-8"_s << false << text.toUtf8();
    QTest::newRow("UTF-8 with its mark")
        << u"UTF-8"_s << true << QByteArray("\xEF\xBB\xBF") + text.toUtf8();
    QTest::newRow("none set") << QString() << false << text.toUtf8();
}

void tst_CPlainFileExporter::writesInTheCodec()
{
    QFETCH(QString, codec);
    QFETCH(bool, bom);
    const QTemporaryDir temp;
    CPlainFileExporter sink(u".csv"_s, false);
    if (!codec.isEmpty())
        sink.setCodec(codec, bom);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"Messages"_s));
    QVERIFY(sink.itemExportBegin(u"ignored"_s));
    QVERIFY(sink.exportData(u"a\u00E9"_s, u"ignored"_s));
    QVERIFY(sink.itemExportEnd());
    QVERIFY(sink.exportData(u"\U0001F600\n"_s));
    QVERIFY(sink.exportDepends(u"/x"_s, u"x"_s) && sink.exportDepends(QByteArray("x"), u"x"_s));
    QVERIFY(sink.finish(true));
    QCOMPARE(Files::tree(temp.path()),
             (QStringList { u"Messages/"_s, u"Messages/Ann's Messages.csv"_s }));
    QTEST(Files::read(temp.filePath(u"Messages/Ann's Messages.csv"_s)), "expected");
}

void tst_CPlainFileExporter::writesLongTextsWhole()
{
    // Surrogate pairs at every offset around the places where a long text is cut.
    for (int shift = 0; shift < 2; ++shift) {
        const QString text = QString(shift, u'a') + u"\U0001F600"_s.repeated(200000);
        const QTemporaryDir temp;
        CPlainFileExporter sink(u".txt"_s, false);
        QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
        QVERIFY(sink.exportData(text));
        QVERIFY(sink.finish(true));
        QVERIFY(Files::read(temp.filePath(u"T/Ann's T.txt"_s)) == text.toUtf8());
    }
}

void tst_CPlainFileExporter::namesTheOneFileSafely_data()
{
    QTest::addColumn<QString>("owner");
    QTest::addColumn<bool>("hardened");
    QTest::addColumn<QString>("name"); // without its suffix

    const QString signs = u"A/n:n %2"_s;
    QTest::newRow("signs of paths") << signs << false << u"A_n_n %2's T"_s;
    QTest::newRow("signs of paths, hardened") << signs << true << u"A_n_n %2's T"_s;
    QTest::newRow("a device") << u"con.x"_s << true << u"con_.x's T"_s;
    QTest::newRow("direction override") << u"A\u202En"_s << true << u"An's T"_s;
    QTest::newRow("too long") << QString(300, u'x') << true << QString(195, u'x');
}

void tst_CPlainFileExporter::namesTheOneFileSafely()
{
    QFETCH(QString, owner);
    QFETCH(bool, hardened);
    QFETCH(QString, name);
    const QTemporaryDir temp;
    for (int run = 0; run < 2; ++run) {
        CPlainFileExporter sink(u".csv"_s, false);
        sink.setHardened(hardened);
        QVERIFY(sink.initExporter(QDir(temp.path()), owner, u"T"_s));
        QVERIFY(sink.finish(true));
    }
    const QString second = name.first(std::min<qsizetype>(name.size(), 192)) + u" (2).csv"_s;
    QCOMPARE(Files::tree(temp.filePath(u"T"_s)), (QStringList { second, name + u".csv"_s }));
}

void tst_CPlainFileExporter::oneFilePerItem()
{
    const QTemporaryDir temp;
    CPlainFileExporter sink(u".vcf"_s, true);
    sink.setCodec(u"UTF-8"_s, false);
    QVERIFY(sink.initExporterWithSubDir(QDir(temp.path()), u"Ann"_s, u"Contacts"_s, u"VCF"_s));
    for (const QString &name : { u"Bo"_s, u"a/b"_s, u"Bo"_s }) {
        QVERIFY(sink.itemExportBegin(name));
        QVERIFY(sink.exportData(u"card of "_s + name));
        QVERIFY(sink.itemExportEnd());
    }
    QVERIFY(sink.finish(true));
    const QString folder = temp.filePath(u"Contacts/VCF/"_s);
    QCOMPARE(Files::tree(folder), (QStringList { u"Bo (2).vcf"_s, u"Bo.vcf"_s, u"a_b.vcf"_s }));
    QCOMPARE(Files::read(folder + u"Bo (2).vcf"_s), QByteArray("card of Bo"));
    QCOMPARE(Files::read(folder + u"a_b.vcf"_s), QByteArray("card of a/b"));
}

void tst_CPlainFileExporter::namesItemsVisibly_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("hardened");

    const auto row = [](const char *tag, const QStringList &names, const QStringList &files) {
        QTest::newRow(tag) << names << files << false;
    };
    const QString longest(251, u'x'); // and ".vcf"
    row("empty", QStringList { {}, {} }, QStringList { u"_ (2).vcf"_s, u"_.vcf"_s });
    row("only dots", QStringList { u".."_s }, QStringList { u"_.vcf"_s });
    row("leading dots", QStringList { u"..Bo. "_s }, QStringList { u"Bo. .vcf"_s });
    row("a NUL", QStringList { u"a\0b"_s }, QStringList { u"a_b.vcf"_s });
    row("right to left, emoji",
        QStringList { u"\u202E\u05D0\u05D1 \U0001F600"_s },
        QStringList { u"\u202E\u05D0\u05D1 \U0001F600.vcf"_s });
    row("as long as it may be", QStringList { longest }, QStringList { longest + u".vcf"_s });
    row("room for the number",
        QStringList { longest, longest, longest },
        QStringList { longest.first(238) + u" (2).vcf"_s,
                      longest.first(238) + u".vcf"_s,
                      longest + u".vcf"_s });
    row("one byte too long, one character of two",
        QStringList { longest.first(250) + u"\u00E9"_s },
        QStringList { longest.first(250) + u".vcf"_s });
    row("never inside a surrogate pair",
        QStringList { u"\U0001F600"_s.repeated(500000) },
        QStringList { u"\U0001F600"_s.repeated(62) + u".vcf"_s });
    row("half a surrogate pair",
        QStringList { QString(400, QChar(0xD83D)) },
        QStringList { QString(83, QChar(0xFFFD)) + u".vcf"_s });
    QTest::newRow("on every file system")
        << QStringList { u"CON"_s, u"nul.x"_s, u"a\u202Efdp"_s, u"b\nc\x7F"_s, u" d. "_s, longest }
        << QStringList { u"CON_.vcf"_s, u"afdp.vcf"_s,   u"b_c_.vcf"_s,
                         u"d.vcf"_s,    u"nul_.x.vcf"_s, longest.first(195) + u".vcf"_s }
        << true;
    QTest::newRow("apart without regard to case")
        << QStringList { u"Bo"_s, u"bo"_s, u"BO (2)"_s, u"bO"_s }
        << QStringList { u"BO (2) (2).vcf"_s, u"Bo.vcf"_s, u"bO (3).vcf"_s, u"bo (2).vcf"_s }
        << true;
}

void tst_CPlainFileExporter::namesItemsVisibly()
{
    QFETCH(QStringList, names);
    QFETCH(bool, hardened);
    const QTemporaryDir temp;
    RecordingReport report;
    CPlainFileExporter sink(u".vcf"_s, true);
    sink.setHardened(hardened);
    sink.setReport(&report);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
    for (const QString &name : names) {
        QVERIFY(sink.itemExportBegin(name));
        QVERIFY(sink.itemExportEnd());
    }
    QVERIFY(sink.finish(true));
    QCOMPARE(report.failures.size(), 0);
    QTEST(Files::tree(temp.filePath(u"T"_s)), "files");
}

void tst_CPlainFileExporter::namesManyItemsAlikeInLinearTime()
{
    constexpr int kItems = 5000;
    const QTemporaryDir temp;
    CPlainFileExporter sink(u".vcf"_s, true);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
    const std::clock_t start = std::clock();
    for (int i = 0; i < kItems; ++i) {
        for (const QString &name : { u"Bo"_s, QString(300, u'x') }) {
            QVERIFY(sink.itemExportBegin(name));
            QVERIFY(sink.itemExportEnd());
        }
    }
    const auto seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    QVERIFY2(seconds < 10, qPrintable(QString::number(seconds)));
    QCOMPARE(QDir(temp.filePath(u"T"_s)).count(), uint(2 * kItems + 2)); // with "." and ".."
    QVERIFY(QFileInfo::exists(temp.filePath(u"T/Bo (%1).vcf"_s.arg(kItems))));
}

void tst_CPlainFileExporter::aFailedExportLeavesNothing()
{
    const QTemporaryDir temp;
    CPlainFileExporter sink(u".csv"_s, false);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
    QVERIFY(sink.exportData(u"text"_s));
    QVERIFY(sink.finish(false));
    QCOMPARE(Files::tree(temp.path()), QStringList());
}

void tst_CPlainFileExporter::survivesAFileThatDoesNotOpen()
{
    const QTemporaryDir temp;
    RecordingReport report;
    {
        CPlainFileExporter sink(u".csv"_s, false);
        sink.setReport(&report);
        sink.setCodec(u"no such codec"_s, true);
        QVERIFY(!sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
        sink.finish(false);
    }
    CPlainFileExporter sink(u".vcf"_s, true);
    sink.setReport(&report);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
    QDir(temp.path()).rename(u"T"_s, u"away"_s);
    QVERIFY(!sink.itemExportBegin(u"lost"_s));
    QDir(temp.path()).rename(u"away"_s, u"T"_s);
    QVERIFY(sink.itemExportBegin(u"next"_s));
    QVERIFY(sink.itemExportEnd());
    QVERIFY(sink.finish(true));
    QCOMPARE(Files::tree(temp.filePath(u"T"_s)), QStringList { u"next.vcf"_s });
    QCOMPARE(report.failures.size(), 2);
    QCOMPARE(report.failures[0].item, QString());
    QCOMPARE(report.failures[1].item, u"lost"_s);
}

void tst_CPlainFileExporter::reportsFullDeviceAtEveryByte()
{
    for (rlim_t room = 0; room <= 10; ++room) {
        const QTemporaryDir temp;
        RecordingReport report;
        CPlainFileExporter sink(u".csv"_s, false);
        sink.setReport(&report);
        sink.setCodec(u"UTF-8"_s, false);
        QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
        {
            const FullDevice device(room);
            sink.exportData(u"0123456789"_s);
            sink.finish(true);
        }
        const bool fits = room == 10;
        QCOMPARE(Files::tree(temp.filePath(u"T"_s)).size(), fits ? 1 : 0);
        QCOMPARE(report.failures.size(), fits ? 0 : 1);
        QCOMPARE(report.ends.value(0), fits ? u"T: table complete"_s : u"T: table failed"_s);
        if (!fits)
            QCOMPARE(report.failures[0].systemError, EFBIG);
    }
}

void tst_CPlainFileExporter::goesOnAfterAFileThatWasCutShort()
{
    const QTemporaryDir temp;
    RecordingReport report;
    CPlainFileExporter sink(u".vcf"_s, true);
    sink.setReport(&report);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
    {
        const FullDevice device(50);
        for (const int size : { 10, 100000, 20, 51, 30 }) {
            QVERIFY(sink.itemExportBegin(QString::number(size)));
            sink.exportData(QString(size, u'x'));
            if (size == 100000)
                writeWithoutKeeping(sink);
            QVERIFY(sink.itemExportEnd());
        }
    }
    QVERIFY(sink.finish(true));
    QCOMPARE(Files::tree(temp.filePath(u"T"_s)),
             (QStringList { u"10.vcf"_s, u"20.vcf"_s, u"30.vcf"_s }));
    QCOMPARE(Files::read(temp.filePath(u"T/30.vcf"_s)), QByteArray(30, 'x'));
    QCOMPARE(report.failures.size(), 2);
}

void tst_CPlainFileExporter::hardenedFilesGetTheirNamesWhenComplete_data()
{
    QTest::addColumn<bool>("perItem");
    QTest::addColumn<bool>("stopped");
    QTest::addColumn<QString>("left");

    QTest::newRow("one file") << false << false << u"Ann's T.csv"_s;
    QTest::newRow("one file, stopped") << false << true << QString();
    QTest::newRow("cards") << true << false << u"i.csv"_s;
    QTest::newRow("cards, stopped") << true << true << u"i.csv"_s;
}

void tst_CPlainFileExporter::hardenedFilesGetTheirNamesWhenComplete()
{
    QFETCH(bool, perItem);
    QFETCH(bool, stopped);
    const QTemporaryDir temp;
    CPlainFileExporter sink(u".csv"_s, perItem);
    sink.setHardened(true);
    QVERIFY(sink.initExporter(QDir(temp.path()), u"Ann"_s, u"T"_s));
    QVERIFY(sink.itemExportBegin(u"i"_s));
    QVERIFY(sink.exportData(u"x"_s));
    QVERIFY(QDir(temp.filePath(u"T"_s)).entryList(QDir::Files).isEmpty());
    QVERIFY(sink.itemExportEnd());
    if (stopped)
        sink.setStopped();
    QVERIFY(sink.finish(true));
    QTEST(Files::tree(temp.filePath(u"T"_s)).join(u'|'), "left");
    QCOMPARE(QFileInfo::exists(temp.filePath(u"T"_s)), perItem || !stopped);
}

QTEST_GUILESS_MAIN(tst_CPlainFileExporter)
#include "tst_CPlainFileExporter.moc"
