#include "BackupFixture.h"
#include "auto/sample/SqliteRows.h"
#include "sample/NoteRecord.h"
#include "sample/NoteSample.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kNotes = 9;
constexpr int kNoteFiles = 18;
const QString kDomain = u"AppDomainGroup-group.com.apple.notes"_s;
const QString kStore = u"NoteStore.sqlite"_s;

QString realStore()
{
    const QString given = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    return (given.isEmpty() ? QDir(QStringLiteral(TEST_SOURCE_DIR)).filePath(u"../../shared/real"_s)
                            : given)
        + u"/notes/NoteStore.sqlite"_s;
}

} // namespace

class tst_Notes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readsEveryStore_data();
    void readsEveryStore();
    void readsDamagedStores_data();
    void readsDamagedStores();
    void readsARealStore();
};

void tst_Notes::initTestCase()
{
    qputenv("TZ", "America/New_York"); // times are local ones
    ::tzset();
}

void tst_Notes::readsEveryStore_data()
{
    QTest::addColumn<int>("release");
    for (const int release : { 6, 9, 10, 12, 14, 15, 16, 18 })
        QTest::addRow("iOS %d", release) << release;
}

void tst_Notes::readsEveryStore()
{
    QFETCH(int, release);
    constexpr int kFirstOfNewStore = 9;
    Sample::Options options;
    options.notes = 6;
    options.plannerRelease = release;
    BackupFixture fixture;
    Sample::addNotes(fixture.writer, options);
    const QStringList rows = fixture.table(kNotes);
    const QByteArray problems = fixture.problems().join(u'\n').toUtf8();
    QVERIFY2(rows.size() == 6, problems.constData());
    QStringList heads;
    for (const QString &row : rows)
        heads.append(row.section(u'|', 0, 3)
                     + (row.endsWith("[deleted]"_L1) ? u" x"_s : QString()));
    const bool isOld = release < kFirstOfNewStore;
    QCOMPARE(
        heads,
        QStringList({ u"Before we cast off|Boats|2023-06-17 04:15|2023-06-17 05:15"_s,
                      u"Tides this week|Boats|2023-06-08 04:15|2023-06-08 05:15"_s,
                      (isOld ? u"Mooring sketch|Repairs"_s : u"Mooring sketch|Boats/Repairs"_s)
                          + u"|2023-05-30 04:15|2023-05-30 05:15"_s,
                      u"Words & signs <b>|Notes|2023-05-21 04:15|2023-05-21 05:15"_s,
                      u"Alarm code|Notes|2023-05-12 04:15|2023-05-12 05:15"_s,
                      (isOld ? u"Old packing list|Notes"_s : u"Old packing list|Recently Deleted"_s)
                          + u"|2023-05-03 04:15|2023-05-03 05:15 x"_s }));
    QVERIFY(rows[3].contains(
        u"Grüße 🌊 後で 👨‍👩‍👧‍👦, “quoted”, 1 < 2 & 3 > 2/صباح النور"_s));
    QVERIFY(rows[3].endsWith("crew@marigold.example"_L1));
    QVERIFY(rows[1].contains(
        "the tide tables (https://tide-and-timber.example/tides?week=24&view=all):"_L1));
    if (!isOld) {
        QVERIFY(rows[0].contains(u"/☑ Bilge dry/☑ Fuel/\u00A0\u00A0\u00A0\u00A0☑ main tank/"_s));
        QVERIFY(rows[1].contains(
            u":/Day | Morning | Evening/Saturday | 06:12 | 18:40/Sunday | 06:58 | /The ferry"_s));
        QVERIFY(rows[2].contains(u"/[Picture: mooring.jpg]/The ring"_s));
        QVERIFY(rows[2].contains(u"/[Drawing]/#marigold/[Scan: Harbour fees]/"_s));
        QVERIFY(rows[4].endsWith(
            u"|[Locked note]/Hint: the first boat"_s
            + (release < 17 ? QString() : u"/Beginning: Four digits, then the bell key"_s)));
        QCOMPARE(fixture.list(kNoteFiles),
                 QStringList({ u"Mooring sketch/mooring.jpg"_s,
                               u"Mooring sketch/Drawing.jpg"_s,
                               u"Mooring sketch/Harbour fees.pdf"_s }));
    } else {
        QCOMPARE(fixture.list(kNoteFiles), QStringList());
    }
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Notes::readsDamagedStores_data()
{
    QTest::addColumn<int>("eighths");
    QTest::addColumn<bool>("isOverwritten"); // else cut
    for (int eighths = 1; eighths < 8; ++eighths) {
        QTest::addRow("cut at %d eighths", eighths) << eighths << false;
        QTest::addRow("a page overwritten at %d eighths", eighths) << eighths << true;
    }
}

void tst_Notes::readsDamagedStores()
{
    QFETCH(int, eighths);
    QFETCH(bool, isOverwritten);
    constexpr int kCount = 300;
    constexpr qsizetype kPage = 4096;
    static const QByteArray whole = [] {
        QByteArray sql =
            "CREATE TABLE ZICCLOUDSYNCINGOBJECT (Z_PK INTEGER PRIMARY KEY, Z_ENT, ZTITLE1);"
            "CREATE TABLE ZICNOTEDATA (Z_PK INTEGER PRIMARY KEY, ZNOTE, ZDATA);"
            "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME);"
            "INSERT INTO Z_PRIMARYKEY VALUES (7,'ICNote');";
        for (int i = 1; i <= kCount; ++i) {
            const QByteArray number = QByteArray::number(i);
            const QString text = u"Body "_s.repeated(20) + QString::number(i);
            sql += "INSERT INTO ZICCLOUDSYNCINGOBJECT VALUES (" + number
                + ",7,'A title of a note');"
                  "INSERT INTO ZICNOTEDATA VALUES ("
                + number + ',' + number + ",x'"
                + Sample::gzipped(Sample::noteDocument({ { text } })).toHex() + "');";
        }
        return BackupFixture::database(sql.constData());
    }();
    QByteArray image = whole;
    const qsizetype at = image.size() / kPage * eighths / 8 * kPage;
    if (isOverwritten)
        image.replace(at, kPage, QByteArray(kPage, '\x55'));
    else
        image.truncate(at);
    BackupFixture fixture;
    fixture.writer.addFile(kDomain, kStore, image);
    fixture.writer.addFile(u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/IMG_1.JPG"_s, "x");
    const QStringList rows = fixture.table(kNotes);
    QVERIFY(rows.size() <= kCount);
    if (isOverwritten)
        QVERIFY2(rows.size() > kCount / 2, qPrintable(QString::number(rows.size())));
    QVERIFY(fixture.problems().join(u'\n').contains("9 AppDomainGroup"_L1));
    QCOMPARE(fixture.list(0).size(), 1);
}

void tst_Notes::readsARealStore()
{
    const QString path = realStore();
    if (!QFileInfo::exists(path))
        QSKIP("no real store: set DATAEXPORT_REAL_DATA to where it is");
    BackupFixture fixture;
    fixture.writer.addFile(kDomain, kStore, Files::read(path));
    const auto wanted = sqliteRows(
        path,
        "SELECT n.ZTITLE1, ifnull(f.ZTITLE2, ''), ifnull(f.ZFOLDERTYPE, 0) = 1 OR "
        "ifnull(n.ZMARKEDFORDELETION, 0) = 1, ifnull(n.ZISPASSWORDPROTECTED, 0), "
        "substr(d.ZDATA, 1, 2) = x'1f8b', length(d.ZDATA) > 0 FROM ZICCLOUDSYNCINGOBJECT n JOIN "
        "Z_PRIMARYKEY e ON "
        "e.Z_ENT "
        "= n.Z_ENT AND e.Z_NAME = 'ICNote' LEFT JOIN ZICNOTEDATA d ON d.Z_PK = n.ZNOTEDATA LEFT "
        "JOIN ZICCLOUDSYNCINGOBJECT f ON f.Z_PK = n.ZFOLDER");
    QVERIFY(!wanted.isEmpty());
    const QStringList rows = fixture.table(kNotes);
    QCOMPARE(rows.size(), wanted.size());
    for (const QByteArrayList &note : wanted) {
        const QString head = QString::fromUtf8(note[0] + '|' + note[1] + '|');
        const QStringList found = rows.filter(head);
        QVERIFY2(found.size() == 1 && found.first().startsWith(head), qPrintable(head));
        QCOMPARE(found.first().endsWith(" [deleted]"_L1), note[2] == "1");
        QCOMPARE(found.first().contains("[Locked note]"_L1), note[3] == "1");
        const bool isDamaged = note[3] != "1" && note[5] == "1" && note[4] != "1";
        QCOMPARE(found.first().contains("[Damaged note]"_L1), isDamaged);
    }
}

QTEST_GUILESS_MAIN(tst_Notes)
#include "tst_Notes.moc"
