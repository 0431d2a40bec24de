#include "DamagedTalk.h"
#include "WhatsappFixture.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using DamagedTalk::kCount;
using DamagedTalk::Outcome;
using namespace WhatsappRows;

namespace {

// Two chats that take turns; each message knows its number.
QByteArray talk()
{
    QByteArray sql = kGroup + chat(2, "15550100124@s.whatsapp.net");
    for (int i = 1; i <= kCount; ++i) {
        sql += message(i,
                       "0",
                       "ZTEXT = 'No. ' || Z_PK, ZGROUPMEMBER = Z_PK % 5 + 1,"
                       " ZCHATSESSION = Z_PK % 2 + 1");
    }
    return sql;
}

QByteArray whole(const QByteArray &change = {})
{
    return BackupFixture::database((Sample::whatsappTables() + talk() + change).constData());
}

Outcome outcomeOf(const QByteArray &image)
{
    return DamagedTalk::outcomeOf<WhatsappFixture>(
        image, WhatsappFixture::kChats, [](WhatsappFixture &fixture) {
            QStringList texts;
            const qsizetype chats = fixture.chats().size();
            for (int i = 0; i < chats; ++i) {
                const BkWhatsappChat *opened = fixture.content(i);
                for (const BkWhatsappMsg *message :
                     opened ? opened->messages() : QList<BkWhatsappMsg *>())
                    texts.append(message->content());
            }
            return texts;
        });
}

} // namespace

class tst_DamagedWhatsapp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsLeft_data();
    void readsWhatIsLeft();
    void losesOneOverwrittenPageAlone();
    void readsWhatStandsBetweenDamagedPages();
    void livesWithout_data();
    void livesWithout();
    void readsAbsurdRows_data();
    void readsAbsurdRows();
};

void tst_DamagedWhatsapp::readsWhatIsLeft_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<bool>("isEmpty");

    const QByteArray good = whole();
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("no database") << QByteArray(10000, 'x') << false;
    QTest::newRow("another schema") << BackupFixture::database("CREATE TABLE t (a)") << false;
    QTest::newRow("no chats") << BackupFixture::database(Sample::whatsappTables().constData())
                              << true;
    for (int quarters = 1; quarters < 4; ++quarters) {
        QTest::addRow("%d quarters", quarters) << good.first(good.size() * quarters / 4) << false;
        QTest::addRow("%d quarters and a bit", quarters)
            << good.first(good.size() * quarters / 4 + 77) << false;
    }
}

void tst_DamagedWhatsapp::readsWhatIsLeft()
{
    QFETCH(QByteArray, image);
    QFETCH(bool, isEmpty);
    const Outcome outcome = outcomeOf(image);
    QVERIFY(outcome.messages < kCount);
    QCOMPARE(outcome.isLossTold, !isEmpty);
    QVERIFY(outcome.otherTypeIsThere);
}

void tst_DamagedWhatsapp::losesOneOverwrittenPageAlone()
{
    // The roots of chats and messages, and pages with the definitions of tables.
    DamagedTalk::overwriteEachPage(whole(), QByteArray("\0\xFF", 2), 5, outcomeOf);
}

void tst_DamagedWhatsapp::readsWhatStandsBetweenDamagedPages()
{
    DamagedTalk::takeTwoPages(whole(), outcomeOf);
}

void tst_DamagedWhatsapp::livesWithout_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::addColumn<int>("messages");
    QTest::addColumn<bool>("isLossTold");

    for (const char *table : { "ZWAMEDIAITEM",
                               "ZWAGROUPMEMBER",
                               "ZWAGROUPINFO",
                               "ZWAPROFILEPUSHNAME",
                               "ZWAMESSAGEINFO",
                               "ZWAMESSAGEDATAITEM",
                               "Z_PRIMARYKEY" })
        QTest::newRow(table) << "DROP TABLE " + QByteArray(table) + ';' << kCount << false;
    QTest::newRow("chats") << "DROP TABLE ZWACHATSESSION;"_ba << kCount << true;
    QTest::newRow("messages") << "DROP TABLE ZWAMESSAGE;"_ba << 0 << true;
    for (const char *column : { "ZSORT",
                                "ZMESSAGETYPE",
                                "ZGROUPEVENTTYPE",
                                "ZMESSAGESTATUS",
                                "ZTOJID",
                                "ZMESSAGEERRORSTATUS",
                                "ZGROUPMEMBER",
                                "ZMEDIAITEM",
                                "ZPARENTMESSAGE",
                                "ZPUSHNAME",
                                "ZFROMJID",
                                "ZMESSAGEINFO" })
        QTest::newRow(column) << "ALTER TABLE ZWAMESSAGE DROP COLUMN " + QByteArray(column) + ';'
                              << kCount << false;
    // Nothing is left of what these say.
    for (const char *column : { "ZTEXT", "ZISFROMME", "ZMESSAGEDATE" })
        QTest::newRow(column) << "ALTER TABLE ZWAMESSAGE DROP COLUMN " + QByteArray(column) + ';'
                              << kCount << true;
    for (const char *column :
         { "ZSESSIONTYPE", "ZREMOVED", "ZPARTNERNAME", "ZLASTMESSAGEDATE", "ZCONTACTIDENTIFIER" })
        QTest::newRow(column) << "ALTER TABLE ZWACHATSESSION DROP COLUMN " + QByteArray(column)
                + ';' << kCount
                              << false;
    QTest::newRow("the chat's identifier")
        << "ALTER TABLE ZWACHATSESSION DROP COLUMN ZCONTACTJID;"_ba << kCount << true;
    QTest::newRow("the message's chat")
        << "ALTER TABLE ZWAMESSAGE DROP COLUMN ZCHATSESSION;"_ba << 0 << true;
}

void tst_DamagedWhatsapp::livesWithout()
{
    QFETCH(QByteArray, change);
    QFETCH(int, messages);
    QFETCH(bool, isLossTold);
    const Outcome outcome = outcomeOf(whole(change));
    QCOMPARE(outcome.messages, messages);
    QCOMPARE(outcome.isLossTold, isLossTold);
}

void tst_DamagedWhatsapp::readsAbsurdRows_data()
{
    QTest::addColumn<QByteArray>("change");

    QTest::newRow("dates")
        << "UPDATE ZWAMESSAGE SET ZMESSAGEDATE = -9e99, ZSORT = 9e99 WHERE Z_PK % 4 = 0;"
           "UPDATE ZWAMESSAGE SET ZMESSAGEDATE = 9223372036854775807, ZSORT = 'x' WHERE Z_PK % 4 = "
           "1;"
           "UPDATE ZWAMESSAGE SET ZMESSAGEDATE = 'never', ZSORT = NULL WHERE Z_PK % 4 = 2;"
           "UPDATE ZWAMESSAGE SET ZMESSAGEDATE = x'00', ZSORT = -9223372036854775808 WHERE Z_PK % 4 = 3;"_ba;
    QTest::newRow("members and media that are not there")
        << "UPDATE ZWAMESSAGE SET ZGROUPMEMBER = 9223372036854775807, ZMEDIAITEM = -7,"
           " ZPARENTMESSAGE = Z_PK, ZMESSAGEINFO = 8;"
           "UPDATE ZWAGROUPMEMBER SET ZCHATSESSION = 99;"_ba;
    QTest::newRow("parents in a circle")
        << "UPDATE ZWAMESSAGE SET ZPARENTMESSAGE = Z_PK % 300 + 1;"_ba;
    QTest::newRow("identifiers")
        << "UPDATE ZWACHATSESSION SET ZCONTACTJID = replace(hex(zeroblob(100000)), '0', '@') WHERE "
           "Z_PK = 1;"
           "UPDATE ZWAGROUPMEMBER SET ZMEMBERJID = x'ff40ff', ZCONTACTNAME = x'ff00';"
           "UPDATE ZWACHATSESSION SET ZPARTNERNAME = char(8206, 8207, 0, 10) WHERE Z_PK = 2;"_ba;
    QTest::newRow("a text of 10 MB")
        << "UPDATE ZWAMESSAGE SET ZTEXT = 'No. ' || CAST(zeroblob(10000000) AS TEXT)"
           " WHERE Z_PK = 7;"_ba;
}

void tst_DamagedWhatsapp::readsAbsurdRows()
{
    QFETCH(QByteArray, change);
    const Outcome outcome = outcomeOf(whole(change));
    QCOMPARE(outcome.messages, kCount);
    QVERIFY(!outcome.isLossTold);
}

QTEST_GUILESS_MAIN(tst_DamagedWhatsapp)
#include "tst_DamagedWhatsapp.moc"
