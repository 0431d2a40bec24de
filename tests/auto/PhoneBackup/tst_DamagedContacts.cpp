#include "ContactFixture.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCount = 120;
constexpr qsizetype kPageSize = 4096;

// Each person knows its number, and so does everything that belongs to it.
QByteArray whole()
{
    QByteArray sql = "INSERT INTO ABMultiValueLabel(rowid, value) VALUES (1, 'Boat');"
                     "INSERT INTO ABMultiValueEntryKey(rowid, value) VALUES (1, 'Street');";
    for (int i = 1; i <= kCount; ++i) {
        const QByteArray number = QByteArray::number(i);
        const QByteArray uid = QByteArray::number(1000 + i);
        sql += "INSERT INTO ABPerson(ROWID, First, Note) VALUES (" + number + ", 'Ann " + number
            + "', 'Note " + number + QByteArray(60, '.')
            + "'); INSERT INTO ABMultiValue(UID, record_id, property, label, value) VALUES ("
            + number + ", " + number + ", 3, 1, '+1 555 " + number + "'), (" + uid + ", " + number
            + ", 5, 1, NULL); INSERT INTO ABMultiValueEntry VALUES (" + uid + ", 1, '" + number
            + " Quay');";
    }
    return ContactFixture::book(sql);
}

struct Outcome
{
    int contacts = 0;
    int complete = 0;
    int strange = 0; // what belongs to somebody else
    bool isLossTold = false;
    bool otherTypeIsThere = false;
};

// Reads everything twice, as two passes do.
Outcome outcomeOf(const QByteArray &book)
{
    ContactFixture fixture;
    fixture.addBook(book);
    fixture.writer.addFile(u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/IMG_1.JPG"_s, "x");
    Outcome outcome;
    const QStringList names = fixture.names();
    for (int round = 0; round < 2; ++round) {
        outcome.contacts = int(names.size());
        outcome.complete = 0;
        for (int i = 0; i < outcome.contacts; ++i) {
            const QString number = names[i].section(u' ', -1);
            const QStringList details = fixture.details(i);
            outcome.strange += names[i].startsWith(u"Ann "_s) ? 0 : 1;
            for (const QString &line : details)
                outcome.strange += line.contains(number) || line == u"not read"_s ? 0 : 1;
            outcome.complete += details.size() == 4 ? 1 : 0;
        }
    }
    for (const QString &problem : fixture.problems()) {
        outcome.isLossTold =
            outcome.isLossTold || (problem.startsWith("8 "_L1) && problem.endsWith("(loss)"_L1));
    }
    outcome.otherTypeIsThere = fixture.list(0).size() == 1;
    return outcome;
}

} // namespace

class tst_DamagedContacts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsWhole();
    void cutAtEveryPage();
    void emptiedPages();
    void flippedBits();
};

void tst_DamagedContacts::readsWhatIsWhole()
{
    const Outcome outcome = outcomeOf(whole());
    QCOMPARE(outcome.complete, kCount);
    QCOMPARE(outcome.strange, 0);
    QVERIFY(!outcome.isLossTold);
}

void tst_DamagedContacts::cutAtEveryPage()
{
    const QByteArray image = whole();
    QVERIFY(image.size() > 10 * kPageSize);
    for (qsizetype size = kPageSize; size < image.size(); size += kPageSize) {
        const Outcome outcome = outcomeOf(image.first(size));
        const QByteArray at = QByteArray::number(size);
        QVERIFY2(outcome.isLossTold, at.constData());
        QVERIFY2(outcome.otherTypeIsThere, at.constData());
        QVERIFY2(outcome.strange == 0, at.constData());
    }
}

void tst_DamagedContacts::emptiedPages()
{
    const QByteArray image = whole();
    int most = 0;
    for (qsizetype at = kPageSize; at < image.size(); at += kPageSize) {
        QByteArray damaged = image;
        damaged.replace(at, kPageSize, QByteArray(kPageSize, '\0'));
        const Outcome outcome = outcomeOf(damaged);
        QVERIFY2(outcome.complete == kCount || outcome.isLossTold, QByteArray::number(at));
        QVERIFY2(outcome.otherTypeIsThere, QByteArray::number(at));
        if (outcome.complete < kCount)
            most = std::max(most, outcome.contacts);
    }
    QVERIFY(most > kCount / 2); // one page takes few people with it
}

void tst_DamagedContacts::flippedBits()
{
    const QByteArray image = whole();
    quint32 state = 1;
    for (int round = 0; round < 60; ++round) {
        QByteArray damaged = image;
        for (int i = 0; i < 20; ++i) {
            state = state * 1664525U + 1013904223U;
            const auto at = qsizetype(state) % damaged.size();
            damaged[at] = char(damaged[at] ^ (1 << (state >> 29U)));
        }
        QVERIFY2(outcomeOf(damaged).otherTypeIsThere, QByteArray::number(round));
    }
}

QTEST_GUILESS_MAIN(tst_DamagedContacts)
#include "tst_DamagedContacts.moc"
