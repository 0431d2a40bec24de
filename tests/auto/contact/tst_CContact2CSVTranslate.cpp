#include "contact/CContact2CSVTranslate.h"
#include "support/ContactFromJson.h"
#include "support/Golden.h"
#include "support/RecordingSink.h"

#include <QtTest>

#include <ctime>

using namespace Qt::StringLiterals;

class tst_CContact2CSVTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void writesLines_data() { Golden::addRows(u"contact-csv"_s); }
    void writesLines();
    void hasAColumnForEachOfManyProperties();
    void answersWhatItsSinkAnswers();
};

void tst_CContact2CSVTranslate::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void tst_CContact2CSVTranslate::writesLines()
{
    QFETCH(QString, folder);

    FakeContactData data;
    QVERIFY(ContactFromJson::load(folder + u"/input.json"_s, data));
    for (const bool hard : { true, false }) {
        RecordingSink sink;
        sink.setHardened(hard);
        QVERIFY(CContact2CSVTranslate(&data).translate(&sink, u"not shown"_s, nullptr));
        QCOMPARE(sink.images.size() + sink.copied.size(), 0);
        COMPARE_GOLDEN(sink.text().toUtf8(),
                       folder + (hard ? u"/hardened.csv"_s : u"/contacts.csv"_s));
    }
}

void tst_CContact2CSVTranslate::hasAColumnForEachOfManyProperties()
{
    FakeContactData data;
    FakeContact &contact = data.addContact(u"Bo"_s);
    for (int i = 1; i <= 100; ++i)
        contact.add(3, CContactHelper::CATE_WORK, QString::number(i));
    RecordingSink sink;
    QVERIFY(CContact2CSVTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(sink.writes.size(), 2);
    QVERIFY(sink.writes.first().endsWith(u",Phone 100 - Type,Phone 100 - Value,\n"_s));
    QVERIFY(sink.writes.last().endsWith(u",work,99,work,100,\n"_s));
    QCOMPARE(sink.writes.first().count(u','), sink.writes.last().count(u','));
}

void tst_CContact2CSVTranslate::answersWhatItsSinkAnswers()
{
    FakeContactData data;
    FakeContact &contact = data.addContact(u"Bo"_s);
    for (const bool accepts : { true, false }) {
        RecordingSink sink;
        sink.accepts = accepts;
        CContact2CSVTranslate translator(&data);
        QCOMPARE(translator.translateHeader(&sink, {}), accepts);
        QCOMPARE(translator.translateDataItem(&sink, &contact), accepts);
        QVERIFY(translator.translateDataBefore(&sink) && translator.translateDataAfter(&sink));
        QCOMPARE(sink.writes.size(), 2);
    }
}

QTEST_APPLESS_MAIN(tst_CContact2CSVTranslate)
#include "tst_CContact2CSVTranslate.moc"
