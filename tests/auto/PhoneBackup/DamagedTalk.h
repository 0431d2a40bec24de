#ifndef TESTS_PHONEBACKUP_DAMAGEDTALK_H
#define TESTS_PHONEBACKUP_DAMAGEDTALK_H

#include <QtTest>

//! What is left of two conversations that take turns, after their database was damaged.
namespace DamagedTalk {

constexpr int kCount = 300; // messages, each of which knows its number: "No. 7"

struct Outcome
{
    qsizetype messages = 0;
    qsizetype strange = 0; // texts that nobody wrote
    bool isLossTold = false;
    bool otherTypeIsThere = false;
};

/*!
    What a backup with the database \a image holds of data type \a code. \a readTexts gives the
    texts of all its messages; it is asked twice, as two passes do.
*/
template <class Fixture, class ReadTexts>
Outcome outcomeOf(const QByteArray &image, int code, ReadTexts readTexts)
{
    Fixture fixture;
    fixture.addDatabase(image);
    fixture.writer.addFile(
        QStringLiteral("CameraRollDomain"), QStringLiteral("Media/DCIM/100APPLE/IMG_1.JPG"), "x");
    Outcome outcome;
    for (int round = 0; round < 2; ++round) {
        const QStringList texts = readTexts(fixture);
        outcome.messages = texts.size();
        for (const QString &text : texts)
            outcome.strange += text.startsWith(QLatin1String("No. ")) ? 0 : 1;
    }
    fixture.list(Fixture::kFiles);
    const QString type = QString::number(code) + QLatin1Char(' ');
    for (const QString &problem : fixture.problems()) {
        outcome.isLossTold = outcome.isLossTold
            || (problem.startsWith(type) && problem.endsWith(QLatin1String("(loss)")));
    }
    outcome.otherTypeIsThere = fixture.list(0).size() == 1;
    return outcome;
}

constexpr qsizetype kPageSize = 4096;

inline QByteArray withoutPages(const QByteArray &good, const QList<qsizetype> &pages)
{
    QByteArray image = good;
    for (const qsizetype page : pages)
        image.replace(page * kPageSize, kPageSize, QByteArray(kPageSize, '\0'));
    return image;
}

/*!
    Takes away two pages of \a good that cost messages: the first and the last of those. What stands
    between them is still read.
*/
template <class OutcomeOf>
void takeTwoPages(const QByteArray &good, OutcomeOf outcomeOf)
{
    QList<qsizetype> pages;
    QList<qsizetype> left;
    for (qsizetype page = 1; page < good.size() / kPageSize; ++page) {
        const qsizetype messages = outcomeOf(withoutPages(good, { page })).messages;
        if (messages < kCount && messages > kCount / 2) {
            pages.append(page);
            left.append(messages);
        }
    }
    QVERIFY(pages.size() > 2);
    const Outcome outcome = outcomeOf(withoutPages(good, { pages.first(), pages.last() }));
    QCOMPARE(outcome.messages, left.first() + left.last() - kCount);
    QCOMPARE(outcome.strange, 0);
    QVERIFY(outcome.isLossTold);
}

/*!
    Overwrites one page of \a good after the other with each of \a fillings: what is missing then
    is told, and all but \a fatalPages pages leave most messages.
*/
template <class OutcomeOf>
void overwriteEachPage(const QByteArray &good,
                       const QByteArray &fillings,
                       qsizetype fatalPages,
                       OutcomeOf outcomeOf)
{
    const Outcome all = outcomeOf(good);
    QCOMPARE(all.messages, kCount);
    QVERIFY(!all.isLossTold);
    const qsizetype pages = good.size() / kPageSize;
    QVERIFY(pages > 3 * fatalPages);
    qsizetype nearlyWhole = 0;
    for (qsizetype page = 1; page < pages; ++page) { // the first holds the names of all tables
        for (const char filling : fillings) {
            QByteArray image = good;
            image.replace(page * kPageSize, kPageSize, QByteArray(kPageSize, filling));
            const Outcome outcome = outcomeOf(image);
            QVERIFY2(
                outcome.isLossTold || outcome.messages == kCount,
                qPrintable(QStringLiteral("page %1: %2 messages").arg(page).arg(outcome.messages)));
            QVERIFY(outcome.messages <= kCount);
            QCOMPARE(outcome.strange, 0);
            QVERIFY(outcome.otherTypeIsThere);
            nearlyWhole += outcome.messages > kCount / 2 ? 1 : 0;
        }
    }
    QVERIFY2(nearlyWhole >= fillings.size() * (pages - 1 - fatalPages),
             qPrintable(QString::number(nearlyWhole)));
}

} // namespace DamagedTalk

#endif
