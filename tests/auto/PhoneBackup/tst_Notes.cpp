#include "BackupFixture.h"
#include "auto/sample/SqliteRows.h"
#include "sample/NoteRecord.h"
#include "sample/NoteSample.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using Sample::NoteRun;

namespace {

constexpr int kNotes = 9;
constexpr int kNoteFiles = 18;
const QString kDomain = u"AppDomainGroup-group.com.apple.notes"_s;
const QString kStore = u"NoteStore.sqlite"_s;
const QString kHere = QString(QChar::ObjectReplacementCharacter); // where an attachment stands
const QString kOldStore = u"Library/Notes/notes.sqlite"_s;

// The columns that the rows of the tests below need.
const QByteArray kTables =
    "CREATE TABLE ZICCLOUDSYNCINGOBJECT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER,"
    " ZISPASSWORDPROTECTED, ZMARKEDFORDELETION, ZNOTE, ZNOTE1, ZMEDIA, ZFOLDER, ZNOTEDATA,"
    " ZPARENT, ZOWNER, ZACCOUNT7, ZFOLDERTYPE, ZPARENTATTACHMENT, ZCREATIONDATE3,"
    " ZMODIFICATIONDATE1, ZIDENTIFIER, ZPASSWORDHINT, ZTITLE, ZTITLE1, ZTITLE2, ZUSERTITLE,"
    " ZSNIPPET, ZWIDGETSNIPPET, ZTYPEUTI, ZFILENAME, ZURLSTRING, ZFALLBACKIMAGEGENERATION,"
    " ZFALLBACKPDFGENERATION, ZMERGEABLEDATA1);"
    "CREATE TABLE ZICNOTEDATA (Z_PK INTEGER PRIMARY KEY, ZNOTE, ZCRYPTOTAG, ZDATA);"
    "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME);"
    "INSERT INTO Z_PRIMARYKEY VALUES (4,'ICAttachment'),(5,'ICMedia'),(6,'ICAccount'),(7,'ICNote'),"
    "(8,'ICFolder');"
    "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK, Z_ENT, ZTITLE2, ZFOLDERTYPE, ZPARENT, ZIDENTIFIER)"
    " VALUES (1,8,'Notes',0,NULL,'a'), (2,8,'Boats',0,NULL,'b'), (3,8,'Repairs',0,2,'c'),"
    " (4,8,'Recently Deleted',1,NULL,'d'), (5,8,'Trash of an account',0,NULL,'TrashFolder-X'),"
    " (6,8,'In the trash',0,4,'e'), (7,8,'Circle',0,8,'f'), (8,8,'of folders',0,7,'g');";

QByteArray hex(const QByteArray &bytes)
{
    return "x'" + bytes.toHex() + '\'';
}

QByteArray packed(const QString &text)
{
    return Sample::gzipped(Sample::noteDocument({ { text } }));
}

// A note "Title" with further columns, which replace the usual ones, and its record.
QByteArray note(int key, const QByteArray &assignments, const QByteArray &data)
{
    const QByteArray number = QByteArray::number(key);
    return "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK, Z_ENT, ZTITLE1, ZFOLDER, ZNOTEDATA,"
           " ZMODIFICATIONDATE1) VALUES ("
        + number + ",7,'Title',1," + number + ",700000000 + " + number + ");"
        + (assignments.isEmpty() ? QByteArray()
                                 : "UPDATE ZICCLOUDSYNCINGOBJECT SET " + assignments
                   + " WHERE Z_PK = " + number + ';')
        + "INSERT INTO ZICNOTEDATA(Z_PK, ZNOTE, ZDATA) VALUES (" + number + ',' + number + ','
        + data + ");";
}

// A row without its times.
QString withoutDates(QString line)
{
    static const QRegularExpression kDate(u"\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d"_s);
    return line.remove(kDate).remove(QChar(QChar::Nbsp));
}

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
    void readsRows_data();
    void readsRows();
    void readsFiles();
    void readsBothStores();
    void ordersByChangeAndNamesColumns();
    void readsOddStores_data();
    void readsOddStores();
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

void tst_Notes::readsRows_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::addColumn<QStringList>("expected"); // without dates
    QTest::addColumn<bool>("isLossTold");

    const QByteArray text = hex(packed(u"Title\nbody"_s));
    const auto row = [](const char *name,
                        const QByteArray &sql,
                        const QStringList &expected,
                        bool isLossTold = false) {
        QTest::newRow(name) << sql << expected << isLossTold;
    };
    row("plain", note(20, {}, text), { u"Title|Notes|||Title/body"_s });
    row("folder in a folder",
        note(20, "ZFOLDER = 3", text),
        { u"Title|Boats/Repairs|||Title/body"_s });
    row("folders in a circle",
        note(20, "ZFOLDER = 7", text),
        { u"Title|of folders/Circle|||Title/body"_s });
    row("no such folder", note(20, "ZFOLDER = 99", text), { u"Title||||Title/body"_s });
    row("in the trash",
        note(20, "ZFOLDER = 4", text),
        { u"Title|Recently Deleted|||Title/body [deleted]"_s });
    row("in the trash of an account",
        note(20, "ZFOLDER = 5", text),
        { u"Title|Trash of an account|||Title/body [deleted]"_s });
    row("in a folder in the trash",
        note(20, "ZFOLDER = 6", text),
        { u"Title|Recently Deleted/In the trash|||Title/body [deleted]"_s });
    row("marked for deletion",
        note(20, "ZMARKEDFORDELETION = 1", text),
        { u"Title|Notes|||Title/body [deleted]"_s });
    row("marked, without title and text",
        note(20, "ZMARKEDFORDELETION = 1, ZTITLE1 = NULL", "NULL"),
        {});
    row("empty but not marked", note(20, "ZTITLE1 = NULL", "NULL"), { u"|Notes|||"_s });
    row("without a title", note(20, "ZTITLE1 = ''", text), { u"Title|Notes|||Title/body"_s });
    row("locked",
        note(20, "ZISPASSWORDPROTECTED = 1, ZPASSWORDHINT = 'dog'", "x'0011'"),
        { u"Title|Notes|||[Locked note]/Hint: dog"_s });
    row("locked, newer form",
        note(20, "ZISPASSWORDPROTECTED = 1", hex("bplist00")),
        { u"Title|Notes|||[Locked note]"_s });
    const QByteArray account = "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK, Z_ENT, ZPASSWORDHINT)"
                               " VALUES (9,6,'cat');";
    row("locked, hint of the account",
        account + note(20, "ZISPASSWORDPROTECTED = 1, ZACCOUNT7 = 9", "x'0011'"),
        { u"Title|Notes|||[Locked note]/Hint: cat"_s });
    row("locked, hint of the folder's account",
        account + "UPDATE ZICCLOUDSYNCINGOBJECT SET ZOWNER = 9 WHERE Z_PK = 1;"
            + note(20, "ZISPASSWORDPROTECTED = 1", "x'0011'"),
        { u"Title|Notes|||[Locked note]/Hint: cat"_s });
    row("locked, hints of both",
        account
            + note(20, "ZISPASSWORDPROTECTED = 1, ZACCOUNT7 = 9, ZPASSWORDHINT = 'dog'", "x'0011'"),
        { u"Title|Notes|||[Locked note]/Hint: dog"_s });
    row("locked, its beginning in the list",
        note(20, "ZISPASSWORDPROTECTED = 1, ZWIDGETSNIPPET = 'Title\nThe pin\nis'", "x'0011'"),
        { u"Title|Notes|||[Locked note]/Beginning: The pin/is"_s });
    row("locked, nothing but the title in the list",
        note(20, "ZISPASSWORDPROTECTED = 1, ZWIDGETSNIPPET = 'Title'", "x'0011'"),
        { u"Title|Notes|||[Locked note]"_s });
    row("locked without the mark",
        note(20, {}, "x'0011'") + "UPDATE ZICNOTEDATA SET ZCRYPTOTAG = x'00';",
        { u"Title|Notes|||[Locked note]"_s });
    row("locked without the mark, newer form",
        note(20, {}, hex("bplist00")),
        { u"Title|Notes|||[Locked note]"_s });
    row("damaged",
        note(20, "ZSNIPPET = 'the start'", "x'0011'"),
        { u"Title|Notes|||[Damaged note]/Beginning: the start"_s },
        true);
    row("damaged, without a title",
        note(20, "ZTITLE1 = NULL", "x'0011'"),
        { u"|Notes|||[Damaged note]"_s },
        true);
    row("text in the cloud only, its beginning in the list",
        note(20, "ZWIDGETSNIPPET = 'Title\nthe start'", "NULL"),
        { u"Title|Notes|||the start"_s });
    row("text in the cloud only",
        note(20, "ZSNIPPET = 'the start'", "NULL"),
        { u"Title|Notes|||the start"_s });
    row("cut record",
        note(20, {}, hex(packed(u"Title\nbody"_s).first(15))),
        { u"Title|Notes|||[Damaged note]"_s },
        true);
    row("record of something else",
        note(20, {}, hex(Sample::gzipped("\xff\xff\xff"))),
        { u"Title|Notes|||[Damaged note]"_s },
        true);
    row("a gzip bomb",
        note(20, {}, hex(Sample::gzipped(QByteArray(100 << 20, '\0')))),
        { u"Title|Notes|||[Damaged note]"_s },
        true);
    row("dates that are none",
        note(20, "ZCREATIONDATE3 = 'soon', ZMODIFICATIONDATE1 = 9e18", text),
        { u"Title|Notes|||Title/body"_s });
    row("a kind that is not known", note(20, "Z_ENT = 77", text), {});
    const QByteArray insets = hex(Sample::gzipped(Sample::noteDocument(
        { { QString(QChar(0xFFFC)), -1, 0, false, false, {}, u"url"_s, u"public.url"_s },
          { u" "_s },
          { QString(QChar(0xFFFC)), -1, 0, false, false, {}, u"lost"_s, u"public.png"_s },
          { QString(QChar(0xFFFC)),
            -1,
            0,
            false,
            false,
            {},
            u"tab"_s,
            u"com.apple.notes.table"_s } })));
    row("attachments without a file",
        note(20, {}, insets)
            + "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK, Z_ENT, ZNOTE, ZIDENTIFIER, ZTYPEUTI, ZTITLE,"
              " ZURLSTRING) VALUES (30,4,20,'url','public.url','Boats','https://a.example'),"
              " (31,4,20,'tab','com.apple.notes.table',NULL,NULL);",
        { u"Title|Notes|||[Link: Boats: https://a.example] [Picture][Table]"_s });
    row("a table that is damaged",
        note(20, {}, insets)
            + "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK, Z_ENT, ZNOTE, ZIDENTIFIER, ZTYPEUTI, "
              "ZMERGEABLEDATA1) VALUES (31,4,20,'tab','com.apple.notes.table',x'1f8b0800');",
        { u"Title|Notes|||[Link] [Picture][Table]"_s },
        true);
}

void tst_Notes::readsRows()
{
    QFETCH(QByteArray, sql);
    QFETCH(QStringList, expected);
    QFETCH(bool, isLossTold);
    BackupFixture fixture;
    fixture.writer.addFile(kDomain, kStore, BackupFixture::database((kTables + sql).constData()));
    QStringList rows = fixture.table(kNotes);
    for (QString &row : rows)
        row = withoutDates(row);
    QCOMPARE(rows, expected);
    const QString problems = fixture.problems().join(u'\n');
    QVERIFY2(isLossTold == problems.contains("(loss)"_L1), qPrintable(problems));
}

void tst_Notes::readsFiles()
{
    BackupFixture fixture;
    const QByteArray text = hex(packed(u"body"_s));
    const QByteArray withTable = hex(
        Sample::gzipped(Sample::noteDocument({ { kHere, -1, 0, false, false, {}, u"table"_s } })));
    const QByteArray sql = kTables + note(20, "ZTITLE1 = 'Two/three'", text)
        + note(21, {}, withTable) + note(22, "ZFOLDER = 4, ZTITLE1 = 'Gone'", text)
        + note(23, "ZISPASSWORDPROTECTED = 1", "x'00'")
        + "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK, Z_ENT, ZNOTE, ZMEDIA, ZIDENTIFIER, ZTYPEUTI,"
          " ZPARENTATTACHMENT) VALUES (30,4,20,40,'A','public.png',NULL), "
          "(31,4,21,41,'B','x',NULL),"
          " (32,4,20,42,'C','x',NULL), (33,4,22,43,'D','x',NULL), (34,4,23,44,'E','x',NULL),"
          " (35,4,NULL,45,'F','x',36), (36,4,21,NULL,'G','x',35), (37,4,NULL,NULL,'H','x',37),"
          " (38,4,21,NULL,'I','com.apple.drawing',NULL), (39,4,23,NULL,'J','com.apple.paper',NULL),"
          " (50,4,23,NULL,'K','public.url',NULL), (51,4,21,NULL,'L','com.apple.paper',NULL),"
          " (52,4,NULL,46,'N','x',NULL), (53,4,NULL,47,'P','public.jpeg',NULL),"
          " (54,4,21,NULL,'table','com.apple.notes.table',NULL);"
          "UPDATE ZICCLOUDSYNCINGOBJECT SET ZNOTE1 = 20 WHERE Z_PK = 52;"
          "UPDATE ZICCLOUDSYNCINGOBJECT SET ZMERGEABLEDATA1 = "
        + hex(Sample::gzipped(Sample::tableDocument({ { kHere + u'P' } })))
        + " WHERE Z_PK = 54;"
          "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK, Z_ENT, ZNOTE, ZIDENTIFIER, ZTYPEUTI,"
          " ZFALLBACKPDFGENERATION, ZTITLE, ZUSERTITLE) VALUES"
          " (60,4,20,'S0','com.apple.paper.doc.scan','1_GEN','Scanned','Bill'),"
          " (61,4,20,'S1','com.apple.paper.doc.scan',NULL,NULL,NULL),"
          " (62,4,20,'S2','com.apple.paper.doc.pdf',NULL,'Form.PDF',NULL),"
          " (63,4,20,'S3','com.apple.paper.doc.pdf',NULL,NULL,NULL),"
          " (64,4,20,'S4','com.apple.paper.doc.scan',NULL,NULL,NULL);"
          "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK, Z_ENT, ZIDENTIFIER, ZFILENAME) VALUES"
          " (40,5,'M0','a.png'), (41,5,'M1','b.png'), (42,5,'M2','a.png'), (43,5,'M3','../g.pdf'),"
          " (44,5,'M4','secret.png'), (45,5,'M5','page.jpg'),"
          " (46,5,'M6','inline.png'), (47,5,'M7','cell.jpg');";
    fixture.writer.addFile(kDomain, kStore, BackupFixture::database(sql.constData()));
    for (const char *path : { "Accounts/X/Media/M0/1_GEN/a.png", // since iOS 17
                              "Accounts/X/Media/M0/1_GEN/other.png",
                              "Media/M2/a.png", // without an account
                              "Accounts/X/Media/M3/g.pdf",
                              "Accounts/X/Media/M4/secret.png",
                              "Accounts/X/Media/M5/page.jpg",
                              "Accounts/X/Media/M9/stray.png",
                              "Accounts/X/Previews/M0.png",
                              "Accounts/X/Media/M6/inline.png",
                              "Accounts/X/Media/M7/cell.jpg",
                              "Accounts/X/FallbackImages/I.jpg",
                              "Accounts/X/FallbackImages/J.png.encrypted", // of a locked note
                              "Accounts/X/FallbackImages/S0.jpg", // the PDF shows all of it
                              "Accounts/X/FallbackPDFs/S0/1_GEN/FallbackPDF.pdf",
                              "Accounts/X/FallbackPDFs/S0/2_GEN/FallbackPDF.pdf",
                              "Accounts/X/FallbackPDFs/S1.pdf",
                              "Accounts/X/FallbackPDFs/S2/FallbackPDF.pdf",
                              "Accounts/X/FallbackPDFs/S3/9_GEN/FallbackPDF.pdf",
                              "Accounts/X/FallbackPDFs/S3/10_GEN/FallbackPDF.pdf",
                              "Accounts/X/FallbackPDFs/S9/FallbackPDF.pdf" })
        fixture.writer.addFile(kDomain, QString::fromLatin1(path), path);
    QCOMPARE(fixture.list(kNoteFiles),
             QStringList({ u"Gone/_g.pdf [deleted]"_s,
                           u"Title/page.jpg"_s, // of a scan, which belongs to the note
                           u"Title/Drawing.jpg"_s,
                           u"Title/cell.jpg"_s, // of a table, likewise
                           u"Two_three/a.png"_s,
                           u"Two_three/a (2).png"_s,
                           u"Two_three/inline.png"_s,
                           u"Two_three/Bill.pdf"_s,
                           u"Two_three/Scan.pdf"_s,
                           u"Two_three/Form.PDF"_s,
                           u"Two_three/Document.pdf"_s,
                           u"Other/FallbackPDF.pdf"_s,
                           u"Other/other.png"_s,
                           u"Other/stray.png"_s }));
    QCOMPARE(fixture.problems(),
             QStringList({ u"18 Title/[Picture: b.png] (31) (never downloaded)"_s,
                           u"18 Title/[Picture: secret.png] (34)"_s,
                           u"18 Title/[Drawing] (39)"_s,
                           u"18 Title/[Drawing] (51) (never downloaded)"_s,
                           u"18 Two/three/[Scan] (64) (never downloaded)"_s }));
    QStringList generations;
    for (const BkAbstractItem *item : fixture.open()->getBkData(kNoteFiles)->recoverFileList()) {
        const auto *file = dynamic_cast<const BkFileItem *>(item);
        QVERIFY(file);
        const QString path = QString::fromUtf8(Files::read(file->filePath()));
        if (path.contains("_GEN/Fallback"_L1))
            generations.append(item->value(0) + u' ' + path.section(u'/', -2, -2));
    }
    QCOMPARE(generations, QStringList({ u"Bill.pdf 1_GEN"_s, u"Document.pdf 10_GEN"_s }));
}

void tst_Notes::readsBothStores()
{
    BackupFixture fixture;
    fixture.writer.addFile(
        kDomain,
        kStore,
        BackupFixture::database(
            (kTables + note(20, "ZCREATIONDATE3 = 400000000", hex(packed(u"new"_s)))).constData()));
    fixture.writer.addFile(
        u"HomeDomain"_s,
        kOldStore,
        BackupFixture::database(
            "CREATE TABLE ZNOTE (Z_PK INTEGER PRIMARY KEY, ZTITLE, ZCREATIONDATE, ZDELETEDFLAG,"
            " ZISBOOKKEEPINGENTRY, ZBODY);"
            "CREATE TABLE ZNOTEBODY (Z_PK INTEGER PRIMARY KEY, ZOWNER, ZCONTENT);"
            "INSERT INTO ZNOTE VALUES (1,'Title',400000000,0,0,1), (2,'Mail',400000000,0,NULL,2),"
            " (3,'Gone',300000000,1,0,3), (4,'No note',1,0,1,4), (5,'Linked back',200000000,0,0,9);"
            "INSERT INTO ZNOTEBODY VALUES (1,1,'upgraded'), (2,2,'<b>a</b><div>b</div>'),"
            " (3,3,'x'), (4,4,'x'), (9,NULL,'by body')"));
    QStringList rows = fixture.table(kNotes);
    for (QString &row : rows)
        row = withoutDates(row);
    QCOMPARE(rows,
             QStringList({ u"Title|Notes|||new"_s,
                           u"Mail||||a/b"_s,
                           u"Gone||||x [deleted]"_s,
                           u"Linked back||||by body"_s }));
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Notes::ordersByChangeAndNamesColumns()
{
    BackupFixture fixture;
    const QByteArray sql =
        kTables + note(20, "ZMODIFICATIONDATE1 = NULL, ZTITLE1 = 'undated'", "NULL")
        + note(21, "ZMODIFICATIONDATE1 = 600000000, ZTITLE1 = 'old'", "NULL")
        + note(
            22, "ZMODIFICATIONDATE1 = NULL, ZCREATIONDATE3 = 650000000, ZTITLE1 = 'made'", "NULL")
        + note(23, "ZMODIFICATIONDATE1 = 700000000.5, ZTITLE1 = 'new'", "NULL");
    fixture.writer.addFile(kDomain, kStore, BackupFixture::database(sql.constData()));
    const BkData *data = fixture.open()->getBkData(kNotes);
    QStringList titles;
    for (const int row : data->recoverList())
        titles.append(data->value(row, 0) + u' ' + QString::number(data->at(row, true)->id()));
    QCOMPARE(titles.join(u", "_s), u"new 23, made 22, old 21, undated 20"_s);
    QStringList names;
    for (int column = 0; column < data->column(); ++column)
        names.append(data->columnName(column));
    QCOMPARE(names.join(u", "_s), u"Title, Folder, Created, Modified, Text"_s);
    QCOMPARE(data->value(0, 3), u"2023-03-08 15:26"_s); // of New York
}

void tst_Notes::readsOddStores_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<bool>("isLossTold");

    const auto row =
        [](const char *name, const QByteArray &sql, const QStringList &expected, bool isLossTold) {
            QTest::newRow(name) << (sql.isNull() ? QByteArray()
                                                 : BackupFixture::database(sql.constData()))
                                << expected << isLossTold;
        };
    const QByteArray whole = kTables + note(20, {}, hex(packed(u"body"_s)));
    QTest::newRow("empty file") << QByteArray("") << QStringList() << true;
    QTest::newRow("no database") << QByteArray(9000, 'x') << QStringList() << true;
    row("no tables", "CREATE TABLE t (a)", {}, true);
    row("no notes", kTables, {}, false);
    row("no table of texts", whole + "DROP TABLE ZICNOTEDATA", { u"Title|Notes|||"_s }, true);
    row("no table of objects",
        whole + "DROP TABLE ZICCLOUDSYNCINGOBJECT",
        { u"body||||body"_s },
        true);
    row("no table of kinds", whole + "DROP TABLE Z_PRIMARYKEY", { u"Title|Notes|||body"_s }, false);
    const auto without = [&](const char *column, const QString &expected) {
        QTest::addRow("without %s", column) << BackupFixture::database(
            (whole + "ALTER TABLE ZICCLOUDSYNCINGOBJECT DROP COLUMN " + column).constData())
                                            << QStringList(expected) << false;
    };
    without("ZTITLE1", u"body|Notes|||body"_s);
    without("ZFOLDER", u"Title||||body"_s);
    without("ZNOTEDATA", u"Title|Notes|||body"_s);
    without("ZMODIFICATIONDATE1", u"Title|Notes|||body"_s);
    without("ZTITLE2", u"Title||||body"_s);
}

void tst_Notes::readsOddStores()
{
    QFETCH(QByteArray, image);
    QFETCH(QStringList, expected);
    QFETCH(bool, isLossTold);
    BackupFixture fixture;
    fixture.writer.addFile(kDomain, kStore, image);
    fixture.writer.addFile(kDomain, u"Accounts/X/Media/M/1.png"_s, "x");
    QStringList rows = fixture.table(kNotes);
    for (QString &row : rows)
        row = withoutDates(row);
    QCOMPARE(rows, expected);
    QCOMPARE(fixture.list(kNoteFiles), QStringList(u"Other/1.png"_s)); // whatever the database
    const QString problems = fixture.problems().join(u'\n');
    QVERIFY2(isLossTold == problems.contains("9 "_L1), qPrintable(problems));
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
        QByteArray sql = kTables;
        for (int i = 0; i < kCount; ++i)
            sql += note(20 + i, {}, hex(packed(u"Body "_s.repeated(20) + QString::number(i))));
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
