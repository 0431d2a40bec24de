#include "contact/CContact2VCFTranslate.h"
#include "support/ContactFromJson.h"
#include "support/Golden.h"
#include "support/RecordingSink.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class tst_CContact2VCFTranslate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesCards_data() { Golden::addRows(u"contact-vcard"_s); }
    void writesCards();
    void writesLongValuesWhole();
    void answersWhatItsSinkAnswers();
};

void tst_CContact2VCFTranslate::writesCards()
{
    QFETCH(QString, folder);

    FakeContactData data;
    QVERIFY(ContactFromJson::load(folder + u"/input.json"_s, data));
    for (const bool hard : { true, false }) {
        RecordingSink sink;
        sink.setHardened(hard);
        QVERIFY(CContact2VCFTranslate(&data).translate(&sink, u"not shown"_s, nullptr));
        QCOMPARE(sink.images.size() + sink.copied.size(), 0);
        COMPARE_GOLDEN(sink.text().toUtf8(),
                       folder + (hard ? u"/hardened.vcf"_s : u"/cards.vcf"_s));
    }
}

void tst_CContact2VCFTranslate::writesLongValuesWhole()
{
    FakeContactData data;
    const QString longName = u"\U0001F600\u05D0"_s.repeated(400000);
    FakeContact &contact = data.addContact(longName);
    contact.photoBytes = QByteArray(300000, '\xff');
    RecordingSink sink;
    QVERIFY(CContact2VCFTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(sink.writes.size(), 1);
    const QStringList lines = sink.text().split(u"\r\n"_s);
    QCOMPARE(lines.size(), 8);
    QVERIFY(lines.at(2) == u"FN;CHARSET=utf-8:"_s + longName);
    QVERIFY(lines.at(3) == u"PHOTO;TYPE=JPEG;ENCODING=BASE64:"_s + u"/"_s.repeated(400000));
}

void tst_CContact2VCFTranslate::answersWhatItsSinkAnswers()
{
    FakeContactData data;
    FakeContact &contact = data.addContact(u"Bo"_s);
    for (const bool accepts : { true, false }) {
        RecordingSink sink;
        sink.accepts = accepts;
        CContact2VCFTranslate translator(&data);
        QCOMPARE(translator.translateDataItem(&sink, &contact), accepts);
        QVERIFY(translator.translateHeader(&sink, {}) && translator.translateDataBefore(&sink)
                && translator.translateDataAfter(&sink));
        QCOMPARE(sink.writes.size(), 1);
    }
}

QTEST_APPLESS_MAIN(tst_CContact2VCFTranslate)
#include "tst_CContact2VCFTranslate.moc"
