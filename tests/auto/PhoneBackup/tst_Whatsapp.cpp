#include "PhoneBackup/packed/FieldReader.h"
#include "PhoneBackup/source/MessageFilter.h"
#include "WhatsappFixture.h"
#include "sample/NoteRecord.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace WhatsappRows;

//! WhatsApp's chats: which there are, who is in them and what each kind of message says.
class tst_Whatsapp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsPicturesWithOtherParents_data();
    void showsPicturesWithOtherParents();
    void filters_data();
    void filters();
    void exportsFiles();
    void checksWireFields_data();
    void checksWireFields();
};

void tst_Whatsapp::showsPicturesWithOtherParents_data()
{
    QTest::addColumn<QByteArray>("parent");
    QTest::addColumn<PhoneBackup::MessageFilter>("filter");

    const PhoneBackup::MessageFilter all;
    QTest::newRow("album with a file") << message(1, "66") << all;
    QTest::newRow("document") << message(1, "8") << all;
    QTest::newRow("itself") << message(1, "1") + "UPDATE ZWAMESSAGE SET ZPARENTMESSAGE = Z_PK;"
                            << all;
    QTest::newRow("its own part") << message(1, "1", "ZPARENTMESSAGE = 2") << all;
    QTest::newRow("one that the filter leaves out")
        << message(1, "1", "ZMESSAGEDATE = 1")
        << PhoneBackup::MessageFilter { QDateTime(QDate(2015, 1, 1), QTime(0, 0), Qt::UTC),
                                        {},
                                        {} };
}

void tst_Whatsapp::showsPicturesWithOtherParents()
{
    QFETCH(QByteArray, parent);
    QFETCH(PhoneBackup::MessageFilter, filter);
    WhatsappFixture fixture;
    fixture.addMedia(u"Media/1.jpg"_s, "one");
    fixture.addMedia(u"Media/2.jpg"_s, "two");
    fixture.addChats(kAnn + message(2, "1", "ZPARENTMESSAGE = 1")
                     + media(2, "ZMEDIALOCALPATH = 'Media/2.jpg'") + parent
                     + media(1, "ZMEDIALOCALPATH = 'Media/1.jpg'"));
    QVERIFY(fixture.backup());
    fixture.backup()->setMessageFilter(filter);
    QCOMPARE(fixture.messages().last(), u"1 {two}"_s);
}

void tst_Whatsapp::filters_data()
{
    QTest::addColumn<PhoneBackup::MessageFilter>("filter");
    QTest::addColumn<QStringList>("chats");
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("files");

    const auto at = [](int seconds) {
        return QDateTime::fromSecsSinceEpoch(978307200 + 700000000 + seconds, Qt::UTC);
    };
    const QStringList both { u"Crew"_s, u"Ann"_s };
    QTest::newRow("none") << PhoneBackup::MessageFilter {} << both << QStringList { u"0 Zed: x"_s }
                          << QStringList { u"Ann/1.jpg"_s, u"Ann/2.jpg"_s };
    QTest::newRow("since") << PhoneBackup::MessageFilter { at(20), {}, {} } << both
                           << QStringList { u"0 Zed: x"_s } << QStringList { u"Ann/2.jpg"_s };
    QTest::newRow("until") << PhoneBackup::MessageFilter { {}, at(20), {} }
                           << QStringList { u"Ann"_s } << QStringList { u"1 {1}"_s }
                           << QStringList { u"Ann/1.jpg"_s };
    QTest::newRow("name") << PhoneBackup::MessageFilter { {}, {}, { u"aNN"_s } }
                          << QStringList { u"Ann"_s } << QStringList { u"1 {1}"_s, u"1 {2}"_s }
                          << QStringList { u"Ann/1.jpg"_s, u"Ann/2.jpg"_s };
    QTest::newRow("number of a member")
        << PhoneBackup::MessageFilter { {}, {}, { u"555 010 0124"_s } } << QStringList { u"Crew"_s }
        << QStringList { u"0 Zed: x"_s } << QStringList {};
    QTest::newRow("name of a member")
        << PhoneBackup::MessageFilter { {}, {}, { u"Nobody"_s, u"zed"_s } }
        << QStringList { u"Crew"_s } << QStringList { u"0 Zed: x"_s } << QStringList {};
    QTest::newRow("nobody") << PhoneBackup::MessageFilter { {}, {}, { u"Nobody"_s, u"No One"_s } }
                            << QStringList {} << QStringList { u"not read"_s } << QStringList {};
}

void tst_Whatsapp::filters()
{
    QFETCH(PhoneBackup::MessageFilter, filter);
    QFETCH(QStringList, chats);
    QFETCH(QStringList, first);
    QFETCH(QStringList, files);
    WhatsappFixture fixture;
    fixture.addMedia(u"Media/1.jpg"_s, "1");
    fixture.addMedia(u"Media/2.jpg"_s, "2");
    fixture.addChats(kAnn + chat(2, "2@g.us", "ZPARTNERNAME = 'Crew'")
                     + "INSERT INTO ZWAGROUPMEMBER(Z_PK, ZCHATSESSION, ZMEMBERJID) VALUES"
                       " (2, 2, '15550100124@s.whatsapp.net');"
                       "INSERT INTO ZWAPROFILEPUSHNAME(ZJID, ZPUSHNAME) VALUES"
                       " ('15550100124@s.whatsapp.net', 'Zed');"
                     + message(10, "1") + media(10, "ZMEDIALOCALPATH = 'Media/1.jpg'")
                     + message(20, "1") + media(20, "ZMEDIALOCALPATH = 'Media/2.jpg'")
                     + message(30, "0", "ZTEXT = 'x', ZCHATSESSION = 2, ZGROUPMEMBER = 2"));
    QVERIFY(fixture.backup());
    fixture.backup()->setMessageFilter(filter);
    QStringList names;
    for (const QString &line : fixture.chats())
        names.append(line.section(u'|', 0, 0));
    QCOMPARE(names, chats);
    QCOMPARE(fixture.messages(0), first);
    // Named after their date and kind; which file it is, its content tells.
    QStringList found;
    for (const BkAbstractItem *item : fixture.set(WhatsappFixture::kFiles)->recoverFileList()) {
        const auto *file = dynamic_cast<const BkFileItem *>(item);
        QVERIFY(item->value(0).contains(u"Photo"_s) && item->value(0).endsWith(u".jpg"_s));
        found.append(u"%1/%2.jpg"_s.arg(item->groupItem()->value(0),
                                        QString::fromUtf8(Files::read(file->filePath()))));
    }
    QCOMPARE(found, files);
}

void tst_Whatsapp::exportsFiles()
{
    qputenv("TZ", "UTC");
    WhatsappFixture fixture;
    for (const QString &path : { u"Media/1.jpg"_s,
                                 u"Media/2.pdf"_s,
                                 u"Media/3.mp4"_s,
                                 u"Media/4.opus"_s,
                                 u"Media/5.webp"_s,
                                 u"Media/6.thumb"_s,
                                 u"Media/7.pdf"_s,
                                 u"Media/8.pdf"_s,
                                 u"Media/9.pdf"_s })
        fixture.addMedia(path);
    const auto file =
        [](int row, const QByteArray &type, const QByteArray &path, const QByteArray &more = {}) {
            return message(row, type) + media(row, "ZMEDIALOCALPATH = " + path + more);
        };
    fixture.addChats(
        chat(1, "1@g.us", "ZPARTNERNAME = 'A/B', ZREMOVED = 1") + file(1, "1", "'Media/1.jpg'")
        + file(2, "8", "'Media/2.pdf'", ", ZTITLE = 'Tide: table'")
        + file(3, "8", "'Media/2.pdf'", ", ZTITLE = 'sent twice.pdf'")
        + file(13, "8", "'Media/7.pdf'", ", ZTITLE = 'Report v1.2'")
        + file(14, "8", "'Media/8.pdf'", ", ZTITLE = 'Mr. Smith'")
        + file(15, "8", "'Media/9.pdf'", ", ZTITLE = 'Tides.PDF'") + file(4, "11", "'Media/3.mp4'")
        + file(5, "3", "'/Media/4.opus'") + file(6, "15", "'Message/Media/5.webp'")
        + file(7, "7", "'Media/6.thumb'") // the picture of a link
        + file(8, "2", "'Media/gone.mp4'") + file(9, "1", "NULL") + file(10, "2", "NULL")
        + file(11, "0", "NULL") // a text that quotes another
        + file(12, "1", "'../../../etc/passwd'"));
    QCOMPARE(fixture.list(WhatsappFixture::kFiles),
             (QStringList { u"A_B/2023-03-08 20-26 Photo.jpg [deleted]"_s,
                            u"A_B/Tide_ table.pdf [deleted]"_s,
                            u"A_B/2023-03-08 20-26 GIF.mp4 [deleted]"_s,
                            u"A_B/2023-03-08 20-26 Audio.opus [deleted]"_s,
                            u"A_B/2023-03-08 20-26 Sticker.webp [deleted]"_s,
                            u"A_B/6.thumb [deleted]"_s,
                            u"A_B/Report v1.2.pdf [deleted]"_s,
                            u"A_B/Mr. Smith.pdf [deleted]"_s,
                            u"A_B/Tides.PDF [deleted]"_s }));
    QCOMPARE(fixture.problems(),
             (QStringList { u"12 A/B/gone.mp4 (loss)"_s,
                            u"12 A/B/2023-03-08 20-26 Photo (never downloaded)"_s,
                            u"12 A/B/2023-03-08 20-26 Video (never downloaded)"_s,
                            u"12 A/B/passwd (loss)"_s }));
}

void tst_Whatsapp::checksWireFields_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<bool>("complete");
    QTest::addColumn<QByteArray>("second");

    const auto hex = [](const char *digits) { return QByteArray::fromHex(digits); };
    QTest::newRow("empty") << QByteArray() << false << QByteArray();
    QTest::newRow("number") << hex("1001") << true << QByteArray();
    QTest::newRow("bytes") << hex("12026869") << true << QByteArray("hi");
    QTest::newRow("behind others")
        << hex("0801 0d01020304 090102030405060708 120178") << true << QByteArray("x");
    QTest::newRow("bytes cut off") << hex("12036869") << false << QByteArray();
    QTest::newRow("a length beyond all") << hex("12ffffffffffffffffff01") << false << QByteArray();
    QTest::newRow("a number without an end")
        << hex("08ffffffffffffffffffffff") << false << QByteArray();
    QTest::newRow("field 0") << hex("0001") << false << QByteArray();
    QTest::newRow("group") << hex("130114") << false << QByteArray();
    QTest::newRow("fixed cut off") << hex("0d0102") << false << QByteArray();
}

void tst_Whatsapp::checksWireFields()
{
    QFETCH(QByteArray, record);
    QFETCH(bool, complete);
    QFETCH(QByteArray, second);
    QCOMPARE(PhoneBackup::FieldReader::isComplete(record), complete);
    QCOMPARE(PhoneBackup::FieldReader::find(record, { 2 }).toByteArray(), second);
}

QTEST_GUILESS_MAIN(tst_Whatsapp)
#include "tst_Whatsapp.moc"
