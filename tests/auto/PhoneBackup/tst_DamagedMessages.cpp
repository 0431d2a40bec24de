#include "DamagedTalk.h"
#include "MessageFixture.h"
#include "sample/TypedStream.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using DamagedTalk::kCount;
using DamagedTalk::Outcome;

namespace {

// Two conversations that take turns; each message knows its number.
QByteArray talk()
{
    QByteArray sql =
        "INSERT INTO handle(ROWID, id, service) VALUES (1, '+15550100123', 'SMS'),"
        " (2, '28777', 'SMS');"
        "INSERT INTO chat(ROWID, guid, style, chat_identifier) VALUES (1, 'x', 45, '+15550100123'),"
        " (2, 'y', 45, '28777');"
        "INSERT INTO chat_handle_join VALUES (1, 1), (2, 2);";
    for (int i = 1; i <= kCount; ++i) {
        const QByteArray number = QByteArray::number(i);
        sql += "INSERT INTO message(ROWID, guid, text, handle_id, date, associated_message_guid,"
               " associated_message_type, thread_originator_guid) VALUES ("
            + number + ", 'guid-" + number + "', 'No. " + number + "', "
            + QByteArray::number(1 + i % 2) + ", " + QByteArray::number(700000000 + i)
            + "000000000, NULL, 0, NULL); INSERT INTO chat_message_join(chat_id, message_id) "
              "VALUES ("
            + QByteArray::number(1 + i % 2) + ", " + number + ");";
    }
    return sql;
}

QByteArray whole()
{
    return BackupFixture::database((Sample::messageTables(18) + talk()).constData());
}

Outcome outcomeOf(const QByteArray &image)
{
    return DamagedTalk::outcomeOf<MessageFixture>(
        image, MessageFixture::kMessages, [](MessageFixture &fixture) {
            QStringList texts;
            const qsizetype conversations = fixture.conversations().size();
            for (int i = 0; i < conversations; ++i) {
                const BkSMSChatGroup *group = fixture.content(i);
                for (const BkSMSChat *chat : group ? group->chats() : QList<BkSMSChat *>())
                    texts.append(chat->content());
            }
            return texts;
        });
}

} // namespace

class tst_DamagedMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsLeft_data();
    void readsWhatIsLeft();
    void losesOneOverwrittenPageAlone();
    void readsWhatStandsBetweenDamagedPages();
    void livesWithoutAnyTable_data();
    void livesWithoutAnyTable();
    void livesWithoutAnyColumn_data();
    void livesWithoutAnyColumn();
    void readsAbsurdRows_data();
    void readsAbsurdRows();
    void readsRowsThatAreOnlyInTheLog();
};

void tst_DamagedMessages::readsWhatIsLeft_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<bool>("isEmpty");

    const QByteArray good = whole();
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("no database") << QByteArray(10000, 'x') << false;
    QTest::newRow("another schema") << BackupFixture::database("CREATE TABLE t (a)") << false;
    QTest::newRow("no messages") << BackupFixture::database(Sample::messageTables(18).constData())
                                 << true;
    QTest::newRow("a view for a table")
        << BackupFixture::database("CREATE TABLE t (guid, text, date);"
                                   "CREATE VIEW message AS SELECT * FROM t")
        << false;
    for (int eighths = 1; eighths < 8; ++eighths) {
        QTest::addRow("%d eighths", eighths) << good.first(good.size() * eighths / 8) << false;
        QTest::addRow("%d eighths and a bit", eighths)
            << good.first(good.size() * eighths / 8 + 77) << false;
    }
}

void tst_DamagedMessages::readsWhatIsLeft()
{
    QFETCH(QByteArray, image);
    QFETCH(bool, isEmpty);
    const Outcome outcome = outcomeOf(image);
    QVERIFY(outcome.messages < kCount);
    QCOMPARE(outcome.isLossTold, !isEmpty);
    QVERIFY(outcome.otherTypeIsThere);
}

void tst_DamagedMessages::losesOneOverwrittenPageAlone()
{
    // The root of the messages and three pages with the definitions of all tables.
    DamagedTalk::overwriteEachPage(whole(), QByteArray("\0\xFF\x0D", 3), 4, outcomeOf);
}

void tst_DamagedMessages::readsWhatStandsBetweenDamagedPages()
{
    DamagedTalk::takeTwoPages(whole(), outcomeOf);
}

void tst_DamagedMessages::livesWithoutAnyTable_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<int>("messages");
    QTest::addColumn<bool>("isLossTold");
    for (const char *table : { "handle",
                               "chat",
                               "attachment",
                               "chat_handle_join",
                               "chat_message_join",
                               "message_attachment_join" })
        QTest::newRow(table) << QByteArray(table) << kCount << true;
    for (const char *table : { "chat_recoverable_message_join", "recoverable_message_part" })
        QTest::newRow(table) << QByteArray(table) << kCount << false;
    QTest::newRow("message") << QByteArray("message") << 0 << true;
}

void tst_DamagedMessages::livesWithoutAnyTable()
{
    QFETCH(QByteArray, table);
    QFETCH(int, messages);
    QFETCH(bool, isLossTold);
    const Outcome outcome = outcomeOf(BackupFixture::database(
        (Sample::messageTables(18) + talk() + "DROP TABLE " + table + ';').constData()));
    QCOMPARE(outcome.messages, messages);
    QCOMPARE(outcome.isLossTold, isLossTold);
}

void tst_DamagedMessages::livesWithoutAnyColumn_data()
{
    QTest::addColumn<QByteArray>("column");
    for (const char *column : { "message.text",
                                "message.subject",
                                "message.attributedBody",
                                "message.service",
                                "message.error",
                                "message.date",
                                "message.is_from_me",
                                "message.is_sent",
                                "message.is_delivered",
                                "message.date_delivered",
                                "message.handle_id",
                                "message.cache_roomnames",
                                "message.item_type",
                                "message.associated_message_type",
                                "message.associated_message_guid",
                                "message.balloon_bundle_id",
                                "message.payload_data",
                                "message.message_summary_info",
                                "message.thread_originator_guid",
                                "message.is_audio_message",
                                "chat.style",
                                "chat.chat_identifier",
                                "chat.display_name",
                                "chat.group_id",
                                "chat.room_name",
                                "handle.uncanonicalized_id",
                                "attachment.filename",
                                "attachment.mime_type",
                                "chat_message_join.message_date" })
        QTest::newRow(column) << QByteArray(column);
}

void tst_DamagedMessages::livesWithoutAnyColumn()
{
    QFETCH(QByteArray, column);
    const qsizetype dot = column.indexOf('.');
    const QByteArray drop =
        "ALTER TABLE " + column.first(dot) + " DROP COLUMN " + column.sliced(dot + 1) + ';';
    const Outcome outcome =
        outcomeOf(BackupFixture::database((Sample::messageTables(18) + talk() + drop).constData()));
    QCOMPARE(outcome.messages, column == "message.text" ? 0 : kCount);
    QVERIFY(!outcome.isLossTold);
}

void tst_DamagedMessages::readsAbsurdRows_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::addColumn<int>("messages");

    QTest::newRow("dates") << "UPDATE message SET date = -9223372036854775808 WHERE ROWID % 5 = 0;"
                              "UPDATE message SET date = 9223372036854775807 WHERE ROWID % 5 = 1;"
                              "UPDATE message SET date = 'never' WHERE ROWID % 5 = 2;"
                              "UPDATE message SET date = 1e300 WHERE ROWID % 5 = 3;"
                              "UPDATE message SET date = NULL WHERE ROWID % 5 = 4;"_ba
                           << kCount;
    QTest::newRow("texts that are blobs")
        << "UPDATE message SET text = CAST(text AS BLOB), service = x'ff', guid = CAST(guid AS BLOB);"_ba
        << kCount;
    QTest::newRow("all links twice")
        << "CREATE TABLE j AS SELECT * FROM chat_message_join; DROP TABLE chat_message_join;"
           "CREATE TABLE chat_message_join AS SELECT * FROM j UNION ALL SELECT * FROM j;"_ba
        << kCount;
    QTest::newRow("links to what is not there")
        << "INSERT INTO chat_message_join(chat_id, message_id) VALUES (1, 999), (77, 5), (78, "
           "1000),"
           " (-1, -9223372036854775808), (9223372036854775807, 9223372036854775807);"
           "INSERT INTO chat_handle_join VALUES (1, 99), (99, 1);"
           "INSERT INTO message_attachment_join VALUES (1, 9), (999, 9);"_ba
        << kCount;
    QTest::newRow("reactions to each other")
        << "UPDATE message SET associated_message_type = 2000, associated_message_guid = 'guid-' ||"
           " (ROWID % 300 + 1) WHERE ROWID > 10;"
           "UPDATE message SET text = 'No. ' || ROWID;"_ba
        << kCount;
    QTest::newRow("answers in a circle")
        << "UPDATE message SET thread_originator_guid = 'guid-' || (ROWID % 300 + 1),"
           " thread_originator_part = 'x:y';"_ba
        << kCount;
    QTest::newRow("texts of 4 MB")
        << "UPDATE message SET text = 'No. ' || CAST(zeroblob(4000000) AS TEXT) WHERE ROWID = 7;"
           "UPDATE message SET attributedBody = "_ba
            + "x'" + Sample::attributedBody(u"No. "_s + QString(2'000'000, u'\u00E4')).toHex()
            + "' WHERE ROWID = 8;"
        << kCount;
    QTest::newRow("endless columns")
        << "UPDATE message SET payload_data = zeroblob(3000000), balloon_bundle_id = 'x',"
           " message_summary_info = CAST('bplist00RecRrp' AS BLOB) WHERE ROWID < 5;"_ba
        << kCount;
}

void tst_DamagedMessages::readsAbsurdRows()
{
    QFETCH(QByteArray, change);
    QFETCH(int, messages);
    const Outcome outcome = outcomeOf(
        BackupFixture::database((Sample::messageTables(18) + talk() + change).constData()));
    QCOMPARE(outcome.messages, messages);
    QVERIFY(!outcome.isLossTold);
}

void tst_DamagedMessages::readsRowsThatAreOnlyInTheLog()
{
    const QByteArray before = BackupFixture::database(Sample::messageTables(18).constData());
    const QByteArray after = whole();
    MessageFixture fixture;
    fixture.addDatabase(before);
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/SMS/sms.db-wal"_s, Sample::writeAheadLog(before, after));
    QCOMPARE(fixture.conversations().size(), 2);
    QCOMPARE(fixture.messages(0).size() + fixture.messages(1).size(), kCount);
    QVERIFY(fixture.problems().isEmpty());
}

QTEST_GUILESS_MAIN(tst_DamagedMessages)
#include "tst_DamagedMessages.moc"
