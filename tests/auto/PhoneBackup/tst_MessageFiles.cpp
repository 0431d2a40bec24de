#include "MessageFixture.h"
#include "sample/TypedStream.h"
#include "support/Files.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace MessageRows;

namespace {

const QString kAnnSays = u"+15550100123: "_s;

} // namespace

//! The files of messages: as parts of a conversation and as a data set of their own.
class tst_MessageFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsFilesInTheirPlaces_data();
    void showsFilesInTheirPlaces();
    void givesTheBytesOfFiles();
    void saysWhatIsWrongWithAPicture();
    void exportsFiles();
};

void tst_MessageFiles::showsFilesInTheirPlaces_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("expected");

    const QByteArray folder = "'~/Library/SMS/Attachments/aa/10/";
    QTest::newRow("between texts, by identifier")
        << message(1,
                   "NULL",
                   "attributedBody",
                   hex(Sample::attributedBody(u"One\uFFFCtwo\uFFFC"_s,
                                              { { 3, 0, {}, {}, {} },
                                                { 1, 1, u"file-2"_s, {}, {} },
                                                { 3, 2, {}, {}, {} },
                                                { 1, 3, u"file-1"_s, {}, {} } })))
            + attachment(1, 1, folder + "a.jpg'") + attachment(2, 1, folder + "b.mov'")
        << u"One{video/mov b.mov}+two{image/jpg a.jpg}"_s;
    QTest::newRow("in order") << message(
                                     1, "CAST(x'efbfbc' AS TEXT) || 'x' || CAST(x'efbfbc' AS TEXT)")
            + attachment(1, 1, folder + "a.jpg'", "mime_type = 'image/jpeg'")
            + attachment(2, 1, folder + "b.png'")
                              << u"{image/jpeg a.jpg}+x{image/png b.png}"_s;
    QTest::newRow("more files than places")
        << message(1, "'x'") + attachment(1, 1, folder + "a.jpg'") << u"x{image/jpg a.jpg}"_s;
    QTest::newRow("more places than files")
        << message(1, "CAST(x'efbfbcefbfbc' AS TEXT)") + attachment(1, 1, folder + "a.jpg'")
        << u"{image/jpg a.jpg}+[Attachment]"_s;
    QTest::newRow("type by the name, though the column says else") << message(1, "NULL")
            + attachment(1, 1, folder + "x'", "transfer_name = 'a.HEIC', mime_type = 'text/plain'")
                                                                   << u"{image/heic a.HEIC}"_s;
    QTest::newRow("type by the content")
        << message(1, "NULL") + attachment(1, 1, folder + "png'") << u"{image/png png}"_s;
    QTest::newRow("pictures by the brand of their content")
        << message(1, "NULL") + attachment(1, 1, folder + "still'")
            + attachment(2, 1, folder + "moving'") + attachment(3, 1, folder + "avif'")
        << u"{image/still still}{image/moving moving}{image/avif avif}"_s;
    QTest::newRow("no type by a content that is cut off, or by two letters")
        << message(1, "NULL") + attachment(1, 1, folder + "riff'")
            + attachment(2, 1, folder + "letters'")
        << u"[File: riff]{application/octet-stream riff}+[File: letters]{application/octet-stream letters}"_s;
    QTest::newRow("hidden and of a balloon")
        << message(1, "'x'") + attachment(1, 1, folder + "a.jpg'", "hide_attachment = 1")
            + attachment(2, 1, folder + "b.pluginPayloadAttachment'")
        << u"x"_s;
    QTest::newRow("never downloaded") << message(1, "NULL")
            + attachment(1, 1, "NULL", "mime_type = 'image/png', transfer_name = 'a'")
                                      << u"{image/png a}"_s;
    QTest::newRow("document") << message(1, "NULL")
            + attachment(1, 1, folder + "a.pdf'", "mime_type = 'application/pdf'")
                              << u"[File: a.pdf]{application/pdf a.pdf}"_s;
    QTest::newRow("a text file is no text of the message")
        << message(1, "NULL") + attachment(1, 1, folder + "a.txt'", "mime_type = 'text/plain'")
        << u"[File: a.txt]{application/octet-stream a.txt}"_s;
    QTest::newRow("contacts") << message(1, "NULL") + attachment(1, 1, folder + "c.vcf'")
                              << u"[Contact: Carl; Jr., Zoe]{application/octet-stream c.vcf}"_s;
    QTest::newRow("missing contact") << message(1, "NULL") + attachment(1, 1, folder + "gone.vcf'")
                                     << u"[Contact: gone.vcf]{application/octet-stream gone.vcf}"_s;
    QTest::newRow("location")
        << message(1, "NULL") + attachment(1, 1, folder + "x.loc.vcf'")
        << u"[Location: https://maps.example/?ll=1,2]{application/octet-stream x.loc.vcf}"_s;
    QTest::newRow("voice message") << message(1, "CAST(x'efbfbc' AS TEXT)", "is_audio_message", "1")
            + attachment(1, 1, folder + "v.amr'")
                                   << u"[Voice message 1:15]{application/octet-stream v.amr}"_s;
    const QList<Sample::TextRun> spoken { { 1, 0, u"file-1"_s, {}, {}, u"Seals!\uFFFC"_s } };
    QTest::newRow("voice message with what was said")
        << message(1,
                   "NULL",
                   "is_audio_message, attributedBody",
                   "1, " + hex(Sample::attributedBody(u"\uFFFC"_s, spoken)))
            + attachment(1, 1, folder + "v.amr'")
        << u"[Voice message 1:15] Seals!{application/octet-stream v.amr}"_s;
    QTest::newRow("a link to no file")
        << message(1, "'x'") + "INSERT INTO message_attachment_join VALUES (1, 99);" << u"x"_s;
    QTest::newRow("outside the domain")
        << message(1, "NULL")
            + attachment(1, 1, "'~/Library/SMS/Attachments/../../../../etc/passwd'")
            + attachment(2, 1, "'/etc/passwd'")
        << u"[File: passwd]{application/octet-stream passwd}+[File: passwd]{application/octet-stream passwd}"_s;
}

void tst_MessageFiles::showsFilesInTheirPlaces()
{
    QFETCH(QByteArray, rows);
    QFETCH(QString, expected);
    MessageFixture fixture;
    fixture.addMessages(kAnn + rows);
    const QString folder = u"Library/SMS/Attachments/aa/10/"_s;
    const auto add = [&](const QString &name, const QByteArray &content) {
        fixture.writer.addFile(u"MediaDomain"_s, folder + name, content);
    };
    add(u"a.jpg"_s, "a");
    add(u"png"_s, "\x89PNG\r\n\x1a\n....");
    add(u"still"_s, QByteArray("\0\0\0\x18", 4) + "ftypheic");
    add(u"moving"_s, QByteArray("\0\0\0\x18", 4) + "ftyphevc");
    add(u"avif"_s, QByteArray("\0\0\0\x18", 4) + "ftypavif");
    add(u"riff"_s, "RIFF");
    add(u"letters"_s, "BM is how this text begins");
    add(u"c.vcf"_s,
        "BEGIN:VCARD\r\nitem1.TEL:1\r\nFN;CHARSET=utf-8:Carl\\; Jr.\r\nEND:VCARD\r\n"
        "BEGIN:VCARD\r\nFN:Zoe\r\nEND:VCARD\r\n");
    add(u"x.loc.vcf"_s, "BEGIN:VCARD\nitem1.URL;type=pref:https://maps.example/?ll=1\\,2\n");
    // Frames of 20 ms in the mode that takes 13 bytes.
    add(u"v.amr"_s, "#!AMR\n" + QByteArray("\x04............", 13).repeated(75 * 50));
    QCOMPARE(fixture.messages(), QStringList { kAnnSays + expected });
}

void tst_MessageFiles::givesTheBytesOfFiles()
{
    MessageFixture fixture;
    QByteArray rows = kAnn;
    const QByteArray picture = QByteArray("picture").repeated(1000);
    for (int i = 1; i <= 2000; ++i) { // more than a process may have open
        rows += message(i, "NULL")
            + attachment(i,
                         i,
                         "'/var/mobile/Library/SMS/Attachments/aa/10/" + QByteArray::number(i % 7)
                             + ".jpg'");
    }
    fixture.addMessages(rows);
    for (int i = 0; i < 6; ++i)
        fixture.writer.addFile(u"MediaDomain"_s,
                               u"Library/SMS/Attachments/aa/10/%1.jpg"_s.arg(i),
                               picture + QByteArray::number(i));
    BkSMSChatGroup *group = fixture.content();
    QVERIFY(group);
    QCOMPARE(group->chats().size(), 2000);
    for (int round = 0; round < 2; ++round) {
        int number = 0;
        for (const BkSMSChat *chat : group->chats()) {
            ++number;
            const QByteArray &data = chat->pieces().constFirst()->pieceData();
            if (number % 7 == 6)
                QVERIFY(data.isEmpty()); // missing, and still a picture
            else
                QCOMPARE(data, picture + QByteArray::number(number % 7));
        }
    }
}

// Whoever asks for it tells of it, for each message that has the picture; the backup then does not.
void tst_MessageFiles::saysWhatIsWrongWithAPicture()
{
    MessageFixture fixture;
    const QByteArray row = "'~/Library/SMS/Attachments/1/a.jpg'";
    fixture.addMessages(kAnn + message(1, "NULL") + attachment(1, 1, row) + message(2, "NULL")
                        + attachment(2, 2, row));
    const QString path = u"Library/SMS/Attachments/1/a.jpg"_s;
    QVERIFY(Files::write(fixture.writer.contentPath(u"MediaDomain"_s, path), QByteArray(100, 'x')));
    fixture.writer.addWithoutContent(u"MediaDomain"_s, path, 1000);
    BkSMSChatGroup *group = fixture.content();
    QVERIFY(group);
    QCOMPARE(group->chats().size(), 2);
    for (const BkSMSChat *chat : group->chats()) {
        const BkSMSPiece *piece = chat->pieces().constFirst();
        QCOMPARE(piece->pieceData().size(), 100);
        QVERIFY2(piece->fault().contains(u"should have 1000 bytes"_s), qPrintable(piece->fault()));
    }
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_MessageFiles::exportsFiles()
{
    MessageFixture fixture;
    const QByteArray folder = "'~/Library/SMS/Attachments/";
    fixture.addMessages(
        kAnn
        + "INSERT INTO handle(ROWID, id, service) VALUES (2, '28777', 'SMS');"
          "INSERT INTO chat(ROWID, guid, style, chat_identifier) VALUES (2, 'x', 45, '28777');"
          "INSERT INTO message(ROWID, guid, text, date) VALUES (50, 'z', 'x', 1);"
          "INSERT INTO chat_message_join(chat_id, message_id) VALUES (2, 50);"
        + message(1, "'x'") + message(2, "'y'")
        + attachment(1, 1, folder + "1/a.jpg'", "transfer_name = 'Boat: 1.jpg'")
        + attachment(2, 2, folder + "2/a.jpg'", "transfer_name = 'boat_ 1.JPG'")
        + attachment(3, 2, folder + "3/live.heic'") + attachment(4, 2, folder + "4/doc.pages'")
        + attachment(5, 2, folder + "5/hidden.bin'", "hide_attachment = 1")
        + attachment(6, 2, folder + "6/gone.jpg'") + attachment(7, 99, folder + "7/lost.jpg'")
        + attachment(8, 2, "NULL", "transfer_name = 'never.jpg'")
        + message(3, "NULL", "is_audio_message, expire_state", "1, 1")
        + attachment(10, 3, folder + "10/expired.caf'")
        + message(4, "NULL", "is_audio_message, expire_state", "1, 0")
        + attachment(11, 4, folder + "11/kept.caf'")
        + attachment(9, 1, "'/var/mobile/Library/SMS/Parts/aa/1/1-0.jpg'")
        + "INSERT INTO message_attachment_join VALUES (50, 1), (2, 1);");
    for (const char *path : { "1/a.jpg",
                              "2/a.jpg",
                              "3/live.heic",
                              "3/live.MOV",
                              "4/doc.pages/Index/Document",
                              "5/hidden.bin",
                              "7/lost.jpg",
                              "8/nobody.txt",
                              "9/x.pluginPayloadAttachment" })
        fixture.writer.addFile(
            u"MediaDomain"_s, u"Library/SMS/Attachments/"_s + QString::fromLatin1(path), path);
    fixture.writer.addFile(u"MediaDomain"_s, u"Library/SMS/Parts/aa/1/1-0.jpg"_s, "x");
    fixture.writer.addFile(u"MediaDomain"_s, u"Library/SMS/Parts/aa/1/1-0-preview.jpg"_s, "x");
    QCOMPARE(fixture.list(MessageFixture::kFiles),
             QStringList({ u"+15550100123/Boat_ 1.jpg"_s,
                           u"+15550100123/1-0.jpg"_s,
                           u"+15550100123/boat_ 1 (2).JPG"_s,
                           u"+15550100123/live.heic"_s,
                           u"+15550100123/Document"_s,
                           u"28777/Boat_ 1.jpg"_s,
                           u"Other/lost.jpg"_s,
                           u"+15550100123/live.MOV"_s,
                           u"Other/nobody.txt"_s }));
    QCOMPARE(fixture.problems(),
             QStringList({ u"7 +15550100123/gone.jpg (loss)"_s,
                           u"7 +15550100123/never.jpg (never downloaded)"_s,
                           u"7 +15550100123/expired.caf (never downloaded)"_s,
                           u"7 +15550100123/kept.caf (loss)"_s }));
}

QTEST_GUILESS_MAIN(tst_MessageFiles)
#include "tst_MessageFiles.moc"
