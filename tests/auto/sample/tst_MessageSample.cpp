#include "SqliteRows.h"
#include "sample/BackupWriter.h"
#include "sample/SampleBackup.h"
#include "sample/TypedStream.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;
using Sample::BackupWriter;

namespace {

Sample::Options messagesOnly()
{
    Sample::Options options;
    options.photos = options.videos = options.sharedPhotos = options.voiceMemos = 0;
    options.books = options.ringtones = options.appDocuments = options.voicemails = 0;
    options.notes = options.events = options.reminders = 0;
    return options;
}

} // namespace

class tst_MessageSample : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTypedStreams_data();
    void writesTypedStreams();
    void longTextsTellTheirLength();
    void showsEveryKindOfEveryRelease_data();
    void showsEveryKindOfEveryRelease();
    void filesAreThereButForTheLostOnes();
    void makesAsManyAsWanted();

private:
    //! Makes a backup and gives the path of its sms.db.
    QString make(const Sample::Options &options);
    QString pathOf(const QString &domain, const QString &path) const
    {
        const QString id = BackupWriter::fileId(domain, path);
        return u"%1/%2/%3"_s.arg(m_root, id.first(2), id);
    }
    static qint64 number(const QString &path, const QByteArray &sql)
    {
        const auto rows = sqliteRows(path, sql.constData());
        bool ok = false;
        const qint64 value = rows.value(0).value(0).toLongLong(&ok);
        return ok ? value : -1;
    }

    QTemporaryDir m_temp;
    QString m_root;
    int m_made = 0;
};

QString tst_MessageSample::make(const Sample::Options &options)
{
    m_root = m_temp.filePath(QString::number(++m_made));
    BackupWriter writer(m_root);
    Sample::addSampleContents(writer, options);
    return writer.finish() ? pathOf(u"HomeDomain"_s, u"Library/SMS/sms.db"_s) : QString();
}

void tst_MessageSample::writesTypedStreams_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<Sample::TextRun>>("runs");
    QTest::addColumn<QByteArray>("end");

    // From a phone, byte by byte.
    QTest::newRow("one bubble")
        << u"Hi!"_s << QList<Sample::TextRun> {}
        << QByteArray::fromHex(
               "040b73747265616d747970656481e803840140"
               "8484841 24e5341747472696275746564537472696e6700"
               "8484084e534f626a656374008592"
               "848484084e53537472696e67019484012b0348692186"
               "84026949010392848484 0c4e5344696374696f6e61727900948401690192849696"
               "1d5f5f6b494d4d657373616765506172744174747269627574654e616d6586"
               "92848484084e534e756d626572008484074e5356616c7565009484012a849999008686 86");
    QTest::newRow("a file between letters")
        << u"a\ufffcb"_s
        << QList<Sample::TextRun> { { 1, 0, {}, {}, {} },
                                    { 1, 1, u"at_0_6D1C"_s, {}, {} },
                                    { 1, 0, {}, {}, {} } }
        << QByteArray::fromHex(
               "99020192849a9b02"
               "92849898225f5f6b494d46696c655472616e73666572475549444174747269627574654e616d65"
               "86928498980961745f305f3644314386"
               "929b92849d9e9f9b018686"
               "99010186");
}

void tst_MessageSample::writesTypedStreams()
{
    QFETCH(QString, text);
    QFETCH(QList<Sample::TextRun>, runs);
    QFETCH(QByteArray, end);
    const QByteArray made = Sample::attributedBody(text, runs);
    QCOMPARE(made.last(end.size()).toHex(' '), end.toHex(' '));
}

void tst_MessageSample::longTextsTellTheirLength()
{
    const QByteArray medium = Sample::attributedBody(QString(145, u'm'));
    QVERIFY(medium.contains(QByteArray::fromHex("84012b819100") + "mmm"));
    const QByteArray large = Sample::attributedBody(QString(70000, u'l'));
    QVERIFY(large.contains(QByteArray::fromHex("84012b8270110100") + "lll"));
}

void tst_MessageSample::showsEveryKindOfEveryRelease_data()
{
    QTest::addColumn<int>("release");
    QTest::addColumn<QByteArrayList>("queries"); // Each finds at least one.

    QByteArrayList queries { "text LIKE '%\xef\xbf\xbc%'",
                             "subject <> ''",
                             "error <> 0",
                             "service = 'RCS'",
                             "ROWID NOT IN (SELECT message_id FROM chat_message_join)",
                             "handle_id NOT IN (SELECT ROWID FROM handle)" };
    QTest::newRow("6, in seconds") << 6 << queries + QByteArrayList { "date < 1000000000" };
    queries << "is_audio_message"
            << "item_type = 1"
            << "item_type = 2"
            << "item_type = 3";
    QTest::newRow("9") << 9 << queries + QByteArrayList { "date < 1000000000" };
    queries << "associated_message_type = 2000"
            << "associated_message_type >= 3000"
            << "balloon_bundle_id LIKE '%URL%'"
            << "balloon_bundle_id LIKE '%Extension%'";
    QTest::newRow("10") << 10 << queries + QByteArrayList { "date < 1000000000" };
    QTest::newRow("14, in nanoseconds") << 14
                                        << queries
            + QByteArrayList { "date > 1000000000000",
                               "thread_originator_guid IN (SELECT guid FROM message)" };
    queries << "date_edited"
            << "date_retracted"
            << "text IS NULL AND attributedBody NOT NULL"
            << "ROWID IN (SELECT message_id FROM chat_recoverable_message_join)";
    QTest::newRow("16") << 16 << queries;
    QTest::newRow("18") << 18 << queries + QByteArrayList { "associated_message_emoji NOT NULL" };
}

void tst_MessageSample::showsEveryKindOfEveryRelease()
{
    QFETCH(int, release);
    QFETCH(QByteArrayList, queries);
    Sample::Options options = messagesOnly();
    options.messagesRelease = release;
    const QString database = make(options);
    QCOMPARE(sqliteRows(database, "PRAGMA integrity_check"), QList<QByteArrayList> { { "ok" } });
    for (const QByteArray &query : queries)
        QVERIFY2(number(database, "SELECT count(*) FROM message WHERE " + query) > 0,
                 query.constData());
    // Every file stands where the text says.
    QCOMPARE(number(database, "SELECT count(*) FROM message_attachment_join"),
             number(database,
                    "SELECT count(*) FROM attachment WHERE ROWID IN "
                    "(SELECT attachment_id FROM message_attachment_join)"));
}

void tst_MessageSample::filesAreThereButForTheLostOnes()
{
    const QString database = make(messagesOnly());
    const auto rows = sqliteRows(database, "SELECT filename, total_bytes FROM attachment");
    int lost = 0;
    for (const QByteArrayList &row : rows) {
        const QString path = QString::fromUtf8(row[0]);
        const QFileInfo file(pathOf(u"MediaDomain"_s, path.mid(2)));
        if (path.isEmpty() || !file.exists())
            ++lost;
        else
            QCOMPARE(file.size(), row[1].toLongLong());
    }
    QVERIFY(rows.size() > 10);
    QCOMPARE(lost, 2);
}

void tst_MessageSample::makesAsManyAsWanted()
{
    Sample::Options options = messagesOnly();
    options.messages = 20000;
    options.conversations = 40;
    const QString database = make(options);
    QCOMPARE(number(database, "SELECT count(*) FROM message"), 20000);
    QCOMPARE(number(database, "SELECT count(DISTINCT chat_id) FROM chat_message_join"), 40);
    QCOMPARE(number(database, "SELECT count(*) FROM attachment"), 0);
    // Written down as they came, and all before the backup was made.
    QCOMPARE(number(database,
                    "SELECT count(*) FROM message a JOIN message b ON b.ROWID = a.ROWID + 1 "
                    "WHERE b.date <= a.date OR b.date > 738000000000000000"),
             0);
    QCOMPARE(number(database,
                    "SELECT count(*) FROM message WHERE associated_message_guid NOT NULL AND "
                    "substr(associated_message_guid, 5) NOT IN (SELECT guid FROM message)"),
             0);

    const QString contacts = pathOf(u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s);
    QVERIFY(number(contacts, "SELECT count(*) FROM ABPerson WHERE First <> ''") > 20);
}

QTEST_GUILESS_MAIN(tst_MessageSample)
#include "tst_MessageSample.moc"
