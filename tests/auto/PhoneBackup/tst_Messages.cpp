#include "MessageFixture.h"
#include "PhoneBackup/source/MessageFilter.h"
#include "sample/KeyedArchive.h"
#include "sample/PollPayload.h"
#include "sample/TypedStream.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace MessageRows;

namespace {

QByteArray app(const QVariantMap &root)
{
    return hex(Sample::keyedArchive(root));
}

const QString kAnnSays = u"+15550100123: "_s;

} // namespace

class tst_Messages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsEveryKindOfMessage_data();
    void showsEveryKindOfMessage();
    void readsEveryEra_data();
    void readsEveryEra();
    void readsWhatIsOlder();
    void readsTheFirstIMessages();
    void mergesConversations_data();
    void mergesConversations();
    void ordersConversationsAndMessages();
    void losesNoEditedMessage();
    void cutsTextsWithoutAnEnd();
    void tellsWhatWasSentAndHow_data();
    void tellsWhatWasSentAndHow();
    void tellsPartsOfAGroupApart();
    void keepsOneConversationInMemory();
    void marksDeletedOnes();
    void filters_data();
    void filters();
};

void tst_Messages::showsEveryKindOfMessage_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QStringList>("expected");
    const auto ann = [](const char *text) { return kAnnSays + QString::fromUtf8(text); };

    QTest::newRow("text") << message(1, "'Hello'") << QStringList { ann("Hello") };
    QTest::newRow("attributed text goes before the plain one")
        << message(1, "'Hel'", "attributedBody", hex(Sample::attributedBody(u"Hello"_s)))
        << QStringList { ann("Hello") };
    QTest::newRow("attributed text alone")
        << message(1, "NULL", "attributedBody", hex(Sample::attributedBody(u"Hello"_s)))
        << QStringList { ann("Hello") };
    QTest::newRow("damaged attributed text, plain one")
        << message(1, "'Hello'", "attributedBody", "x'040b'") << QStringList { ann("Hello") };
    QTest::newRow("damaged attributed text alone")
        << message(1, "NULL", "attributedBody", hex(Sample::attributedBody(u"Hello"_s).chopped(9)))
        << QStringList { ann("Hello") };
    QTest::newRow("empty attributed text, plain one")
        << message(1, "'Hello'", "attributedBody", hex(Sample::attributedBody(QString())))
        << QStringList { ann("Hello") };
    QTest::newRow("nothing left of it") << message(1, "NULL", "attributedBody", "x'040b'")
                                        << QStringList { ann("[This message could not be read]") };
    QTest::newRow("control characters")
        << message(1, "CAST(x'610062010d0a63e280a864efbfbd' AS TEXT)")
        << QStringList { ann("ab|c|d") };
    QTest::newRow("files that the database has lost")
        << message(1, "'\uFFFC\uFFFCtwo'")
            + message(2, "NULL", "attributedBody", hex(Sample::attributedBody(u"one\uFFFC"_s)))
            + message(3,
                      "NULL",
                      "attributedBody",
                      hex(Sample::attributedBody(
                          u"\uFFFC\uFFFC"_s,
                          { { 1, 0, u"gone"_s, {}, {} }, { 1, 1, u"file-1"_s, {}, {} } })))
            + attachment(1, 3, "'~/Library/SMS/Attachments/b.png'")
        << QStringList { ann("[Attachment] [Attachment] two"),
                         ann("one [Attachment]"),
                         ann("[Attachment]{image/png b.png}") };
    QTest::newRow("bytes that are no text")
        << message(1, "CAST(x'61ff62' AS TEXT)") << QStringList { ann("ab") };
    QTest::newRow("subject") << message(1, "'Hello'", "subject", "'Re'")
                             << QStringList { ann("Re / Hello") };
    QTest::newRow("the phone's own notes")
        << message(1, "NULL", "is_empty", "1") + message(2, "'x'") << QStringList { ann("x") };
    QTest::newRow("edited") << message(1, "'New'", "date_edited", "700000001000000001")
                            << QStringList { ann("New [Edited]") };
    const QVariantMap versions { { u"d"_s, 1.0 }, { u"t"_s, Sample::attributedBody(u"Last"_s) } };
    QTest::newRow("edited, in its history alone")
        << message(1,
                   "NULL",
                   "message_summary_info",
                   hex(Sample::binaryPropertyList(QVariantMap {
                       { u"ec"_s, QVariantMap { { u"0"_s, QVariantList { versions, versions } } } },
                       { u"ust"_s, true } })))
        << QStringList { ann("Last [Edited]") };
    QTest::newRow("edited, of which a part was unsent then")
        << message(1,
                   "NULL",
                   "message_summary_info, attributedBody",
                   hex(Sample::binaryPropertyList(
                       QVariantMap { { u"ec"_s,
                                       QVariantMap { { u"0"_s, QVariantList { versions } },
                                                     { u"1"_s, QVariantList { versions } } } },
                                     { u"rp"_s, QVariantList { 0 } } }))
                       + ", x'040b'")
        << QStringList { ann("Last|[Unsent] [Edited]") };
    const QByteArray lastVersion = Sample::attributedBody(u"Last"_s);
    const auto history = [](const QVariantMap &parts) {
        return Sample::binaryPropertyList(QVariantMap { { u"ec"_s, parts } });
    };
    const QByteArray plain = history({ { u"0"_s, QVariantList { versions } } });
    QTest::newRow("edited, as XML")
        << message(1,
                   "NULL",
                   "message_summary_info",
                   hex("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>ec</key><dict>"
                       "<key>0</key><array><dict><key>t</key><data>"
                       + lastVersion.toBase64() + "</data></dict></array></dict></dict></plist>"))
            + message(2,
                      "NULL",
                      "message_summary_info",
                      hex("<plist><dict><key>rp</key><array><integer>0</integer></array></dict>"
                          "</plist>"))
        << QStringList { ann("Last [Edited]"), ann("[Unsent]") };
    QTest::newRow("edited, parts in the order of their numbers")
        << message(1,
                   "NULL",
                   "message_summary_info",
                   hex(history({ { u"10"_s, QVariantList { versions } },
                                 { u"9"_s,
                                   QVariantList { QVariantMap {
                                       { u"t"_s, Sample::attributedBody(u"Nine"_s) } } } } })))
        << QStringList { ann("Nine|Last [Edited]") };
    const QVariantMap noVersion { { u"t"_s, QByteArray("\x04\x0b") } };
    QTest::newRow("edited, and damaged: what is left of it")
        << message(1,
                   "NULL",
                   "message_summary_info",
                   hex(plain.chopped(30))) // its end tells where everything is
            + message(2, "NULL", "message_summary_info", hex(plain.first(40)))
            + message(3, "NULL", "date_edited", "5")
            + message(4,
                      "NULL",
                      "message_summary_info",
                      hex(history({ { u"0"_s, QVariantList { noVersion } } })))
        << QStringList { ann("Last [Edited]"),
                         ann("[This message could not be read]"),
                         ann("[This message could not be read] [Edited]"),
                         ann("[This message could not be read] [Edited]") };
    QTest::newRow("marks are not quoted")
        << message(1, "'New'", "date_edited", "700000001000000001")
            + message(
                2, "'x'", "associated_message_type, associated_message_guid", "2001, 'p:0/guid-1'")
            + message(
                3, "'x'", "associated_message_type, associated_message_guid", "2000, 'guid-1'", "0")
        << QStringList { ann("New [Edited]"), ann("Ann liked “New”"), u"> You loved “New”"_s };
    QTest::newRow("unsent") << message(1, "NULL", "date_retracted", "700000001000000001")
                            << QStringList { ann("[Unsent]") };
    QTest::newRow("partly unsent")
        << message(1,
                   "'Rest'",
                   "message_summary_info",
                   hex(Sample::binaryPropertyList(QVariantMap { { u"rp"_s, QVariantList { 1 } } })))
        << QStringList { ann("Rest|[Unsent]") };
    QTest::newRow("a part deleted")
        << message(1, "'Rest'") + "INSERT INTO recoverable_message_part VALUES (1, 1, 1, 5, "
            + hex(Sample::attributedBody(u"Gone"_s)) + ", 0);"
        << QStringList { ann("Rest|[Deleted] Gone") };
    const auto deletedPart = [](int chat, int number, const QByteArray &text) {
        return "INSERT INTO recoverable_message_part VALUES (" + QByteArray::number(chat) + ", 1, "
            + QByteArray::number(number) + ", 5, " + text + ", 0);";
    };
    QTest::newRow("parts deleted, in two chats, a file among them")
        << message(1, "'Rest'") + deletedPart(1, 2, hex(Sample::attributedBody(u"second"_s)))
            + deletedPart(1, 1, hex(Sample::attributedBody(u"first"_s)))
            + deletedPart(2, 1, hex(Sample::attributedBody(u"first"_s)))
            + deletedPart(
                1, 3, hex(Sample::attributedBody(u"\uFFFC"_s, { { 1, 0, u"file-1"_s, {}, {} } })))
        << QStringList { ann("Rest|[Deleted] first|[Deleted] second|[Deleted] [Attachment]") };

    const QByteArray reaction = "associated_message_type, associated_message_guid";
    const QByteArray target = message(1, "'See you\nthere'");
    QTest::newRow("reactions")
        << target + message(2, "'Loved'", reaction, "2000, 'p:0/guid-1'", "0")
            + message(3,
                      "'x'",
                      reaction + ", associated_message_emoji",
                      "2006, 'bp:guid-1', '\xF0\x9F\x98\x80'")
        << QStringList { ann("See you|there"),
                         u"> You loved “See you there”"_s,
                         ann("Ann reacted with \U0001F600 to “See you there”") };
    QTest::newRow("a later reaction takes the place")
        << target + message(2, "'x'", reaction, "2000, 'p:0/guid-1'")
            + message(3, "'x'", reaction + ", date_edited", "2003, 'p:0/guid-1', 5")
        << QStringList { ann("See you|there"), ann("Ann laughed at “See you there”") };
    QTest::newRow("taken back") << target + message(2, "'x'", reaction, "2001, 'guid-1'")
            + message(3, "'x'", reaction, "3001, 'guid-1'")
                                << QStringList { ann("See you|there") };
    QTest::newRow("each in a group of its own")
        << target + message(2, "'x'", reaction, "2001, 'p:0/guid-1'")
            + message(3, "'x'", reaction, "2001, 'p:0/guid-1'", "0")
            + message(4, "'x'", reaction, "3001, 'p:0/guid-1'", "0")
        << QStringList { ann("See you|there"), ann("Ann liked “See you there”") };
    QTest::newRow("reaction to a message that is gone")
        << message(2, "'x'", reaction, "2004, 'p:0/elsewhere'")
        << QStringList { ann("Ann emphasized a message") };
    QTest::newRow("a long text is quoted in part")
        << message(1, "'" + QByteArray(79, 'a') + "\xF0\x9F\x98\x80" + "b'")
            + message(2, "'x'", reaction, "2001, 'guid-1'")
        << QStringList { kAnnSays + QString(79, u'a') + u"\U0001F600b"_s,
                         ann("Ann liked “") + QString(79, u'a') + u"…”"_s };

    QTest::newRow("a sticker takes no other's place")
        << target + message(2, "'x'", reaction, "1000, 'p:0/guid-1'")
            + message(3, "'x'", reaction, "2007, 'p:0/guid-1'")
            + message(4, "'x'", reaction, "2001, 'p:0/guid-1'")
            + attachment(1, 2, "'~/Library/SMS/Attachments/star.heics'", "is_sticker = 1")
        << QStringList { ann("See you|there"),
                         ann("Ann put a sticker on “See you there”{image/heics star.heics}"),
                         ann("Ann put a sticker on “See you there”"),
                         ann("Ann liked “See you there”") };
    QTest::newRow("a sticker behind a reaction")
        << target + message(2, "'x'", reaction, "2000, 'p:0/guid-1'")
            + message(3, "'x'", reaction, "1000, 'p:0/guid-1'")
        << QStringList { ann("See you|there"),
                         ann("Ann loved “See you there”"),
                         ann("Ann put a sticker on “See you there”") };
    QTest::newRow("one person reacts from two addresses")
        << "INSERT INTO handle(ROWID, id, service) VALUES (2, 'ann@example.org', 'iMessage');"_ba
            + target + message(2, "'x'", reaction, "2000, 'p:0/guid-1'")
            + message(3, "'x'", reaction, "2001, 'p:0/guid-1'", "2")
        << QStringList { ann("See you|there"), u"ann@example.org: Ann liked “See you there”"_s };
    QTest::newRow("a sticker that was taken off")
        << target + message(2, "'x'", reaction, "2007, 'p:0/guid-1'")
            + message(3, "'x'", reaction, "3007, 'p:0/guid-1'")
        << QStringList { ann("See you|there") };
    const QByteArray balloon = "balloon_bundle_id, payload_data";
    const QByteArray polls = "'com.apple.messages.Polls', ";
    QTest::newRow("a poll that has only words")
        << message(1, "NULL", balloon, polls + app({ { u"ldtext"_s, u"Fish or soup?"_s } }))
            + message(2, "'x'", reaction, "4000, 'guid-1'")
        << QStringList { ann("[Poll: Fish or soup?]"),
                         ann("Ann voted on “[Poll: Fish or soup?]”") };
    const QByteArray supper =
        polls + hex(Sample::pollPayload(u"Supper?"_s, { u"Fish"_s, u"Soup"_s }));
    const QByteArray voted = reaction + ", " + balloon;
    const auto voteFor = [&polls](const QStringList &options) {
        return "4000, 'guid-1', " + polls + hex(Sample::votePayload(options));
    };
    QTest::newRow("a poll and the last vote of everybody")
        << message(1, "CAST(x'efbfbd' AS TEXT)", balloon, supper)
            + message(2, "'x'", voted, voteFor({ u"Soup"_s }))
            + message(3, "'x'", voted, voteFor({ u"Fish"_s, u"Soup"_s, u"Cake"_s }))
            + message(4, "'x'", voted, voteFor({ u"Fish"_s }), "0")
            + message(5, "'x'", voted, voteFor({}), "0")
        << QStringList { ann("[Poll: Supper?]|• Fish|• Soup"),
                         ann("Ann voted for “Fish”, “Soup” in “[Poll: Supper?]”") };
    QTest::newRow("a poll that got an option more")
        << message(1, "NULL", balloon, supper)
            + message(
                2,
                "NULL",
                "associated_message_guid, " + balloon,
                "'guid-1', " + polls
                    + hex(Sample::pollPayload(u"Supper?"_s, { u"Fish"_s, u"Soup"_s, u"Rice"_s })))
            + message(3, "'x'", voted, voteFor({ u"Rice"_s }), "0")
            + message(4, "'x'", voted, voteFor({ u"Cake"_s }))
        << QStringList { ann("[Poll: Supper?]|• Fish|• Soup|• Rice"),
                         u"> You voted for “Rice” in “[Poll: Supper?]”"_s,
                         ann("Ann voted on “[Poll: Supper?]”") };
    QTest::newRow("what is left of polls")
        << message(1,
                   "NULL",
                   "associated_message_guid, " + balloon,
                   "'gone', " + polls + hex(Sample::pollPayload({}, { u"Fish"_s, {} })))
            + message(2,
                      "'x'",
                      voted,
                      "4000, 'elsewhere', " + polls + hex(Sample::votePayload({ u"Fish"_s })))
            + message(3, "NULL", balloon, polls + app({ { u"URL"_s, u"data:,e30?src=p"_s } }))
            + message(4, "NULL", balloon, polls + "x'00'")
        << QStringList { ann("[Poll]|• Fish|• [Option 2]"),
                         ann("Ann voted on a poll"),
                         ann("[Poll]"),
                         ann("[Poll]") };

    QTest::newRow("send effects") << message(1,
                                             "'Boo'",
                                             "expressive_send_style_id",
                                             "'com.apple.MobileSMS.expressivesend.impact'")
            + message(2,
                      "'Yes!'",
                      "expressive_send_style_id",
                      "'com.apple.messages.effect.CKHappyBirthdayEffect'")
            + message(3, "'New'", "expressive_send_style_id", "'com.apple.messages.effect.CKNew'")
                                  << QStringList { ann("Boo [Sent with Slam]"),
                                                   ann("Yes! [Sent with Balloons]"),
                                                   ann("New [Sent with an effect]") };
    QTest::newRow("scheduled ones, until they are sent")
        << message(1, "'Later'", "schedule_type, schedule_state", "2, 1", "0")
            + message(2, "'Sent'", "schedule_type, schedule_state", "2, 3", "0")
            + "UPDATE message SET is_sent = 0 WHERE ROWID = 1;"
        << QStringList { u"> Later [Scheduled]"_s, u"> Sent"_s };

    const QByteArray reply = "thread_originator_guid, thread_originator_part";
    QTest::newRow("reply") << target + message(2, "'Yes'", reply, "'guid-1', '0:0:5'", "0")
                           << QStringList { ann("See you|there"),
                                            u"> [Reply to “See you there”]|Yes"_s };
    QTest::newRow("replies in a circle") << message(1, "'a'", reply, "'guid-2', NULL")
            + message(2, "'b'", reply, "'guid-1', NULL") + message(3, "'c'", reply, "'guid-3', ''")
                                         << QStringList { ann("[Reply to “b”]|a"),
                                                          ann("[Reply to “a”]|b"),
                                                          ann("[Reply to “c”]|c") };
    QTest::newRow("reply to nothing")
        << message(2, "'Yes'", reply, "'gone', NULL") << QStringList { ann("[Reply]|Yes") };

    const QByteArray event = "item_type, group_action_type, other_handle, group_title";
    QTest::newRow("events") << message(1, "NULL", event, "1, 0, 2, NULL")
            + message(2, "NULL", event, "1, 1, 2, NULL")
            + message(3, "NULL", event, "2, 0, 0, 'Crew'", "0")
            + message(4, "NULL", event, "2, 0, 0, NULL")
            + message(5, "NULL", event, "3, 0, 0, NULL")
            + message(6, "NULL", event, "3, 1, 0, NULL")
            + message(7, "NULL", event, "77, 0, 0, NULL")
            + message(8, "NULL", event, "1, 0, 1, NULL")
            + "INSERT INTO handle(ROWID, id, service) VALUES (2, 'bob@example.org', 'iMessage');"
                            << QStringList { ann("Ann added Bob to the conversation"),
                                             ann("Ann removed Bob from the conversation"),
                                             u"> You named the conversation “Crew”"_s,
                                             ann("Ann removed the name of the conversation"),
                                             ann("Ann left the conversation"),
                                             ann("Ann changed the group photo"),
                                             ann("[Event 77 by Ann]"),
                                             ann("Ann changed the phone number") };

    const QByteArray plugin = "'com.apple.messages.MSMessageExtensionBalloonPlugin:0:";
    const QVariantMap url { { Sample::kArchivedClass, u"NSURL"_s },
                            { u"NS.relative"_s, u"https://example.org/x"_s } };
    const QVariantMap page { { Sample::kArchivedClass, u"LPLinkMetadata"_s }, { u"URL"_s, url } };
    QVariantMap titled = page;
    titled.insert(u"title"_s, u" Tide &\nTimber "_s);
    const QByteArray link = app({ { u"richLinkMetadata"_s, page } });
    const QByteArray titledLink = app({ { u"richLinkMetadata"_s, titled } });
    const QByteArray shared = app({ { Sample::kArchivedClass, u"LPSharingMetadataWrapper"_s },
                                    { u"metadata"_s, titled },
                                    { u"hasCompletedFetch"_s, true } });
    QTest::newRow("links") << message(1,
                                      "NULL",
                                      balloon + ", subject",
                                      "'com.apple.messages.URLBalloonProvider', " + link + ", 'Re'")
            + message(2, "NULL", balloon, "NULL, " + link)
            + message(3, "'https://a.example'", balloon, "NULL, " + link)
            + message(4, "NULL", balloon, "'com.apple.messages.URLBalloonProvider', x'00'")
            + message(5, "NULL", balloon, "'com.apple.messages.URLBalloonProvider', " + shared)
            + message(6, "'https://a.example'", balloon, "NULL, " + titledLink)
            + message(7, "'Tide & Timber'", balloon, "NULL, " + shared)
                           << QStringList { ann("Re / https://example.org/x"),
                                            ann("https://example.org/x"),
                                            ann("https://a.example"),
                                            ann("[Link]"),
                                            ann("https://example.org/x [Link: Tide & Timber]"),
                                            ann("https://a.example [Link: Tide & Timber]"),
                                            ann("Tide & Timber") };
    QTest::newRow("apps")
        << message(
               1,
               "CAST(x'efbfbd' AS TEXT)",
               balloon,
               plugin + "com.example.game', "
                   + app({ { u"an"_s, u"Game"_s },
                           { u"userInfo"_s, QVariantMap { { u"caption"_s, u"Your turn"_s } } } }))
            + message(2,
                      "NULL",
                      balloon,
                      plugin + "com.apple.PassbookUIService.PeerPaymentMessagesExtension', "
                          + app({ { u"ldtext"_s, u"$5 Payment"_s } }))
            + message(3, "NULL", balloon, plugin + "com.example.gone', x'0102'")
            + message(4, "NULL", balloon, "'com.apple.DigitalTouchBalloonProvider', x'0a'")
            + message(5, "NULL", balloon, "'com.apple.Handwriting.HandwritingProvider', x'0a'")
        << QStringList { ann("[Game: Your turn]"),
                         ann("[Payment: $5 Payment]"),
                         ann("[App message]"),
                         ann("[Digital Touch message]"),
                         ann("[Handwritten message]") };
    const QByteArray spoken = hex(
        Sample::attributedBody(u"\uFFFC"_s, { { 1, 0, u"gone"_s, {}, {}, u"See you\uFFFC"_s } }));
    QTest::newRow("voice messages that have expired")
        << message(1, "NULL", "is_audio_message", "1")
            + message(2, "NULL", "is_audio_message, attributedBody", "1, " + spoken)
            + message(3,
                      "NULL",
                      "is_audio_message, is_expirable, expire_state, attributedBody",
                      "1, 1, 3, " + spoken)
            + message(4, "NULL", "is_audio_message, attributedBody", "1, " + spoken)
            + attachment(1, 4, "NULL")
        << QStringList { ann("[Voice message]"),
                         ann("[Voice message] See you"),
                         ann("[Expired voice message] See you"),
                         ann("[Voice message] See you{application/octet-stream }") };
}

void tst_Messages::showsEveryKindOfMessage()
{
    QFETCH(QByteArray, rows);
    QFETCH(QStringList, expected);
    MessageFixture fixture;
    fixture.addMessages(kAnn + rows);
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, addressBook());
    QCOMPARE(fixture.messages(), expected);
    QCOMPARE(fixture.conversations(), QStringList { u"Ann|+15550100123|"_s });
    const bool isDamaged = expected.join(u' ').contains("could not be read"_L1);
    QCOMPARE(fixture.problems().size(), isDamaged ? 1 : 0);
}

void tst_Messages::readsEveryEra_data()
{
    QTest::addColumn<int>("release");
    for (int release = Sample::kOldestMessageRelease; release <= Sample::kNewestMessageRelease;
         ++release)
        QTest::addRow("iOS %d", release) << release;
}

void tst_Messages::readsEveryEra()
{
    QFETCH(int, release);
    MessageFixture fixture;
    // Seconds and nanoseconds in one database, as an upgrade leaves them.
    fixture.addMessages(kAnn
                            + "INSERT INTO message(ROWID, guid, text, handle_id, date, is_from_me,"
                              " is_sent) VALUES (1, 'a', 'Second', 1, 400000000, 0, 0),"
                              " (2, 'b', 'Third', 0, 700000000000000000, 1, 1),"
                              " (3, 'c', 'First', 1, 0, 0, 0);"
                              "INSERT INTO chat_message_join(chat_id, message_id) VALUES (1, 1),"
                              " (1, 2), (1, 3);",
                        release);
    QCOMPARE(fixture.messages(),
             QStringList({ kAnnSays + u"First"_s, kAnnSays + u"Second"_s, u"> Third"_s }));
    QCOMPARE(fixture.conversations(), QStringList { u"+15550100123|+15550100123|"_s });
    const QList<BkSMSChat *> &chats = fixture.content()->chats();
    QVERIFY(!chats.at(0)->msgDate().isValid());
    QCOMPARE(chats.at(1)->msgDate(), QDateTime(QDate(2013, 9, 4), QTime(15, 6, 40), Qt::UTC));
    QCOMPARE(chats.at(2)->msgDate(), QDateTime(QDate(2023, 3, 8), QTime(20, 26, 40), Qt::UTC));
    QVERIFY(fixture.problems().isEmpty());
}

// One table for all, before version 6.
void tst_Messages::readsWhatIsOlder()
{
    MessageFixture fixture;
    fixture.addDatabase(BackupFixture::database(
        "CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT, date INTEGER,"
        " text TEXT, flags INTEGER, group_id INTEGER, subject TEXT, recipients BLOB,"
        " is_madrid INTEGER, madrid_handle TEXT, madrid_roomname TEXT, madrid_flags INTEGER,"
        " madrid_error INTEGER);"
        "CREATE TABLE group_member (ROWID INTEGER PRIMARY KEY, group_id INTEGER, address TEXT);"
        "CREATE TABLE madrid_attachment (ROWID INTEGER PRIMARY KEY, attachment_guid TEXT,"
        " created_date INTEGER, filename TEXT, uti_type TEXT, mime_type TEXT, message_id INTEGER);"
        "CREATE TABLE msg_pieces (ROWID INTEGER PRIMARY KEY, message_id INTEGER, data BLOB,"
        " part_id INTEGER, content_type TEXT);"
        "INSERT INTO group_member(group_id, address) VALUES (1, '(555) 010-0123'), (2, '28777'),"
        " (2, 'bob@example.org');"
        "INSERT INTO message(ROWID, address, date, text, flags, group_id) VALUES"
        " (1, '+15550100123', 1300000000, 'in', 2, 1), (2, '+15550100123', 1300000060, 'out', 3, "
        "1),"
        " (3, '+15550100123', 1300000120, 'failed', 33, 1),"
        " (4, '+15550100123', 1300000180, 'draft', 5, 1),"
        " (5, '28777', 1200000000, NULL, 2, 2);"
        "INSERT INTO message(ROWID, date, text, flags, is_madrid, madrid_handle, madrid_flags,"
        " madrid_error) VALUES (6, 330000000, 'by iMessage', 0, 1, '+15550100123', 32773, 0),"
        " (7, 330000060, 'in' || char(65532) || 'out', 0, 1, '+15550100123', 1, 0);"
        "INSERT INTO madrid_attachment VALUES"
        " (4, 'file', 330000000, '/var/mobile/Library/SMS/Attachments/0a/boat.png', 'public.png',"
        " NULL, 7), (5, 'gone', 0, NULL, NULL, 'image/jpeg', 7);"
        "INSERT INTO msg_pieces(message_id, part_id, content_type, data) VALUES"
        " (5, 2, 'image/jpeg', NULL), (5, 1, 'text/plain', 'Look'), (5, 0, 'application/smil', "
        "'x'),"
        " (5, 3, 'audio/amr', NULL);"));
    fixture.writer.addFile(u"MediaDomain"_s, u"Library/SMS/Parts/a5/14/5-2.JPG"_s, "picture");
    fixture.writer.addFile(u"MediaDomain"_s, u"Library/SMS/Parts/a5/14/5-2-preview.JPG"_s, "x");
    fixture.writer.addFile(u"MediaDomain"_s, u"Library/SMS/Attachments/0a/boat.png"_s, "boat");
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, addressBook());
    QCOMPARE(fixture.conversations(),
             QStringList({ u"Ann|(555) 010-0123, +15550100123|"_s,
                           u"28777, Bob|28777|bob@example.org"_s }));
    QCOMPARE(fixture.messages(0),
             QStringList({ u"+15550100123: in"_s,
                           u"> out"_s,
                           u"> failed"_s,
                           u"> by iMessage"_s,
                           u"+15550100123: in{image/png boat.png}+out{image/jpeg }"_s }));
    QString marks;
    for (const BkSMSChat *chat : fixture.content(0)->chats())
        marks += QString(chat->isSentDone() ? u'+' : u'-') + (chat->isNormalSMS() ? u'S' : u'i');
    QCOMPARE(marks, u"+S+S-S+i+i"_s);
    QCOMPARE(fixture.content(0)->chats().constFirst()->msgDate(),
             QDateTime(QDate(2011, 3, 13), QTime(7, 6, 40), Qt::UTC));
    QCOMPARE(fixture.messages(1),
             QStringList { u"28777: Look{image/jpeg 5-2.JPG}+[Audio: 5-3]{audio/amr 5-3}"_s });
    QCOMPARE(fixture.content(1)->chats().constFirst()->pieces().at(0)->pieceData(), "picture");
    QCOMPARE(fixture.list(MessageFixture::kFiles),
             QStringList({ u"Ann/boat.png"_s, u"28777, Bob/5-2.JPG"_s }));
    QCOMPARE(fixture.problems(),
             QStringList({ u"7 Ann/gone (never downloaded)"_s, u"7 28777, Bob/5-3 (loss)"_s }));
}

void tst_Messages::readsTheFirstIMessages()
{
    MessageFixture fixture;
    const QByteArray body = Sample::attributedBody(u"whole"_s);
    fixture.addDatabase(BackupFixture::database(
        ("CREATE TABLE message (ROWID INTEGER PRIMARY KEY, address TEXT, date INTEGER, text TEXT,"
         " is_madrid INTEGER, madrid_handle TEXT, madrid_roomname TEXT, madrid_flags INTEGER,"
         " madrid_error INTEGER, madrid_attributedBody BLOB);"
         "INSERT INTO message VALUES"
         " (1, '28777', 1300000000, 'without a word on its way', 0, NULL, NULL, 0, 0, NULL),"
         " (2, NULL, 330000000, NULL, 1, 'ann@example.org', 'chat5', 1, 0, "
         + hex(body) + "), (3, NULL, 330000001, NULL, 1, 'bob@example.org', 'chat5', 1, 0, "
         + hex(body.chopped(9))
         + "), (4, NULL, 330000002, NULL, 1, 'bob@example.org', 'chat5', 1,"
           " 0, x'040b');")
            .constData()));
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, addressBook());
    // Nothing tells who is in the room but those who wrote.
    QCOMPARE(fixture.conversations(),
             QStringList({ u"Ann, Bob||ann@example.org, bob@example.org"_s, u"28777|28777|"_s }));
    QCOMPARE(fixture.messages(0),
             QStringList({ u"ann@example.org: whole"_s,
                           u"bob@example.org: whole"_s,
                           u"bob@example.org: [This message could not be read]"_s }));
    QCOMPARE(fixture.content(0)->addrIds().size(), 2);
    QCOMPARE(fixture.messages(1), QStringList { u"28777: without a word on its way"_s });
    QCOMPARE(fixture.problems().size(), 1);
}

void tst_Messages::mergesConversations_data()
{
    QTest::addColumn<QByteArray>(
        "chats"); // guid, style, identifier, room, name, group id: address…
    QTest::addColumn<QStringList>("expected");

    const auto chat = [](int row, const QByteArray &values, const QByteArrayList &addresses) {
        const QByteArray number = QByteArray::number(row);
        QByteArray sql = "INSERT INTO chat(ROWID, guid, style, chat_identifier, room_name,"
                         " display_name, group_id) VALUES ("
            + number + ", 'chat-" + number + "', " + values + ");";
        for (const QByteArray &address : addresses) {
            sql += "INSERT OR IGNORE INTO handle(id, service) VALUES ('" + address + "', 's"
                + number + "'); INSERT INTO chat_handle_join SELECT " + number
                + ", ROWID FROM handle WHERE id = '" + address + "' AND service = 's" + number
                + "';";
        }
        return sql + "INSERT INTO message(ROWID, guid, text, date) VALUES (" + number + ", 'm"
            + number + "', 'x', 70000000" + number
            + "000000000); INSERT INTO chat_message_join(chat_id, message_id) VALUES (" + number
            + ", " + number + ");";
    };
    QTest::newRow("two services") << chat(1,
                                          "45, '+15550100777', NULL, NULL, NULL",
                                          { "+15550100777" })
            + chat(2, "45, '+15550100777', NULL, NULL, NULL", { "+15550100777" })
                                  << QStringList { u"+15550100777|+15550100777|"_s };
    QTest::newRow("two spellings of a stranger's number")
        << chat(1, "45, '+15550100777', NULL, NULL, NULL", { "+15550100777" })
            + chat(2, "45, '5550100777', NULL, NULL, NULL", { "5550100777" })
        << QStringList { u"+15550100777|+15550100777, 5550100777|"_s };
    QTest::newRow("a local number that two strangers may have")
        << chat(1, "45, '5551234', NULL, NULL, NULL", { "5551234" })
            + chat(2, "45, '+12125551234', NULL, NULL, NULL", { "+12125551234" })
            + chat(3, "45, '+13055551234', NULL, NULL, NULL", { "+13055551234" })
        << QStringList { u"+13055551234|+13055551234|"_s,
                         u"+12125551234|+12125551234|"_s,
                         u"5551234|5551234|"_s };
    QTest::newRow("number and e-mail of one person")
        << chat(1, "45, '+15550100123', NULL, NULL, NULL", { "+15550100123" })
            + chat(2, "45, 'ann@example.org', NULL, NULL, NULL", { "ann@example.org" })
        << QStringList { u"Ann|+15550100123|ann@example.org"_s };
    QTest::newRow("two people") << chat(1, "45, '28777', NULL, NULL, NULL", { "28777" })
            + chat(2, "45, 'bob@example.org', NULL, NULL, NULL", { "bob@example.org" })
                                << QStringList { u"Bob||bob@example.org"_s, u"28777|28777|"_s };
    QTest::newRow("a group by its identifier")
        << chat(1, "43, 'chat1', 'chat1', 'Crew', 'g'", { "28777", "+15550100123" })
            + chat(2, "43, 'chat2', 'chat2', 'Crew 2', 'g'", { "28777", "bob@example.org" })
        << QStringList { u"Crew 2|28777, +15550100123|bob@example.org"_s };
    QTest::newRow("a group by its room, without a name")
        << chat(1, "43, 'chat1', 'chat1', NULL, NULL", { "28777", "+15550100123" })
            + chat(2, "43, 'chat1', 'chat1', '', NULL", { "28777", "+15550100123" })
        << QStringList { u"28777, Ann|28777, +15550100123|"_s };
    QTest::newRow("a group that says it is none")
        << chat(1, "45, 'chat1', NULL, NULL, NULL", { "28777", "+15550100123" })
        << QStringList { u"28777, Ann|28777, +15550100123|"_s };
    QTest::newRow("without participants")
        << chat(1, "45, 'bob@example.org', NULL, NULL, NULL", {})
            + chat(2, "43, 'chat2', NULL, NULL, NULL", {})
        << QStringList { u"chat2||"_s, u"Bob||bob@example.org"_s };
    QTest::newRow("a sender's word")
        << chat(1, "45, 'MyBank', NULL, NULL, NULL", { "MyBank" }) << QStringList { u"MyBank||"_s };
    QTest::newRow("addresses that the phone joins")
        << chat(1, "45, '+15550100123', NULL, NULL, NULL", { "+15550100123" })
            + chat(2, "45, 'new@example.org', NULL, NULL, NULL", { "new@example.org" })
            + chat(3, "45, 'bob@example.org', NULL, NULL, NULL", { "bob@example.org" })
            + "UPDATE handle SET person_centric_id = 'one';"
        << QStringList { u"Bob||bob@example.org"_s, u"Ann|+15550100123|new@example.org"_s };
    QTest::newRow("messages of no chat")
        << "INSERT INTO handle(ROWID, id, service) VALUES (9, '+15550100123', 'SMS');"_ba
            + chat(1, "45, 'ann@example.org', NULL, NULL, NULL", { "ann@example.org" })
            + chat(2, "43, 'chat2', 'chat2', 'Crew', NULL", { "28777" })
            + "INSERT INTO message(ROWID, guid, text, handle_id, cache_roomnames, date) VALUES"
              " (5, 'a', 'of Ann', 9, NULL, 700000005000000000),"
              " (6, 'b', 'of the crew', 9, 'chat2', 700000006000000000),"
              " (7, 'c', 'of nobody', 77, NULL, 5),"
              " (8, 'd', 'of a chat that is gone', 0, NULL, 5);"
              "INSERT INTO chat_message_join(chat_id, message_id) VALUES (99, 8);"
        << QStringList { u"Crew|28777|"_s, u"Ann||ann@example.org"_s, u"No conversation||"_s };
}

void tst_Messages::mergesConversations()
{
    QFETCH(QByteArray, chats);
    QFETCH(QStringList, expected);
    MessageFixture fixture;
    fixture.addMessages(chats);
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, addressBook());
    QCOMPARE(fixture.conversations(), expected);
    QVERIFY(fixture.problems().isEmpty());
    qsizetype shown = 0;
    for (int i = 0; i < expected.size(); ++i)
        shown += fixture.messages(i).size();
    QCOMPARE(shown,
             chats.count("INSERT INTO message(ROWID, guid, text, date)")
                 + (chats.contains("of nobody") ? 4 : 0));
}

void tst_Messages::ordersConversationsAndMessages()
{
    MessageFixture fixture;
    // The dates of the links may lack or be as coarse as they like.
    fixture.addMessages(
        kAnn
        + "INSERT INTO handle(ROWID, id, service) VALUES (2, '28777', 'SMS');"
          "INSERT INTO chat(ROWID, guid, style, chat_identifier) VALUES (2, 'x', 45, '28777'),"
          " (3, 'y', 45, 'empty@example.org');"
          "INSERT INTO chat_handle_join VALUES (2, 2);"
          "INSERT INTO message(ROWID, guid, text, handle_id, date) VALUES"
          " (1, 'a', 'last', 1, 700000009000000000), (2, 'b', 'first', 1, 600000000),"
          " (3, 'c', 'equal 1', 1, 700000005000000000), (4, 'd', 'equal 2', 1, 700000005000000000),"
          " (5, 'e', 'code', 2, 700000007000000000);"
          "INSERT INTO chat_message_join(chat_id, message_id, message_date) VALUES (1, 1, 0),"
          " (1, 2, 600000000), (1, 4, 0), (1, 3, 0), (1, 77, 800000000000000000),"
          " (2, 5, 700000007000000000);");
    QCOMPARE(fixture.conversations(),
             QStringList({ u"+15550100123|+15550100123|"_s, u"28777|28777|"_s }));
    QCOMPARE(fixture.messages(0),
             QStringList({ kAnnSays + u"first"_s,
                           kAnnSays + u"equal 1"_s,
                           kAnnSays + u"equal 2"_s,
                           kAnnSays + u"last"_s }));
    QVERIFY(fixture.problems().isEmpty());
}

void tst_Messages::losesNoEditedMessage()
{
    const QVariantMap version { { u"t"_s, Sample::attributedBody(u"Last"_s) } };
    const QByteArray history = Sample::binaryPropertyList(QVariantMap {
        { u"ec"_s, QVariantMap { { u"0"_s, QVariantList { version } } } }, { u"ust"_s, true } });
    QByteArray rows = kAnn;
    int count = 0;
    for (qsizetype place = 0; place < history.size(); ++place) {
        const QByteArray flipped = QByteArray(history).replace(place, 1, QByteArray(1, '~'));
        for (const QByteArray &damaged : { flipped, history.first(place) + '~' })
            rows += message(++count, "NULL", "message_summary_info", hex(damaged));
    }
    MessageFixture fixture;
    fixture.addMessages(rows);
    QCOMPARE(fixture.messages().size(), count);
    QVERIFY(fixture.messages().filter(u"Last"_s).size() > count / 2);
}

void tst_Messages::cutsTextsWithoutAnEnd()
{
    MessageFixture fixture;
    const QByteArray endless = "replace(hex(zeroblob(2500000)), '00', '\u00E4')";
    fixture.addMessages(kAnn + message(1, endless)
                        + message(2, "'x'", "attributedBody", "CAST(" + endless + " AS BLOB)"));
    QCOMPARE(fixture.messages(),
             QStringList({ kAnnSays + QString(2 << 20, u'\u00E4'), kAnnSays + u'x' }));
    QCOMPARE(fixture.problems(), QStringList { u"6 HomeDomain/Library/SMS/sms.db: text (loss)"_s });
}

void tst_Messages::tellsWhatWasSentAndHow_data()
{
    QTest::addColumn<QByteArrayList>("missing"); // columns
    QTest::addColumn<QString>("sent");

    const QByteArrayList none;
    QTest::newRow("all columns") << none << u"++++--+"_s;
    QTest::newRow("nothing tells of errors") << QByteArrayList { "error" } << u"+++++-+"_s;
    QTest::newRow("nothing tells of deliveries")
        << QByteArrayList { "is_delivered", "date_delivered" } << u"++----+"_s;
    QTest::newRow("nothing tells what was sent") << QByteArrayList { "is_sent" } << u"++++-++"_s;
    QTest::newRow("errors alone") << QByteArrayList { "is_sent", "is_delivered", "date_delivered" }
                                  << u"++++-++"_s;
    QTest::newRow("nothing at all")
        << QByteArrayList { "is_sent", "is_delivered", "date_delivered", "error" } << u"+++++++"_s;
}

void tst_Messages::tellsWhatWasSentAndHow()
{
    QFETCH(QByteArrayList, missing);
    QByteArray dropped;
    for (const QByteArray &column : missing)
        dropped += "ALTER TABLE message DROP COLUMN " + column + ';';
    MessageFixture fixture;
    fixture.addMessages(
        kAnn
        + "INSERT INTO message(ROWID, guid, text, date, is_from_me, service, error, is_sent,"
          " is_delivered, date_delivered) VALUES"
          " (1, 'a', 'received', 1, 0, 'SMS', 4, 0, 0, 0),"
          " (2, 'b', 'sent', 2, 1, 'sms', 0, 1, 0, 0),"
          " (3, 'c', 'delivered', 3, 1, 'iMessage', 0, 0, 1, NULL),"
          " (4, 'd', 'delivered then', 4, 1, 'IMESSAGE', 0, 0, 0, 5),"
          " (5, 'e', 'failed', 5, 1, 'iMessageLite', 22, 1, 0, 0),"
          " (6, 'f', 'on its way', 6, 1, 'RCS', 0, 0, 0, 0),"
          " (7, 'g', 'of the chat', 7, 0, NULL, 0, 0, 0, 0);"
          "INSERT INTO chat_message_join(chat_id, message_id) SELECT 1, ROWID FROM message;"
        + dropped);
    QString sent;
    QString kinds;
    BkSMSChatGroup *group = fixture.content();
    QVERIFY(group);
    for (const BkSMSChat *chat : group->chats()) {
        sent += chat->isSentDone() ? u'+' : u'-';
        kinds += chat->isNormalSMS() ? u'S' : u'i';
    }
    QTEST(sent, "sent");
    QCOMPARE(kinds, u"SSiiiSi"_s);
}

void tst_Messages::tellsPartsOfAGroupApart()
{
    MessageFixture fixture;
    fixture.addMessages(kGroup + message(1, "'a'") + message(2, "'b'", {}, {}, "2")
                        + message(3, "'c'", {}, {}, "4") + message(4, "'d'", {}, {}, "77")
                        + "INSERT INTO handle(ROWID, id, service) VALUES (4, 'left@example.org',"
                          " 'iMessage');");
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, addressBook());
    // The owner's own number is no participant; who left and wrote still has a name.
    QCOMPARE(fixture.conversations(), QStringList { u"Ann, Bob|+15550100123|bob@example.org"_s });
    QCOMPARE(
        fixture.messages(),
        QStringList(
            { u"+15550100123: a"_s, u"bob@example.org: b"_s, u"left@example.org: c"_s, u": d"_s }));
    const QMap<QString, QString> expected { { u"+15550100123"_s, u"Ann"_s },
                                            { u"bob@example.org"_s, u"Bob"_s },
                                            { u"left@example.org"_s, u"left@example.org"_s } };
    QCOMPARE(fixture.content()->addrIds(), expected);
}

void tst_Messages::keepsOneConversationInMemory()
{
    MessageFixture fixture;
    fixture.addMessages(
        kAnn
        + "INSERT INTO chat(ROWID, guid, style, chat_identifier) VALUES (2, 'x', 45, '28777');"
          "INSERT INTO message(ROWID, guid, text, date) VALUES (1, 'a', 'one', 2), (2, 'b', 'two',"
          " 1); INSERT INTO chat_message_join(chat_id, message_id) VALUES (1, 1), (2, 2);");
    for (int round = 0; round < 3; ++round) {
        QCOMPARE(fixture.messages(0).size(), 1);
        QVERIFY(fixture.messages(0).constFirst().endsWith("one"_L1));
        QVERIFY(fixture.messages(1).constFirst().endsWith("two"_L1));
    }
    BkData *data = fixture.set();
    QCOMPARE(data->recoverList(), QList<int>({ 0, 1 }));
    QVERIFY(data->recover(data->at(1, true)));
    QVERIFY(!data->recover(nullptr));
    QVERIFY(!data->at(2, true));
    QVERIFY(!data->at(-1, true));
}

void tst_Messages::marksDeletedOnes()
{
    MessageFixture fixture;
    fixture.addMessages(
        kAnn
        + "INSERT INTO chat(ROWID, guid, style, chat_identifier) VALUES (2, 'x', 45, '28777');"
          "INSERT INTO message(ROWID, guid, text, date) VALUES (1, 'a', 'one', 11),"
          " (2, 'b', 'two', 12), (3, 'c', 'three', 13), (4, 'd', 'four', 1);"
          "INSERT INTO chat_message_join(chat_id, message_id) VALUES (1, 1), (1, 3);"
          "INSERT INTO chat_recoverable_message_join(chat_id, message_id, delete_date) VALUES"
          " (1, 2, 5), (1, 3, 5), (2, 4, 5), (99, 5, 5);"
          "INSERT INTO message(ROWID, guid, text, handle_id, date) VALUES (5, 'e', 'five', 1, 14);"
        + attachment(1, 2, "'~/Library/SMS/Attachments/a.jpg'"));
    fixture.writer.addFile(u"MediaDomain"_s, u"Library/SMS/Attachments/a.jpg"_s, "a");
    QCOMPARE(fixture.conversations(),
             QStringList({ u"+15550100123|+15550100123|"_s, u"28777|28777||deleted"_s }));
    QCOMPARE(fixture.messages(0),
             QStringList({ kAnnSays + u"one"_s,
                           kAnnSays + u"[Deleted] two{image/jpg a.jpg}"_s,
                           kAnnSays + u"three"_s,
                           kAnnSays + u"[Deleted] five"_s })); // its chat is gone, too
    QCOMPARE(fixture.messages(1), QStringList { u"28777: four"_s });
    QCOMPARE(fixture.list(MessageFixture::kFiles),
             QStringList { u"+15550100123/a.jpg [deleted]"_s });
}

void tst_Messages::filters_data()
{
    QTest::addColumn<QString>("chat");
    QTest::addColumn<int>("since"); // minutes from the first message, -1 for none
    QTest::addColumn<int>("until");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("files");

    const QString ann = u"Ann: a b"_s;
    const QString code = u"28777: c"_s;
    const QStringList none;
    QTest::newRow("nothing asked") << QString() << -1 << -1 << QStringList { code, ann }
                                   << QStringList { u"Ann/a.jpg"_s, u"Other/b.jpg"_s };
    QTest::newRow("since is part of it")
        << QString() << 1 << -1 << QStringList { code, u"Ann: b"_s } << none;
    QTest::newRow("until is not") << QString() << -1 << 1 << QStringList { u"Ann: a"_s }
                                  << QStringList { u"Ann/a.jpg"_s };
    QTest::newRow("nothing left") << QString() << 5 << -1 << none << none;
    QTest::newRow("by name") << u"aNN"_s << -1 << -1 << QStringList { ann }
                             << QStringList { u"Ann/a.jpg"_s };
    QTest::newRow("by number") << u"(555) 0100123"_s << -1 << -1 << QStringList { ann }
                               << QStringList { u"Ann/a.jpg"_s };
    QTest::newRow("by a short code, whole") << u"2877"_s << 2 << -1 << QStringList { code } << none;
    QTest::newRow("nobody") << u"Zoe"_s << -1 << -1 << none << none;
}

void tst_Messages::filters()
{
    QFETCH(QString, chat);
    QFETCH(int, since);
    QFETCH(int, until);
    MessageFixture fixture;
    fixture.addMessages(
        kAnn
        + "INSERT INTO chat(ROWID, guid, style, chat_identifier) VALUES (2, 'x', 45, '28777');"
          "INSERT INTO message(ROWID, guid, text, handle_id, date) VALUES (1, 'a', 'a', 1, 60),"
          " (2, 'b', 'b', 1, 120), (3, 'c', 'c', 0, 180);"
          "INSERT INTO chat_message_join(chat_id, message_id) VALUES (1, 1), (1, 2), (2, 3);"
        + attachment(1, 1, "'~/Library/SMS/Attachments/a.jpg'"));
    fixture.writer.addFile(u"MediaDomain"_s, u"Library/SMS/Attachments/a.jpg"_s, "a");
    fixture.writer.addFile(u"MediaDomain"_s, u"Library/SMS/Attachments/b.jpg"_s, "b");
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, addressBook());
    PhoneItems::Backup *backup = fixture.open();
    QVERIFY(backup);
    const QDateTime first(QDate(2001, 1, 1), QTime(0, 1), Qt::UTC);
    PhoneBackup::MessageFilter filter;
    if (!chat.isEmpty())
        filter.chats = { chat };
    if (since >= 0)
        filter.since = first.addSecs(60 * since);
    if (until >= 0)
        filter.until = first.addSecs(60 * until);
    backup->setMessageFilter(filter);

    QStringList found;
    const BkData *data = backup->getBkData(MessageFixture::kMessages);
    for (int i = 0; i < data->count(1); ++i) {
        auto *item = dynamic_cast<BkSMSItem *>(data->at(i, true));
        QString line = item->value(0) + u':';
        for (const BkSMSChat *message : item->detailContent()->chats())
            line += u' ' + message->content();
        found.append(line);
    }
    QTEST(found, "expected");
    QTEST(fixture.list(MessageFixture::kFiles), "files");
}

QTEST_GUILESS_MAIN(tst_Messages)
#include "tst_Messages.moc"
