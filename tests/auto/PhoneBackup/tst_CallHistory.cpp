#include "BackupFixture.h"
#include "auto/sample/SqliteRows.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCalls = 15;
const QString kHome = u"HomeDomain"_s;
const QString kStore = u"Library/CallHistoryDB/CallHistory.storedata"_s;

const QByteArray kTable = "CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY, ZADDRESS, ZNAME, "
                          "ZDATE, ZDURATION, ZORIGINATED, ZANSWERED, ZUNIQUE_ID);";

QByteArray store(const QByteArray &rows)
{
    return BackupFixture::database(
        (kTable + "INSERT INTO ZCALLRECORD VALUES " + rows + ';').constData());
}

//! The rows of the table: cells parted by "|".
QStringList calls(BackupFixture &fixture)
{
    PhoneItems::Backup *backup = fixture.open();
    QStringList lines;
    const BkData *data = backup ? backup->getBkData(kCalls) : nullptr;
    for (int row = 0; data && row < data->count(1); ++row) {
        QStringList cells;
        for (int column = 0; column < data->column(); ++column)
            cells.append(data->value(row, column));
        lines.append(cells.join(u'|'));
    }
    return lines;
}

} // namespace

class tst_CallHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void saysWhatABackupCannotHold_data();
    void saysWhatABackupCannotHold();
    void readsOnBehindADamagedPage();
    void readsRealCalls();
};

void tst_CallHistory::initTestCase()
{
    qputenv("TZ", "America/New_York");
    ::tzset();
}

void tst_CallHistory::saysWhatABackupCannotHold_data()
{
    QTest::addColumn<QString>("release");
    QTest::addColumn<bool>("hasStore");
    QTest::addColumn<bool>("said");

    QTest::newRow("newer phone") << u"14.3"_s << false << true;
    QTest::newRow("first of the newer ones") << u"13.0"_s << false << true;
    QTest::newRow("older phone") << u"12.5.7"_s << false << false;
    QTest::newRow("not known") << QString() << false << false;
    QTest::newRow("it is there") << u"17.1"_s << true << false;
}

void tst_CallHistory::saysWhatABackupCannotHold()
{
    QFETCH(QString, release);
    QFETCH(bool, hasStore);
    QFETCH(bool, said);
    BackupFixture fixture;
    fixture.writer.setInfo(u"Product Version"_s, release);
    fixture.writer.setManifest(u"Lockdown"_s, QVariant());
    fixture.writer.addFolder(kHome, u"Library"_s);
    if (hasStore)
        fixture.writer.addFile(kHome, kStore, BackupFixture::database(kTable.constData()));
    QCOMPARE(calls(fixture), QStringList());
    const QList<PhoneBackup::Problem> problems = fixture.open()->problems();
    QCOMPARE(problems.size(), 0); // none before it is looked for
    QCOMPARE(calls(fixture), QStringList());
    const auto found = fixture.problems();
    QCOMPARE(found, said ? QStringList { u"15 "_s } : QStringList());
}

// Pages in the middle of the file are overwritten: what lies before and behind them is there, and
// each call once.
void tst_CallHistory::readsOnBehindADamagedPage()
{
    QByteArrayList rows;
    for (int i = 1; i <= 2000; ++i) {
        const QByteArray number = QByteArray::number(i);
        rows.append('(' + number + ",'" + QByteArray(40, 'x') + number + "',NULL," + number
                    + ",0,0,1,'" + number + "')");
    }
    QByteArray content = store(rows.join(','));
    const qsizetype middle = content.size() / 2 / 4096 * 4096;
    content.replace(middle, 4096, QByteArray(4096, '\xff'));
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kStore, content);
    const QStringList found = calls(fixture);
    QVERIFY2(found.size() > 1500 && found.size() < 2000, qPrintable(QString::number(found.size())));
    QCOMPARE(QSet<QString>(found.begin(), found.end()).size(), found.size());
    QCOMPARE(fixture.problems().size(), 1);
}

void tst_CallHistory::readsRealCalls()
{
    const QString given = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    const QString root = given.isEmpty()
        ? QDir(QStringLiteral(TEST_SOURCE_DIR)).filePath(u"../../shared/real"_s)
        : given;
    const QString path = root + u"/calls/CallHistory.storedata"_s;
    if (!QFileInfo::exists(path))
        QSKIP("no real calls: set DATAEXPORT_REAL_DATA to where they are");
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kStore, Files::read(path));
    const QStringList found = calls(fixture);
    const auto rows = sqliteRows(path, "SELECT ZADDRESS FROM ZCALLRECORD ORDER BY ZDATE DESC");
    QCOMPARE(found.size(), rows.size());
    for (int i = 0; i < rows.size(); ++i) {
        const QString number = found[i].section(u'|', 1, 1);
        // A call without a number of its own is one of a group.
        QVERIFY2(rows[i][0].isEmpty() ? number.contains(u", "_s)
                                      : number == QString::fromUtf8(rows[i][0]),
                 qPrintable(found[i]));
    }
    QCOMPARE(fixture.problems(), QStringList());
}

QTEST_GUILESS_MAIN(tst_CallHistory)
#include "tst_CallHistory.moc"
