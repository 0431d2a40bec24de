#include "MessageFixture.h"
#include "auto/sample/SqliteRows.h"

#include <QtTest>

using namespace Qt::StringLiterals;

//! Databases that no one here wrote; skipped where there are none.
class tst_RealMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readsEveryMessage();
    void readsEveryText();
    void namesPeople();

private:
    QString m_messages;
    QString m_contacts;
};

void tst_RealMessages::initTestCase()
{
    const QString given = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    const QString root = given.isEmpty()
        ? QDir(QStringLiteral(TEST_SOURCE_DIR)).filePath(u"../../shared/real"_s)
        : given;
    m_messages = root + u"/messages/sms.db"_s;
    m_contacts = root + u"/contacts/AddressBook.sqlitedb"_s;
    if (!QFileInfo::exists(m_messages) || !QFileInfo::exists(m_contacts))
        QSKIP("no real databases: set DATAEXPORT_REAL_DATA to where they are");
}

void tst_RealMessages::readsEveryMessage()
{
    MessageFixture fixture;
    fixture.addDatabase(Files::read(m_messages));
    const qsizetype conversations = fixture.conversations().size();
    const auto linked =
        sqliteRows(m_messages, "SELECT count(DISTINCT chat_id) FROM chat_message_join");
    QVERIFY(conversations >= linked.constFirst().constFirst().toInt());
    qsizetype shown = 0;
    for (int i = 0; i < conversations; ++i) {
        shown += fixture.messages(i).size();
        for (const BkSMSChat *chat : fixture.content(i)->chats())
            QVERIFY(!chat->content().isEmpty() || !chat->pieces().isEmpty());
    }
    const auto rows = sqliteRows(m_messages, "SELECT count(*) FROM message");
    QCOMPARE(shown, rows.constFirst().constFirst().toInt());
}

void tst_RealMessages::readsEveryText()
{
    MessageFixture fixture;
    fixture.addDatabase(Files::read(m_messages));
    QString all;
    for (int i = 0; i < fixture.conversations().size(); ++i)
        all += fixture.messages(i).join(u'\n') + u'\n';
    const auto plain = sqliteRows(m_messages,
                                  "SELECT text FROM message WHERE text IS NOT NULL AND "
                                  "ifnull(associated_message_type, 0) = 0");
    for (const QByteArrayList &row : plain)
        QVERIFY2(all.contains(QString::fromUtf8(row.constFirst())), row.constFirst().constData());
    // Texts that stand in attributed form alone: the longest stretch of letters is in the page.
    const auto bodies = sqliteRows(m_messages,
                                   "SELECT attributedBody FROM message WHERE text IS NULL AND "
                                   "length(attributedBody) > 100");
    QVERIFY(!bodies.isEmpty());
    for (const QByteArrayList &row : bodies) {
        const QByteArray body = row.constFirst();
        const QByteArray tail = body.sliced(body.lastIndexOf('+') + 1);
        const QString words = QString::fromUtf8(tail.mid(4, tail.size() - 8)).trimmed();
        const QString plainPart = words.section(QChar(0xFFFD), 0, 0);
        QVERIFY2(plainPart.isEmpty() || all.contains(plainPart), qPrintable(words));
    }
    const QByteArray quotes = QByteArray::number(all.count(u"[Reply to “"_s));
    QCOMPARE(quotes,
             sqliteRows(m_messages,
                        "SELECT count(*) FROM message m JOIN message o ON o.guid = "
                        "m.thread_originator_guid")
                 .constFirst()
                 .constFirst());
}

void tst_RealMessages::namesPeople()
{
    MessageFixture fixture;
    const auto numbers = sqliteRows(
        m_contacts, "SELECT value FROM ABMultiValue WHERE property = 3 ORDER BY record_id LIMIT 1");
    QVERIFY(!numbers.isEmpty());
    const QByteArray number = numbers.constFirst().constFirst();
    fixture.addMessages("INSERT INTO handle(ROWID, id, service) VALUES (1, '" + number
                        + "', 'SMS'); INSERT INTO chat(ROWID, guid, style) VALUES (1, 'x', 45);"
                          "INSERT INTO chat_handle_join VALUES (1, 1);"
                          "INSERT INTO message(ROWID, guid, text) VALUES (1, 'a', 'x');"
                          "INSERT INTO chat_message_join(chat_id, message_id) VALUES (1, 1);");
    fixture.writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, Files::read(m_contacts));
    const auto names =
        sqliteRows(m_contacts,
                   "SELECT First || '' FROM ABPerson WHERE ROWID = (SELECT record_id "
                   "FROM ABMultiValue WHERE property = 3 ORDER BY record_id LIMIT 1)");
    const QString shown = fixture.conversations().constFirst();
    QVERIFY2(shown.contains(QString::fromUtf8(names.constFirst().constFirst())), qPrintable(shown));
    QVERIFY(fixture.problems().isEmpty());
}

QTEST_GUILESS_MAIN(tst_RealMessages)
#include "tst_RealMessages.moc"
