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
    void findsDays_data();
    void findsDays();
    void keepsLabelsThatHaveWords_data();
    void keepsLabelsThatHaveWords();
    void choosesThePhoto_data();
    void choosesThePhoto();
    void readsTheNewestFromTheLog();
    void holdsTheDetailsOfOne();
    void boundsWhatIsTooMuch();
};

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
