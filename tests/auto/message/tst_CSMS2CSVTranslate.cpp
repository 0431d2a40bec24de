#include "message/CSMS2CSVTranslate.h"
#include "support/Golden.h"
#include "support/RecordingSink.h"
#include "support/SMSFromJson.h"

#include <QtTest>

#include <ctime>

using namespace Qt::StringLiterals;

class tst_CSMS2CSVTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void writesLines_data() { Golden::addRows(u"message-csv"_s); }
    void writesLines();
    void answers();
};

void tst_CSMS2CSVTranslate::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void tst_CSMS2CSVTranslate::writesLines()
{
    QFETCH(QString, folder);

    FakeSMSData data;
    QVERIFY(SMSFromJson::load(folder + u"/input.json"_s, data));
    for (const bool hard : { true, false }) {
        RecordingSink sink;
        sink.setHardened(hard);
        QVERIFY(CSMS2CSVTranslate(&data).translate(&sink, u"not shown"_s, nullptr));
        QCOMPARE(sink.images.size() + sink.copied.size(), 0);
        COMPARE_GOLDEN(sink.text().toUtf8(),
                       folder + (hard ? u"/hardened.csv"_s : u"/messages.csv"_s));
    }
}

// Only the header line's fate counts; a line that is not taken is the sink's to tell.
void tst_CSMS2CSVTranslate::answers()
{
    FakeSMSData data;
    FakeSMSItem &item = data.addConversation(u"Bob"_s);
    item.addChat(u"text"_s);
    RecordingSink sink;
    sink.accepts = false;
    CSMS2CSVTranslate translator(&data);
    QVERIFY(translator.translateDataItem(&sink, &item));
    QVERIFY(!translator.translate(&sink, {}, nullptr));
    QCOMPARE(sink.writes.size(), 2);
}

QTEST_APPLESS_MAIN(tst_CSMS2CSVTranslate)
#include "tst_CSMS2CSVTranslate.moc"
