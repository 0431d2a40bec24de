#include "BackupFixture.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using Sample::FileTraits;

namespace {

constexpr int kVoiceMemos = 3;
constexpr int kAudio = 5;
constexpr int kAppDocuments = 10;
constexpr int kVoicemail = 16;

const QString kMemos = u"AppDomainGroup-group.com.apple.VoiceMemos.shared"_s;

FileTraits at(int year)
{
    FileTraits traits;
    traits.modified = QDateTime(QDate(year, 1, 2), QTime(3, 4), Qt::UTC);
    return traits;
}

struct TestFile
{
    const char *domain;
    const char *path;
};

} // namespace

class tst_DataTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void namesVoiceMemos_data();
    void namesVoiceMemos();
    void readsVoiceMemosOfAllPlaces();
    void showsLayersOnlyWithoutTheirRecording_data();
    void showsLayersOnlyWithoutTheirRecording();
    void namesVoicemail_data();
    void namesVoicemail();
    void namesVoicemailAfterKnownCallers();
    void readsVoicemailOfAccountsAndWithoutRows();
    void readsVoicemailWhateverTheDatabase_data();
    void readsVoicemailWhateverTheDatabase();
    void readsRingtonesAndMusic();
    void tellsAppDocuments_data();
    void tellsAppDocuments();
    void keepsAppsApart();
};

void tst_DataTypes::initTestCase()
{
    // Names hold local times: they must be those of the zone, not of UTC.
    qputenv("TZ", "America/New_York");
    ::tzset();
}

void tst_DataTypes::namesVoiceMemos_data()
{
    QTest::addColumn<QByteArray>("row"); // title, sorting label, label, evicted, path
    QTest::addColumn<QString>("expected");

    QTest::newRow("title") << QByteArray("'Shanty','b','c',NULL,'1.m4a'") << u"Shanty.m4a"_s;
    QTest::newRow("label for sorting")
        << QByteArray("'','Sorted','c',NULL,'1.m4a'") << u"Sorted.m4a"_s;
    QTest::newRow("old label") << QByteArray("NULL,NULL,'Old one',NULL,'1.m4a'")
                               << u"Old one.m4a"_s;
    QTest::newRow("the label is a time")
        << QByteArray("NULL,NULL,'2023-03-08T20:26:40Z',NULL,'1.m4a'") << u"1.m4a"_s;
    QTest::newRow("absolute path")
        << QByteArray("'T','','',NULL,'/var/mobile/Media/Recordings/1.m4a'") << u"T.m4a"_s;
    QTest::newRow("recently deleted")
        << QByteArray("'T','','',700000000,'1.m4a'") << u"T.m4a [deleted]"_s;
    QTest::newRow("hostile title") << QByteArray("'../../x','','',NULL,'1.m4a'") << u"_.._x.m4a"_s;
    QTest::newRow("a memo that was not downloaded")
        << QByteArray("'Far away','','',NULL,''") << u"1.m4a"_s;
    QTest::newRow("another file") << QByteArray("'Other','','',NULL,'2.m4a'") << u"1.m4a"_s;
}

void tst_DataTypes::namesVoiceMemos()
{
    QFETCH(QByteArray, row);
    QFETCH(QString, expected);
    for (const QByteArray table : { "ZCLOUDRECORDING", "ZRECORDING" }) {
        BackupFixture fixture;
        fixture.writer.addFile(kMemos, u"Recordings/1.m4a"_s, "sound");
        fixture.writer.addFile(
            kMemos,
            u"Recordings/CloudRecordings.db"_s,
            BackupFixture::database(
                ("CREATE TABLE " + table
                 + " (Z_PK INTEGER PRIMARY KEY, ZENCRYPTEDTITLE, ZCUSTOMLABELFORSORTING,"
                   " ZCUSTOMLABEL, ZEVICTIONDATE, ZPATH, ZDATE); INSERT INTO "
                 + table + " VALUES (5," + row + ", 700000000)")
                    .constData()));
        QCOMPARE(fixture.list(kVoiceMemos), QStringList(expected));
        QVERIFY(fixture.problems().isEmpty());
    }
}

void tst_DataTypes::readsVoiceMemosOfAllPlaces()
{
    BackupFixture fixture;
    const QString media = u"MediaDomain"_s;
    fixture.writer.addFile(kMemos, u"Recordings/new.qta"_s, "a", at(2012));
    fixture.writer.addFile(kMemos, u"Recordings/new.waveform"_s, "a");
    fixture.writer.addFile(media, u"Media/Recordings/20200102 030405-AB12.m4a"_s, "a", at(2001));
    fixture.writer.addFile(media, u"Library/Recordings/undated.m4a"_s, "a", at(2015));
    fixture.writer.addFile(media, u"Library/Recordings/.hidden.m4a"_s, "a");
    fixture.writer.addFile(
        media,
        u"Media/Recordings/Recordings.db"_s,
        BackupFixture::database("CREATE TABLE ZRECORDING (Z_PK INTEGER PRIMARY KEY, ZPATH, ZDATE,"
                                "ZCUSTOMLABEL); INSERT INTO ZRECORDING VALUES (3,"
                                "'/var/mobile/Media/Recordings/new.qta', 600000000, 'Newest')"));
    // 600000000 is in 2020, too, but after January.
    QCOMPARE(fixture.list(kVoiceMemos),
             QStringList({ u"Newest.qta"_s, u"20200102 030405-AB12.m4a"_s, u"undated.m4a"_s }));
    const BkAbstractItem *newest = fixture.open()->getBkData(kVoiceMemos)->at(0, true);
    QCOMPARE(newest->id(), 3);
    QCOMPARE(newest->date(), QDateTime(QDate(2020, 1, 6), QTime(10, 40), Qt::UTC));
    QCOMPARE(dynamic_cast<const BkFileItem *>(newest)->fileDate(), at(2012).modified);
    QCOMPARE(newest->source(), kMemos + u"/Recordings/new.qta"_s);
}

void tst_DataTypes::showsLayersOnlyWithoutTheirRecording_data()
{
    QTest::addColumn<QString>("main");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("recording there") << u"Recordings/1.m4a"_s << QStringList { u"Duet.m4a"_s };
    QTest::newRow("recording of the newer kind")
        << u"Recordings/1.qta"_s << QStringList { u"Duet.qta"_s };
    QTest::newRow("recording missing")
        << QString() << QStringList { u"Duet.m4a"_s, u"Duet (2).m4a"_s };
    QTest::newRow("another recording there")
        << u"Recordings/1.5.m4a"_s
        << QStringList { u"Duet.m4a"_s, u"Duet (2).m4a"_s, u"1.5.m4a"_s };
}

void tst_DataTypes::showsLayersOnlyWithoutTheirRecording()
{
    QFETCH(QString, main);
    QFETCH(QStringList, expected);
    BackupFixture fixture;
    if (!main.isEmpty())
        fixture.writer.addFile(kMemos, main, "whole", at(2010));
    for (const int layer : { 1, 2 }) {
        fixture.writer.addFile(
            kMemos, u"Recordings/1.composition/fragments/%1.m4a"_s.arg(layer), "part", at(2020));
    }
    fixture.writer.addFile(
        kMemos,
        u"Recordings/1.composition/manifest.plist"_s,
        Sample::binaryPropertyList(QVariantMap { { u"RCSavedRecordingTitle"_s, u"Duet"_s } }));
    QCOMPARE(fixture.list(kVoiceMemos), expected);
}

void tst_DataTypes::namesVoicemail_data()
{
    QTest::addColumn<QByteArray>("row"); // date, sender, callback_num, trashed_date
    QTest::addColumn<QString>("expected");

    QTest::newRow("sender") << QByteArray("1650000000,'+15550100','+15550199',0")
                            << u"2022-04-15 01-20 +15550100.amr"_s;
    QTest::newRow("winter time") << QByteArray("1640995200,'a','',0")
                                 << u"2021-12-31 19-00 a.amr"_s;
    QTest::newRow("number to call back")
        << QByteArray("1650000000,'','+15550199',0") << u"2022-04-15 01-20 +15550199.amr"_s;
    QTest::newRow("withheld") << QByteArray("1650000000,NULL,NULL,0")
                              << u"2022-04-15 01-20 Unknown.amr"_s;
    QTest::newRow("no date") << QByteArray("0,'+15550100','',0") << u"+15550100.amr"_s;
    QTest::newRow("impossible date") << QByteArray("9e18,'+15550100','',0") << u"+15550100.amr"_s;
    QTest::newRow("a text where a number is due")
        << QByteArray("'soon','+15550100','','never'") << u"+15550100.amr"_s;
    QTest::newRow("trashed") << QByteArray("1650000000,'a','',650000000")
                             << u"2022-04-15 01-20 a.amr [deleted]"_s;
    QTest::newRow("hostile sender")
        << QByteArray("1650000000,'../a','',0") << u"2022-04-15 01-20 .._a.amr"_s;
}

void tst_DataTypes::namesVoicemail()
{
    QFETCH(QByteArray, row);
    QFETCH(QString, expected);
    BackupFixture fixture;
    fixture.writer.addFile(u"HomeDomain"_s, u"Library/Voicemail/7.amr"_s, "#!AMR");
    fixture.writer.addFile(
        u"HomeDomain"_s,
        u"Library/Voicemail/voicemail.db"_s,
        BackupFixture::database(
            ("CREATE TABLE voicemail (ROWID INTEGER PRIMARY KEY, date INTEGER, sender TEXT,"
             " callback_num TEXT, trashed_date INTEGER); INSERT INTO voicemail VALUES (7,"
             + row + "), (8, 1650000000, 'not downloaded', '', 0)")
                .constData()));
    QCOMPARE(fixture.list(kVoicemail), QStringList(expected));
    QCOMPARE(fixture.open()->getBkData(kVoicemail)->at(0, true)->id(), 7);
}

void tst_DataTypes::namesVoicemailAfterKnownCallers()
{
    BackupFixture fixture;
    const QString home = u"HomeDomain"_s;
    for (const char *name : { "1.amr", "2.amr", "3.amr" })
        fixture.writer.addFile(home, u"Library/Voicemail/"_s + QString::fromLatin1(name), "#!AMR");
    fixture.writer.addFile(
        home,
        u"Library/Voicemail/voicemail.db"_s,
        BackupFixture::database("CREATE TABLE voicemail (ROWID INTEGER PRIMARY KEY, date, sender, "
                                "callback_num);"
                                "INSERT INTO voicemail VALUES (1, 3, '+12025550142', NULL),"
                                "(2, 2, '', '202 555 0142'), (3, 1, '+12025550143', NULL);"));
    fixture.writer.addFile(
        home,
        u"Library/AddressBook/AddressBook.sqlitedb"_s,
        BackupFixture::database("CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First, Last);"
                                "CREATE TABLE ABMultiValue (record_id, property, value);"
                                "INSERT INTO ABPerson VALUES (1, 'Ann', 'A/B');"
                                "INSERT INTO ABMultiValue VALUES (1, 3, '(202) 555-0142');"));
    QCOMPARE(fixture.list(kVoicemail),
             QStringList({ u"1969-12-31 19-00 Ann A_B.amr"_s,
                           u"1969-12-31 19-00 Ann A_B (2).amr"_s,
                           u"1969-12-31 19-00 +12025550143.amr"_s }));
}

void tst_DataTypes::readsVoicemailOfAccountsAndWithoutRows()
{
    BackupFixture fixture;
    const QString home = u"HomeDomain"_s;
    for (const char *name : { "1.amr", "2.amr", "acc/2.amr", "acc/3.amr", "4.amr", "greeting.amr" })
        fixture.writer.addFile(
            home, u"Library/Voicemail/"_s + QString::fromLatin1(name), "#!AMR", at(2019));
    fixture.writer.addFile(home, u"Library/Voicemail/1.transcript"_s, "text");
    fixture.writer.addFile(
        home,
        u"Library/Voicemail/voicemail.db"_s,
        BackupFixture::database("CREATE TABLE voicemail (ROWID INTEGER PRIMARY KEY, date, sender);"
                                "CREATE TABLE deleted (ROWID INTEGER PRIMARY KEY, date, sender);"
                                "INSERT INTO voicemail VALUES (1, 1500000000, 'old'),"
                                "(2, 1600000000, 'new'), (3, 1550000000, 'other account');"
                                "INSERT INTO deleted VALUES (2, 1, 'twice'),"
                                "(4, 1590000000, 'purged'), (5, 1590000000, 'gone')"));
    QCOMPARE(fixture.list(kVoicemail),
             QStringList({ u"2020-09-13 08-26 new.amr"_s,
                           u"2020-05-20 14-40 purged.amr [deleted]"_s,
                           u"2019-02-12 14-33 other account.amr"_s,
                           u"2.amr"_s, // of the other account: its row cannot be told
                           u"greeting.amr"_s,
                           u"2017-07-13 22-40 old.amr"_s }));
}

void tst_DataTypes::readsVoicemailWhateverTheDatabase_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("problem");
    QTest::newRow("absent") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << true;
    QTest::newRow("garbage") << QByteArray(5000, 'x') << true;
    QTest::newRow("no table") << BackupFixture::database("CREATE TABLE map (a)") << true;
    QTest::newRow("no columns") << BackupFixture::database("CREATE TABLE voicemail (a)") << false;
}

void tst_DataTypes::readsVoicemailWhateverTheDatabase()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, problem);
    BackupFixture fixture;
    const QString home = u"HomeDomain"_s;
    fixture.writer.addFile(home, u"Library/Voicemail/1.amr"_s, "#!AMR", at(2019));
    fixture.writer.addFile(home, u"Library/Voicemail/2.amr"_s, "#!AMR", at(2020));
    if (!content.isNull())
        fixture.writer.addFile(home, u"Library/Voicemail/voicemail.db"_s, content);
    QCOMPARE(fixture.list(kVoicemail), QStringList({ u"2.amr"_s, u"1.amr"_s }));
    const QStringList expected { u"16 HomeDomain/Library/Voicemail/voicemail.db"_s };
    QCOMPARE(fixture.problems(), problem ? expected : QStringList());
}

void tst_DataTypes::readsRingtonesAndMusic()
{
    BackupFixture fixture;
    for (const TestFile &file :
         { TestFile { "TonesDomain", "Media/iTunes_Control/Ringtones/ABCD.m4r" },
           TestFile { "TonesDomain", "Media/Purchases/EFGH.m4r" },
           TestFile { "MediaDomain", "Media/iTunes_Control/Music/F00/song.mp3" },
           TestFile { "MediaDomain", "Media/Recordings/memo.m4a" },
           TestFile { "MediaDomain", "Media/Notes/.hidden.mp3" },
           TestFile { "MediaDomain", "Media/iTunes_Control/Artwork/cover.jpg" },
           TestFile { "MediaDomain", "Library/SMS/Attachments/00/voice.amr" } })
        fixture.writer.addFile(
            QString::fromLatin1(file.domain), QString::fromLatin1(file.path), "sound");
    fixture.writer.addFile(
        u"TonesDomain"_s,
        u"Media/iTunes_Control/iTunes/Ringtones.plist"_s,
        Sample::xmlPropertyList(QVariantMap {
            { u"Ringtones"_s,
              QVariantMap { { u"ABCD.m4r"_s, QVariantMap { { u"Name"_s, u"Wake: up"_s } } },
                            { u"EFGH.m4r"_s, u"odd"_s } } } }));
    QCOMPARE(fixture.list(kAudio),
             QStringList({ u"EFGH.m4r"_s, u"song.mp3"_s, u"Wake_ up.m4r"_s }));
}

void tst_DataTypes::tellsAppDocuments_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected"); // empty: left out

    const QString files = u"AppDomainGroup-group.com.apple.FileProvider.LocalStorage"_s;
    QTest::newRow("document") << u"AppDomain-org.a"_s << u"Documents/x/y/Plan.pdf"_s
                              << u"org.a/Plan.pdf"_s;
    QTest::newRow("of a group") << u"AppDomainGroup-group.b"_s << u"Documents/1.txt"_s
                                << u"group.b/1.txt"_s;
    QTest::newRow("of the Files app")
        << files << u"File Provider Storage/Übersicht.txt"_s
        << u"group.com.apple.FileProvider.LocalStorage/Übersicht.txt"_s;
    QTest::newRow("its trash") << files << u"File Provider Storage/.Trash/a.txt"_s << QString();
    QTest::newRow("settings") << u"AppDomain-org.a"_s << u"Library/Preferences/a.plist"_s
                              << QString();
    QTest::newRow("hidden") << u"AppDomain-org.a"_s << u"Documents/.cache/a"_s << QString();
    QTest::newRow("cache") << u"AppDomain-org.a"_s << u"Documents/Caches/a"_s << QString();
    QTest::newRow("begins like it") << u"AppDomain-org.a"_s << u"DocumentsOld/a"_s << QString();
    QTest::newRow("extension") << u"AppDomainPlugin-org.a"_s << u"Documents/a"_s << QString();
    QTest::newRow("climbing up") << u"AppDomain-../../x"_s << u"Documents/../../y"_s
                                 << u"_.._x/y"_s;
    QTest::newRow("without a name") << u"AppDomain-"_s << u"Documents/a"_s << u"_/a"_s;
}

void tst_DataTypes::tellsAppDocuments()
{
    QFETCH(QString, domain);
    QFETCH(QString, path);
    QFETCH(QString, expected);
    BackupFixture fixture;
    fixture.writer.addFolder(u"AppDomain-org.a"_s, u"Documents/folder"_s);
    fixture.writer.addFile(domain, path, "x");
    QCOMPARE(fixture.list(kAppDocuments),
             expected.isEmpty() ? QStringList() : QStringList(expected));
}

void tst_DataTypes::keepsAppsApart()
{
    BackupFixture fixture;
    for (const TestFile &file : { TestFile { "AppDomain-org.b", "Documents/b/1.txt" },
                                  TestFile { "AppDomain-org.b", "Documents/a/1.txt" },
                                  TestFile { "AppDomain-org.b", "Documents/c/1.TXT" },
                                  TestFile { "AppDomain-ORG.B", "Documents/a/1.txt" },
                                  TestFile { "AppDomainGroup-org.b", "Documents/b/1.txt" },
                                  TestFile { "AppDomainGroup-org.b", "Documents/a/1.txt" },
                                  TestFile { "AppDomain-org.a", "Documents/1.txt" } })
        fixture.writer.addFile(
            QString::fromLatin1(file.domain), QString::fromLatin1(file.path), "x");
    QCOMPARE(fixture.list(kAppDocuments),
             QStringList({ u"org.a/1.txt"_s,
                           u"ORG.B/1.txt"_s,
                           u"org.b (2)/1.txt"_s,
                           u"org.b (2)/1 (2).txt"_s,
                           u"org.b (2)/1 (3).TXT"_s,
                           u"org.b (3)/1.txt"_s,
                           u"org.b (3)/1 (2).txt"_s }));
}

QTEST_GUILESS_MAIN(tst_DataTypes)
#include "tst_DataTypes.moc"
