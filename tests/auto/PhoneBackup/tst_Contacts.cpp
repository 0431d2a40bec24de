#include "ContactFixture.h"
#include "PhoneBackup/contacts/ContactOrder.h"
#include "PhoneBackup/contacts/StoredValue.h"
#include "PhoneItems/contacts/ContactWords.h"
#include "contact/CContactHelper.h"
#include "sample/PropertyList.h"

#include <QtTest>

#include <ctime>

using namespace Qt::StringLiterals;
namespace ContactWords = PhoneItems::ContactWords;

namespace {

const QByteArray kAnn = "INSERT INTO ABPerson(ROWID, First) VALUES (1, 'Ann');";

QByteArray value(int row, int property, const QByteArray &text, const QByteArray &label = "NULL")
{
    return "INSERT INTO ABMultiValue(UID, record_id, property, identifier, label, value) VALUES ("
        + QByteArray::number(row) + ", 1, " + QByteArray::number(property) + ", "
        + QByteArray::number(row) + ", " + label + ", " + text + ");";
}

QByteArray blob(const QByteArray &bytes)
{
    return "x'" + bytes.toHex() + "'";
}

const QByteArray kJpeg = "\xFF\xD8\xFF\xE0 a picture";
const QByteArray kPng = "\x89PNG\r\n\x1A\n a picture";
const QByteArray kHeic = QByteArray("\0\0\0\x18", 4) + "ftypheic a picture";

} // namespace

class tst_Contacts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsDetails_data();
    void readsDetails();
    void tellsWhatIsLeftOut_data();
    void tellsWhatIsLeftOut();
    void namesLists_data();
    void namesLists();
    void ordersByName_data();
    void ordersByName();
    void ordersByThePhonesKeys_data();
    void ordersByThePhonesKeys();
    void ordersInThePhonesLanguage_data();
    void ordersInThePhonesLanguage();
    void findsDays_data();
    void findsDays();
    void keepsLabelsThatHaveWords_data();
    void keepsLabelsThatHaveWords();
    void choosesThePhoto_data();
    void choosesThePhoto();
    void readsOtherReleases_data();
    void readsOtherReleases();
    void readsTheNewestFromTheLog();
    void holdsTheDetailsOfOne();
    void boundsWhatIsTooMuch();
};

void tst_Contacts::readsDetails_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QStringList>("details");

    QTest::newRow("every field")
        << "INSERT INTO ABPerson(Prefix, First, Middle, Last, Suffix, FirstPhonetic,"
           " MiddlePhonetic, LastPhonetic, Nickname, JobTitle, Department, Organization, Birthday,"
           " Note) VALUES ('Dr.', 'Ann', 'Q.', 'Example', 'Jr.', 'fa', 'ma', 'la', 'Annie',"
           " 'Smith', 'Forge', 'Works', '-547819200.000000', 'a' || char(10) || 'b');"_ba
        << QStringList { u"prefix: Dr."_s,         u"given: Ann"_s,
                         u"additional: Q."_s,      u"family: Example"_s,
                         u"suffix: Jr."_s,         u"given yomi: fa ma"_s,
                         u"family yomi: la"_s,     u"nickname: Annie"_s,
                         u"title: Smith"_s,        u"department: Forge"_s,
                         u"organization: Works"_s, u"birthday: -547819200"_s,
                         u"notes: a\nb"_s };
    QTest::newRow("nothing at all")
        << "INSERT INTO ABPerson(ROWID) VALUES (1);"_ba << QStringList();
    QTest::newRow("labels with gaps in their numbers") << kAnn
            + "INSERT INTO ABMultiValueLabel(rowid, value) VALUES (1, '_$!<Mobile>!$_'),"
              " (4, 'Boat'), (9, '_$!<half'), (10, '_$!<YoungerSister>!$_');"
            + value(1, 3, "'1'", "1") + value(2, 3, "'2'", "4") + value(3, 3, "'3'", "9")
            + value(4, 3, "'4'", "2") + value(5, 3, "'5'")
            + value(6, 23, "'6'", "10") << QStringList { u"given: Ann"_s,
                                                         u"3 _$!<Mobile>!$_: 1"_s,
                                                         u"3 Boat: 2"_s,
                                                         u"3 _$!<half: 3"_s,
                                                         u"3 : 4"_s,
                                                         u"3 : 5"_s,
                                                         u"23 younger sister: 6"_s };
    QTest::newRow("order of the phone, not of the rows") << kAnn
            + "INSERT INTO ABMultiValue(UID, record_id, property, identifier, value) VALUES"
              " (1, 1, 4, 0, 'x@example.org'), (2, 1, 3, 1, 'second'), (3, 1, 3, 0, 'first'),"
              " (4, 1, 3, 1, 'third'), (5, 1, 3, 2, NULL), (6, 1, 16, -1, 'system:Opening'),"
              " (7, 2, 3, 0, 'of nobody');"
                                                         << QStringList { u"given: Ann"_s,
                                                                          u"3 : first"_s,
                                                                          u"3 : second"_s,
                                                                          u"3 : third"_s,
                                                                          u"4 : x@example.org"_s };
    const QByteArray keys =
        "INSERT INTO ABMultiValueEntryKey(rowid, value) VALUES (2, 'City'), (3, 'STREET'),"
        " (5, 'service'), (6, 'username'), (7, 'userid'), (8, 'Street');";
    QTest::newRow("addresses") << kAnn + keys + value(1, 5, "NULL") + value(2, 5, "NULL")
            + value(3, 5, "NULL") + value(4, 5, "'1 Old Way'")
            + "INSERT INTO ABMultiValueEntry VALUES (1, 2, 'Marigold'), (1, 3, '1 Quay'),"
              " (2, 2, 'Exampleton'), (2, 3, 'other case'), (2, 8, '2 Quay'), (2, 77, 'no key'),"
              " (88, 2, 'no parent');"
                               << QStringList { u"given: Ann"_s,
                                                u"5 : City=Marigold Street=1 Quay"_s,
                                                u"5 : City=Exampleton Street=2 Quay"_s,
                                                u"5 : Street=1 Old Way"_s };
    QTest::newRow("accounts") << kAnn + keys + value(1, 46, "NULL") + value(2, 46, "NULL")
            + value(3, 13, "NULL") + value(4, 13, "'ann@jabber.example'")
            + "INSERT INTO ABMultiValueEntry VALUES (1, 5, 'Twitter'), (1, 6, 'ann'),"
              " (1, 7, '4711'), (2, 6, 'no service'), (3, 5, 'Skype'), (3, 6, 'ann.s');"
                              << QStringList { u"given: Ann"_s,
                                               u"13 : service=Skype username=ann.s"_s,
                                               u"13 : username=ann@jabber.example"_s,
                                               u"46 : service=twitter userid=4711 username=ann"_s,
                                               u"46 : username=no service"_s };
    QTest::newRow("dates") << kAnn + value(1, 12, "'-12528172800'") + value(2, 12, "'0'")
                           << QStringList { u"given: Ann"_s,
                                            u"12 : -12528129600"_s,
                                            u"12 : 43200"_s };
    QTest::newRow("linked cards")
        << "INSERT INTO ABPerson(ROWID, First, Note, Nickname, PersonLink) VALUES"
           " (1, 'Theo', 'own', NULL, 1), (2, 'Theodor', 'server', 'Ted', 1);"
           "INSERT INTO ABPersonLink(ROWID, PreferredNamePersonID) VALUES (1, 2);"
           "INSERT INTO ABMultiValue(UID, record_id, property, value) VALUES (1, 1, 3, '1'),"
           " (2, 2, 3, '1'), (3, 2, 4, 'x@example.org'), (4, 1, 3, '2');"_ba
        << QStringList { u"given: Theodor"_s, u"nickname: Ted"_s,     u"notes: server"_s,
                         u"3 : 1"_s,          u"4 : x@example.org"_s, u"3 : 2"_s };
    QTest::newRow("control characters")
        << "INSERT INTO ABPerson(First) VALUES ('An' || char(0) || char(27) || 'n');"_ba
        << QStringList { u"given: Ann"_s };
}

void tst_Contacts::readsDetails()
{
    QFETCH(QByteArray, rows);
    ContactFixture fixture;
    fixture.addBook(ContactFixture::book(rows));
    QTEST(fixture.details(), "details");
    QCOMPARE(fixture.problems(), QStringList());
    QCOMPARE(fixture.names().size(), 1);
}

void tst_Contacts::tellsWhatIsLeftOut_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<int>("left"); // of the lines
    QTest::addColumn<QString>("where");

    QTest::newRow("birthday that is none")
        << "INSERT INTO ABPerson(First, Birthday) VALUES ('Ann', 'abc');"_ba << 1 << u"Ann (1)"_s;
    QTest::newRow("date that is none")
        << kAnn + value(1, 12, "'soon'") + value(2, 3, "'1'") << 2 << u"Ann (1)"_s;
    QTest::newRow("kind that is not known")
        << kAnn + value(1, 99, "'x'") + value(2, 3, "'1'") << 2
        << u"HomeDomain/Library/AddressBook/AddressBook.sqlitedb: ABMultiValue.property"_s;
    QTest::newRow("no name") << "INSERT INTO ABPerson(Birthday) VALUES ('1e99');"_ba << 0
                             << u"(no name) (1)"_s;
}

void tst_Contacts::tellsWhatIsLeftOut()
{
    QFETCH(QByteArray, rows);
    QFETCH(QString, where);
    ContactFixture fixture;
    fixture.addBook(ContactFixture::book(rows));
    QTEST(int(fixture.details().size()), "left");
    fixture.details();
    QCOMPARE(fixture.problems(), QStringList { u"8 %1 (loss)"_s.arg(where) });
}

void tst_Contacts::namesLists_data()
{
    QTest::addColumn<QByteArray>("row"); // columns and values of a person
    QTest::addColumn<QString>("name");

    const auto person = [](const char *tag, const char *columns, const char *values, auto name) {
        QTest::newRow(tag) << "INSERT INTO ABPerson("_ba + columns + ") VALUES (" + values + ");"
                           << QString(name);
    };
    person("all parts",
           "Prefix, First, Middle, Last, Suffix, Nickname",
           "'Dr.', 'Ann', 'Q.', 'Example', 'Jr.', 'Annie'",
           u"Dr. Ann Q. Example Jr."_s);
    person("nickname", "Nickname, Organization", "'Annie', 'Works'", u"Annie"_s);
    person("organization", "Organization, Kind", "'Works', 0", u"Works"_s);
    person("of an organization", "First, Organization, Kind", "'Ann', 'Works', 1", u"Works"_s);
    person("organization of no name", "First, Kind", "'Ann', 1", u"Ann"_s);
    person("prescribed", "DisplayName", "'Shown'", u"Shown"_s);
    person("fallback", "CompositeNameFallback", "'x@example.org'", u"x@example.org"_s);
    person("empty texts", "First, Last, Nickname", "'', ' ', 'Annie'", u"Annie"_s);
    person("lines and blanks", "First, Last", "' A' || char(13,10) || 'nn ', 'E'", u"A nn E"_s);
    person("none", "Kind", "0", QString());
    QTest::newRow("number before address, the first of its kind")
        << "INSERT INTO ABPerson(ROWID) VALUES (1);"
           "INSERT INTO ABMultiValue(UID, record_id, property, identifier, value) VALUES"
           " (1, 1, 4, 0, 'x@example.org'), (2, 1, 3, 1, '2'), (3, 1, 3, 0, '1');"_ba
        << u"1"_s;
}

void tst_Contacts::namesLists()
{
    QFETCH(QByteArray, row);
    QFETCH(QString, name);
    ContactFixture fixture;
    fixture.addBook(ContactFixture::book(row));
    QCOMPARE(fixture.names(), QStringList { name });
    QCOMPARE(fixture.item(0)->flag(0), false);
}

void tst_Contacts::ordersByName_data()
{
    QTest::addColumn<QByteArray>("rows"); // First, Last, FirstPhonetic, LastPhonetic, Organization
    QTest::addColumn<QStringList>("names");

    QTest::newRow("family name, then given name")
        << "('Zoe','Ames',0,0,0),('Ann','Zorn',0,0,0),('Al','Ames',0,0,0)"_ba
        << QStringList { u"Al Ames"_s, u"Zoe Ames"_s, u"Ann Zorn"_s };
    QTest::newRow("given name and company among them")
        << "('Ann','Moss',0,0,0),('Ned',0,0,0,0),(0,0,0,0,'Lathe Works')"_ba
        << QStringList { u"Lathe Works"_s, u"Ann Moss"_s, u"Ned"_s };
    QTest::newRow("capitals and accents are no order of their own")
        << "('b','émile',0,0,0),('a','Zorn',0,0,0),('c','Eaton',0,0,0),('d','farn',0,0,0)"_ba
        << QStringList { u"c Eaton"_s, u"b émile"_s, u"d farn"_s, u"a Zorn"_s };
    QTest::newRow("as it is spoken")
        << "('花子','佐藤','はなこ','さとう',0),('太郎','青木','たろう','あおき',0)"_ba
        << QStringList { u"太郎 青木"_s, u"花子 佐藤"_s };
    QTest::newRow("no letter, no name: at the end")
        << "('+1 555',0,0,0,0),(0,0,0,0,0),('🐙',0,0,0,0),('Zoe',0,0,0,0)"_ba
        << QStringList { u"Zoe"_s, u"+1 555"_s, u"🐙"_s, QString() };
    QTest::newRow("equal names as they came")
        << "('Ann','X','a',0,0),('Ann','X','a',0,0)"_ba << QStringList { u"Ann X"_s, u"Ann X"_s };
}

void tst_Contacts::ordersByName()
{
    QFETCH(QByteArray, rows);
    QFETCH(QStringList, names);
    ContactFixture fixture;
    fixture.addBook(ContactFixture::book(
        "INSERT INTO ABPerson(First, Last, FirstPhonetic, LastPhonetic, Organization) VALUES "
        + QByteArray(rows).replace(",0", ",NULL").replace("(0", "(NULL") + ';'));
    QCOMPARE(fixture.names(), names);
    for (int i = 1; i < names.size(); ++i)
        QVERIFY(names[i] != names[i - 1] || fixture.item(i)->id() > fixture.item(i - 1)->id());
}

void tst_Contacts::ordersByThePhonesKeys_data()
{
    QTest::addColumn<QByteArray>("rows"); // Last, alphabet, section, key, link
    QTest::addColumn<QString>("names");

    QTest::newRow("bytes of the keys, not the names")
        << "('A',0,'A','x',0),('B',0,'A','X',0)"_ba << u"B A"_s;
    QTest::newRow("sections before keys") << "('A',0,'C','1',0),('B',0,'B','2',0)"_ba << u"B A"_s;
    QTest::newRow("alphabets before sections, as numbers")
        << "('A',10,'B','1',0),('B',9,'C','1',0),('C',2147483647,'A','1',0)"_ba << u"B A C"_s;
    QTest::newRow("no letter: at the end")
        << "('1',2147483647,'#','1',0),('Zoe',0,'Z','Z',0)"_ba << u"Zoe 1"_s;
    QTest::newRow("no section") << "('A',0,'A','A',0),('B',0,NULL,'B',0)"_ba << u"B A"_s;
    QTest::newRow("equal keys as they came")
        << "('B',0,'A','A',0),('A',0,'A','A',0)"_ba << u"B A"_s;
    QTest::newRow("no key: by the name among the others")
        << "('Y',0,'A','A',0),('B',0,'B','B',0),('A',5,'','',0),('X',5,NULL,NULL,0),"
           "('Z',NULL,NULL,NULL,0)"_ba
        << u"A X Y B Z"_s;
    QTest::newRow("cards of one person: the key of the name")
        << "('A',0,'A','A',7),('C',0,'C','C',7),('B',0,'B','B',0);"
           "INSERT INTO ABPersonLink(ROWID, PreferredNamePersonID) VALUES (7, 2)"_ba
        << u"B C"_s;
}

void tst_Contacts::ordersByThePhonesKeys()
{
    QFETCH(QByteArray, rows);
    QFETCH(QString, names);
    ContactFixture fixture;
    fixture.addBook(
        ContactFixture::book("INSERT INTO ABPerson(Last, LastSortLanguageIndex, LastSortSection,"
                             " LastSort, PersonLink) VALUES "
                             + rows + ';'));
    QCOMPARE(fixture.names().join(u' '), names);
}

void tst_Contacts::ordersInThePhonesLanguage_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<bool>("swedish"); // where Ö is the last letter

    QTest::newRow("none") << QVariantMap() << false;
    QTest::newRow("language") << QVariantMap { { u"AppleLanguages"_s,
                                                 QStringList { u"sv-SE"_s, u"en"_s } },
                                               { u"AppleLocale"_s, u"en_US"_s } }
                              << true;
    QTest::newRow("region") << QVariantMap { { u"AppleLocale"_s, u"sv_SE"_s } } << true;
    QTest::newRow("nonsense") << QVariantMap { { u"AppleLanguages"_s, 7 },
                                               { u"AppleLocale"_s, u"??"_s } }
                              << false;
}

void tst_Contacts::ordersInThePhonesLanguage()
{
    QFETCH(QVariantMap, settings);
    QFETCH(bool, swedish);
    ContactFixture fixture;
    fixture.addBook(
        ContactFixture::book("INSERT INTO ABPerson(Last) VALUES ('Öberg'), ('Pall'), ('Zorn');"));
    fixture.writer.addFile(u"HomeDomain"_s,
                           u"Library/Preferences/.GlobalPreferences.plist"_s,
                           Sample::binaryPropertyList(settings));
    QCOMPARE(fixture.names(),
             swedish ? QStringList({ u"Pall"_s, u"Zorn"_s, u"Öberg"_s })
                     : QStringList({ u"Öberg"_s, u"Pall"_s, u"Zorn"_s }));
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Contacts::findsDays_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("day"); // yyyy-MM-dd, empty for none

    QTest::newRow("noon") << u"-547819200.000000"_s << u"1983-08-23"_s;
    QTest::newRow("midnight in Berlin") << u"-547783200.000000"_s << u"1983-08-24"_s;
    QTest::newRow("midnight in New York") << u"-547761600"_s << u"1983-08-24"_s;
    QTest::newRow("midnight in Greenwich") << u"0"_s << u"2001-01-01"_s;
    QTest::newRow("no year") << u"-12528129600"_s << u"1604-01-01"_s;
    QTest::newRow("29 February of no year") << u"-12523032000.0"_s << u"1604-02-29"_s;
    QTest::newRow("first day") << u"-63113904000"_s << u"0001-01-01"_s;
    QTest::newRow("before it") << u"-63113947300"_s << QString();
    QTest::newRow("last day") << u"252423950400"_s << u"9999-12-31"_s;
    QTest::newRow("behind it") << u"252423950500"_s << QString();
    QTest::newRow("written") << u"1990-04-01"_s << u"1990-04-01"_s;
    QTest::newRow("text") << u"abc"_s << QString();
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("no number") << u"nan"_s << QString();
    QTest::newRow("no end") << u"inf"_s << QString();
}

void tst_Contacts::findsDays()
{
    QFETCH(QString, stored);
    QFETCH(QString, day);
    const QByteArray zoneBefore = qgetenv("TZ");
    const auto restore = qScopeGuard([&] {
        qputenv("TZ", zoneBefore);
        ::tzset();
    });
    for (const char *zone : { "UTC",
                              "Europe/Berlin",
                              "Pacific/Auckland",
                              "Pacific/Fiji",
                              "Asia/Kamchatka",
                              "Pacific/Tongatapu",
                              "Pacific/Majuro",
                              "Pacific/Kiritimati",
                              "Pacific/Pago_Pago",
                              "America/Adak" }) {
        qputenv("TZ", zone);
        ::tzset();
        const QString found = ContactWords::day(PhoneBackup::StoredValue::day(stored));
        QCOMPARE(found.isEmpty(), day.isEmpty());
        if (day.isEmpty())
            continue;
        const QDateTime moment =
            QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC).addSecs(found.toLongLong());
        QVERIFY2(moment.date().toString(Qt::ISODate) == day, zone);
        QVERIFY2(moment.toLocalTime().date().toString(Qt::ISODate) == day, zone);
    }
}

void tst_Contacts::keepsLabelsThatHaveWords_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("unwrapped"); // empty: exports have a word of their own

    for (const char *word : { "Mobile",   "Home",    "Work",    "Main",        "HomeFAX", "WorkFAX",
                              "OtherFAX", "Pager",   "Other",   "HomePage",    "Father",  "Mother",
                              "Parent",   "Brother", "Sister",  "Anniversary", "Child",   "Friend",
                              "Spouse",   "Partner", "Manager", "Assistant" })
        QTest::newRow(word) << QString::fromLatin1(word) << QString();
    QTest::newRow("Son") << u"Son"_s << u"son"_s;
    QTest::newRow("School") << u"School"_s << u"school"_s;
    QTest::newRow("GrandmotherOfAunt") << u"GrandmotherOfAunt"_s << u"grandmother of aunt"_s;
    QTest::newRow("nothing") << QString() << u"_$!<>!$_"_s;
}

void tst_Contacts::keepsLabelsThatHaveWords()
{
    QFETCH(QString, word);
    QFETCH(QString, unwrapped);
    const QString token = u"_$!<%1>!$_"_s.arg(word);
    QCOMPARE(ContactWords::label(token), unwrapped.isEmpty() ? token : unwrapped);
    // Where the reader keeps the token the exports must have words for it.
    QCOMPARE(CContactHelper().convertLabel(token, false) != token, unwrapped.isEmpty());
}

void tst_Contacts::choosesThePhoto_data()
{
    QTest::addColumn<QByteArray>("images"); // a database
    QTest::addColumn<QByteArray>("photo");
    QTest::addColumn<QStringList>("problems");

    const auto whole = [](const QByteArray &bytes) {
        return "INSERT INTO ABFullSizeImage(record_id, data) VALUES (1, " + blob(bytes) + ");";
    };
    const auto part = [](int format, const QByteArray &bytes) {
        return "INSERT INTO ABThumbnailImage(record_id, format, data) VALUES (1, "
            + QByteArray::number(format) + ", " + blob(bytes) + ");";
    };
    const auto images = [](const QByteArray &rows) { return ContactFixture::images(rows); };
    const QStringList lost { u"8 Ann (1) (loss)"_s };

    QTest::newRow("none") << images("INSERT INTO ABFullSizeImage(record_id, data) VALUES (1, NULL),"
                                    " (1, x''), (2, "
                                    + blob(kJpeg) + ");")
                          << QByteArray() << QStringList();
    QTest::newRow("whole before larger parts")
        << images(part(5, kJpeg + "and more") + whole(kJpeg)) << kJpeg << QStringList();
    QTest::newRow("largest part") << images(part(0, kJpeg) + part(5, kPng + "large")
                                            + part(2, kJpeg + "x"))
                                  << kPng + "large" << QStringList();
    QTest::newRow("whole is no picture")
        << images(whole("no picture at all") + part(0, kJpeg)) << kJpeg << QStringList();
    QTest::newRow("what every program shows goes first")
        << images(whole(kHeic) + part(0, kJpeg)) << kJpeg << QStringList();
    QTest::newRow("nothing else") << images(whole(kHeic)) << kHeic << QStringList();
    QTest::newRow("no picture at all")
        << images(whole("text") + part(0, "x")) << QByteArray() << lost;
    QTest::newRow("too large") << images(
        "INSERT INTO ABFullSizeImage(record_id, data) VALUES (1, CAST(x'FFD8FF' ||"
        " zeroblob(17000000) AS BLOB));")
                               << QByteArray() << lost;
    QTest::newRow("no database") << QByteArray() << QByteArray() << QStringList();
    QTest::newRow("damaged database")
        << QByteArray(9000, 'x') << QByteArray()
        << QStringList { u"8 HomeDomain/Library/AddressBook/AddressBookImages.sqlitedb (loss)"_s };
    QTest::newRow("other tables")
        << BackupFixture::database("CREATE TABLE t (a)") << QByteArray()
        << QStringList { u"8 HomeDomain/Library/AddressBook/AddressBookImages.sqlitedb (loss)"_s };
}

void tst_Contacts::choosesThePhoto()
{
    QFETCH(QByteArray, images);
    ContactFixture fixture;
    fixture.addBook(ContactFixture::book(kAnn));
    if (!images.isEmpty())
        fixture.addImages(images);
    QVERIFY(fixture.item(0));
    QTEST(fixture.item(0)->detailContent()->photo(), "photo");
    QTEST(fixture.item(0)->detailContent()->photo(), "photo");
    QTEST(fixture.problems(), "problems");
}

void tst_Contacts::readsOtherReleases_data()
{
    QTest::addColumn<QByteArray>("book"); // a database, empty for none
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<bool>("lost");

    QTest::newRow("no address book") << QByteArray() << QStringList() << false;
    QTest::newRow("empty address book") << ContactFixture::book({}) << QStringList() << false;
    QTest::newRow("oldest columns") << BackupFixture::database(
        "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT, Last TEXT);"
        "CREATE TABLE ABMultiValue (record_id INTEGER, property INTEGER, label INTEGER,"
        " value TEXT); INSERT INTO ABPerson VALUES (1, 'Ann', 'Example');"
        "INSERT INTO ABMultiValue VALUES (1, 3, 7, '555'), (1, 5, NULL, NULL);")
                                    << QStringList { u"Ann Example"_s } << false;
    QTest::newRow("people only") << BackupFixture::database(
        "CREATE TABLE ABPerson (First TEXT, Last TEXT);"
        "INSERT INTO ABPerson VALUES ('Ann', NULL);")
                                 << QStringList { u"Ann"_s } << false;
    QTest::newRow("no people") << BackupFixture::database("CREATE TABLE t (a)") << QStringList()
                               << true;
    QTest::newRow("an empty file") << ""_ba << QStringList() << true;
    QTest::newRow("no database") << QByteArray(5000, 'x') << QStringList() << true;
}

void tst_Contacts::readsOtherReleases()
{
    QFETCH(QByteArray, book);
    QFETCH(bool, lost);
    ContactFixture fixture;
    if (!book.isNull())
        fixture.addBook(book);
    QTEST(fixture.names(), "names");
    if (!fixture.names().isEmpty())
        QVERIFY(fixture.details() != QStringList { u"not read"_s });
    const QString loss = u"8 HomeDomain/Library/AddressBook/AddressBook.sqlitedb (loss)"_s;
    QCOMPARE(fixture.problems().contains(loss), lost);
}

void tst_Contacts::readsTheNewestFromTheLog()
{
    const QByteArray before = ContactFixture::book({});
    ContactFixture fixture;
    fixture.addBook(before);
    fixture.addFile(u"AddressBook.sqlitedb-wal"_s,
                    Sample::writeAheadLog(before, ContactFixture::book(kAnn + value(1, 3, "'1'"))));
    QCOMPARE(fixture.names(), QStringList { u"Ann"_s });
    QCOMPARE(fixture.details(), QStringList({ u"given: Ann"_s, u"3 : 1"_s }));
}

void tst_Contacts::holdsTheDetailsOfOne()
{
    ContactFixture fixture;
    fixture.addBook(
        ContactFixture::book("INSERT INTO ABPerson(First) VALUES ('Ann'), ('Bob'), ('Cid');"));
    const BkContactPrivate *ann = fixture.item(0)->detailContent();
    QCOMPARE(fixture.item(0)->detailContent(), ann);
    fixture.names();
    QCOMPARE(ann->givenName(), u"Ann"_s);
    QCOMPARE(fixture.item(2)->detailContent()->givenName(), u"Cid"_s);
    QCOMPARE(fixture.item(0)->detailContent()->givenName(), u"Ann"_s);
    QVERIFY(fixture.set()->recover(fixture.item(1)));
    QVERIFY(!fixture.set()->at(3, true) && !fixture.set()->at(-1, true));
    ContactFixture other;
    other.addBook(ContactFixture::book(kAnn));
    QVERIFY(!fixture.set()->recover(other.item(0)));
}

void tst_Contacts::boundsWhatIsTooMuch()
{
    ContactFixture fixture;
    fixture.addBook(ContactFixture::book(
        "INSERT INTO ABPerson(First, Last, Note) VALUES"
        " (replace(hex(zeroblob(500000)), '00', '\xF0\x9F\x90\x99'), 'B',"
        "  replace(hex(zeroblob(2500000)), '0', 'n'));"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
        "INSERT INTO ABMultiValue(record_id, property, identifier, value) SELECT 1, 3, i, i FROM "
        "n;"));
    const QString name = fixture.names().value(0);
    QVERIFY(name.size() < 600 && name.isValidUtf16() && name.contains(u"…"_s));
    const BkContactPrivate *contact = fixture.item(0)->detailContent();
    QCOMPARE(contact->givenName().size(), 1000000); // all of it
    QCOMPARE(contact->notes().size(), 4 << 20);
    QCOMPARE(contact->properties().size(), 1000);
    QCOMPARE(contact->properties().last()->propValue(), u"1000"_s);
    QCOMPARE(fixture.problems().size(), 1);
}

QTEST_GUILESS_MAIN(tst_Contacts)
#include "tst_Contacts.moc"
