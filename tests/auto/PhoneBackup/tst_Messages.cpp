#include "MessageFixture.h"
#include "PhoneBackup/source/MessageFilter.h"
#include "sample/TypedStream.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace MessageRows;

namespace {

const QString kAnnSays = u"+15550100123: "_s;

} // namespace

class tst_Messages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losesNoEditedMessage();
    void cutsTextsWithoutAnEnd();
    void keepsOneConversationInMemory();
    void filters_data();
    void filters();
};

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
