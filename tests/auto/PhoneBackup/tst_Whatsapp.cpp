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
    void saysWhatMessagesAre_data();
    void saysWhatMessagesAre();
    void relatesMessages_data();
    void relatesMessages();
    void saysWhatHappened_data();
    void saysWhatHappened();
    void listsChats_data();
    void listsChats();
    void findsNames_data();
    void findsNames();
    void marksWhatFailed_data();
    void marksWhatFailed();
    void marksBroadcasts();
    void ordersMessages();
    void findsMedia_data();
    void findsMedia();
    void showsPicturesInHighDefinitionOnce();
    void showsPicturesWithOtherParents_data();
    void showsPicturesWithOtherParents();
    void showsThePictureThatNamesAText();
    void readsEveryEdition();
    void readsWhatTheOldestTablesHold();
    void filters_data();
    void filters();
    void exportsFiles();
    void checksWireFields_data();
    void checksWireFields();
};

void tst_Whatsapp::saysWhatMessagesAre_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("expected");

    const QByteArray text = "ZTEXT = 'text'";
    const auto add = [&](const char *name, const QByteArray &rows, const QString &expected) {
        QTest::newRow(name) << rows << expected;
    };
    const auto titled = [](const QByteArray &type, const QByteArray &more = {}) {
        return message(1, type, more) + media(1, "ZTITLE = 'title'");
    };
    add("text", message(1, "0", text), u"0 text"_s);
    add("text without a type", message(1, "NULL", text), u"0 text"_s);
    add("an event's code on a text is none",
        message(1, "0", "ZGROUPEVENTTYPE = 12, " + text),
        u"0 text"_s);
    add("control characters", message(1, "0", "ZTEXT = 'a' || char(7, 13, 10) || 'b'"), u"0 a|b"_s);
    add("a text that is a blob", message(1, "0", "ZTEXT = x'c3a4ff'"), u"0 \u00E4"_s);
    add("picture, caption in the title", titled("1", text), u"1 title"_s);
    add("picture, caption in the text", message(1, "1", text), u"1 text"_s);
    add("picture alone", message(1, "1"), u"1 "_s);
    add("picture with its size in the coordinates",
        message(1, "1") + media(1, "ZLATITUDE = 52.5, ZLONGITUDE = 13.4, ZVCARDNAME = 'aGFzaA=='"),
        u"1 "_s);
    add("video", titled("2"), u"2 title"_s);
    add("video of which only its preview is left",
        message(1, "2") + media(1, "ZTITLE = 'title', ZMEDIALOCALPATH = 'Media/film.mp4'"),
        u"2 title|[Video]{still}"_s);
    add("voice message", titled("3", text), u"3 "_s);
    add("GIF", titled("11"), u"2 title"_s);
    add("link, its text", titled("7", text), u"0 text"_s);
    add("link, what was matched",
        titled("7")
            + "INSERT INTO ZWAMESSAGEDATAITEM(Z_PK, ZMESSAGE, ZMATCHEDTEXT, ZCONTENT1) VALUES"
              " (5, 1, NULL, 'https://b.example'), (6, 1, 'https://c.example', '');",
        u"0 https://b.example"_s);
    add("link, nothing in its first row",
        titled("7")
            + "INSERT INTO ZWAMESSAGEDATAITEM(Z_PK, ZMESSAGE, ZMATCHEDTEXT, ZCONTENT1) VALUES"
              " (5, 1, NULL, NULL), (6, 1, 'https://c.example', '');",
        u"0 https://c.example"_s);
    add("link, its title", titled("7"), u"0 title"_s);
    add("document", titled("8"), u"0 title"_s);
    add("document and a word about it", titled("8", text), u"0 title|text"_s);
    add("document, its name twice", titled("8", "ZTEXT = 'title'"), u"0 title"_s);
    add("document by its file",
        message(1, "8") + media(1, "ZMEDIALOCALPATH = 'Media/a/b.pdf'"),
        u"0 b.pdf"_s);
    add("document of nothing", message(1, "8"), u"0 Document"_s);
    add("not decrypted yet", message(1, "12"), u"0 Waiting for this message"_s);
    add("deleted for everyone",
        message(1, "14") + media(1, "ZVCARDSTRING = 'x@s.whatsapp.net'"),
        u"0 [Deleted message]"_s);
    add("sticker", message(1, "15"), u"0 Sticker"_s);
    for (const char *type : { "19", "20", "23", "24", "30", "32", "41", "42" })
        add((QByteArray("business message ") + type).constData(),
            message(1, type),
            u"0 Business message"_s);
    add("business message with a picture",
        message(1, "41") + media(1, "ZVCARDSTRING = 'image/jpeg'"),
        u"1 Business message"_s);
    for (const char *type : { "25", "31", "34", "58" })
        add((QByteArray("reply ") + type).constData(), message(1, type, text), u"0 text"_s);
    add("product", message(1, "26"), u"0 Product"_s);
    add("product with a name", titled("26"), u"0 title"_s);
    add("invitation", message(1, "27"), u"0 Group invitation"_s);
    add("timer", message(1, "28"), u"6 Disappearing messages were changed"_s);
    add("picture to be seen once", message(1, "38"), u"1 View once"_s);
    add("video to be seen once", titled("39"), u"2 title"_s);
    add("voice to be heard once", message(1, "53"), u"3 View once"_s);
    add("poll", message(1, "46"), u"0 Poll"_s);
    add("poll with its text", message(1, "46", text), u"0 text"_s);
    // Field 8 holds a record whose field 2 is the question.
    add("poll with its question",
        message(1, "46", "ZMESSAGEINFO = 3")
            + "INSERT INTO ZWAMESSAGEINFO(Z_PK, ZRECEIPTINFO) VALUES (3, x'080142051203536F75');",
        u"0 Sou"_s);
    add("poll with its options",
        message(1, "46", text)
            + "INSERT INTO ZWAMESSAGEINFO(Z_PK, ZMESSAGE, ZRECEIPTINFO) VALUES (3, 1, "
              "x'42151203536F751A040A0246691A020A001A040A024E65');",
        u"0 text|• Fi|• Ne"_s);
    add("poll found from its other side",
        message(1, "46")
            + "INSERT INTO ZWAMESSAGEINFO(Z_PK, ZMESSAGE, ZRECEIPTINFO) VALUES (3, 1, "
              "x'42051203536F75');",
        u"0 Sou"_s);
    add("poll whose question is cut off",
        message(1, "46", "ZMESSAGEINFO = 3")
            + "INSERT INTO ZWAMESSAGEINFO(Z_PK, ZRECEIPTINFO) VALUES (3, x'42FF120353');",
        u"0 Poll"_s);
    add("video note", message(1, "54", text), u"2 "_s);
    add("channel", message(1, "55"), u"6 Channel"_s);
    add("channel with a text", message(1, "62", text), u"6 text"_s);
    add("channel whose text begins with a bracket",
        message(1, "55", "ZTEXT = '[Update] new rules'"),
        u"6 [Update] new rules"_s);
    add("call", message(1, "59"), u"0 Call"_s);
    add("event", titled("63"), u"0 title"_s);
    add("event without a name", message(1, "63"), u"0 Event"_s);
    add("album with a text", message(1, "66", text), u"0 text"_s);
    add("album with a title", titled("66"), u"0 title"_s);
    add("mention in a status", message(1, "68"), u"0 Status mention"_s);
    add("privacy", message(1, "73"), u"6 Advanced chat privacy was changed"_s);
    add("unknown", message(1, "999"), u"0 Unsupported message"_s);
    add("unknown with a text", message(1, "999", text), u"0 text"_s);
    add("unknown with a video",
        message(1, "-1") + media(1, "ZVCARDSTRING = 'video/mp4'"),
        u"2 Unsupported message"_s);

    const QByteArray card =
        "'BEGIN:VCARD' || char(10) || 'FN:Carl C.' || char(10) || 'item1.TEL;waid=1:+1 555' || "
        "char(10) || 'TEL:+2' || char(10) || 'TEL:+2' || char(10) || 'END:VCARD'";
    const QByteArray between = " || '_$!<VCard-Separator>!$_' || ";
    add("contact",
        message(1, "4") + media(1, "ZVCARDNAME = 'Carl', ZVCARDSTRING = " + card),
        u"4 Carl, +1 555, +2"_s);
    add("contact by its card",
        message(1, "4") + media(1, "ZVCARDSTRING = " + card),
        u"4 Carl C., +1 555, +2"_s);
    add("contact without anything", message(1, "4"), u"4 Contact"_s);
    add("contact of which a text is left", message(1, "4", text), u"4 text"_s);
    add("contact with folded lines, behind a picture",
        message(1, "4")
            + media(1,
                    "ZVCARDSTRING = 'PHOTO:' || hex(zeroblob(40000)) || char(10) || 'FN:Carl' || "
                    "char(13, 10) || '  Carlson' || char(13, 10) || 'TEL:+49 30 12' || "
                    "char(13, 10, 9) || '3456' || char(10) || 'TEL;VALUE=uri:tel:+1-555'"),
        u"4 Carl Carlson, +49 30 123456, +1-555"_s);
    add("contact with a quoted name in its card",
        message(1, "4")
            + media(1,
                    "ZVCARDSTRING = 'FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=4D=C3=BC=' || "
                    "char(13, 10) || '=6C:ler' || char(10) || 'TEL:+2'"),
        u"4 M\u00FCl:ler, +2"_s);
    add("two contacts",
        message(1, "4")
            + media(1,
                    "ZVCARDNAME = 'A_$!<Name-Separator>!$_B', ZVCARDSTRING = " + card + between
                        + "'x'"),
        u"4 A, +1 555, +2|B"_s);
    add("two contacts and their summary",
        message(1, "4")
            + media(1,
                    "ZVCARDNAME = 'A and B_$!<Name-Separator>!$_A_$!<Name-Separator>!$_B', "
                    "ZVCARDSTRING = "
                        + card + between + "'x'"),
        u"4 A, +1 555, +2|B"_s);
    add("a quoted name",
        message(1, "4") + media(1, "ZVCARDNAME = '=C3=84nn=65'"),
        u"4 =C3=84nn=65"_s);
    add("a wholly quoted name",
        message(1, "4") + media(1, "ZVCARDNAME = '=C3=84=6E'"),
        u"4 \u00C4n"_s);

    const QString link = u"https://www.openstreetmap.org/?mlat=52.500000&mlon=-13.400000"_s;
    add("location",
        message(1, "5")
            + media(1,
                    "ZTITLE = 'Pier', ZVCARDNAME = 'Road 1', ZLATITUDE = 52.5, ZLONGITUDE = -13.4, "
                    "ZMEDIALOCALPATH = 'Media/a.jpg'"),
        u"5 Pier, Road 1, 52.500000,-13.400000, "_s + link);
    add("location without a name",
        message(1, "5") + media(1, "ZLATITUDE = 52.5, ZLONGITUDE = -13.4"),
        u"5 52.500000,-13.400000, "_s + link);
    add("live location with a comment",
        message(1, "5", text) + media(1, "ZTITLE = 'Pier'"),
        u"5 text|Pier"_s);
    add("nowhere",
        message(1, "5") + media(1, "ZTITLE = 'Pier', ZLATITUDE = 0, ZLONGITUDE = 0"),
        u"5 Pier"_s);
    add("no place on this planet",
        message(1, "5") + media(1, "ZTITLE = 'Pier', ZLATITUDE = 91, ZLONGITUDE = 1e300"),
        u"5 Pier"_s);
}

void tst_Whatsapp::saysWhatMessagesAre()
{
    QFETCH(QByteArray, rows);
    QFETCH(QString, expected);
    WhatsappFixture fixture;
    fixture.addMedia(u"Media/film.thumb"_s, "still");
    fixture.addChats(kAnn + rows);
    QCOMPARE(fixture.messages(), QStringList { expected });
}

void tst_Whatsapp::relatesMessages_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QStringList>("expected");

    using Sample::FieldWriter;
    const QByteArray hello = message(1, "0", "ZTEXT = 'hello', ZSTANZAID = '3A01'");
    const QByteArray ann = "15550100123@s.whatsapp.net";
    const QByteArray bob = "15550100124@s.whatsapp.net";
    constexpr quint64 kSecond = 978307200 + 700000000; // since 1970, of message 0
    const auto reaction = [](const QByteArray &jid, const char *emoji, quint64 second) {
        FieldWriter one;
        if (!jid.isEmpty())
            one.bytes(2, jid);
        one.bytes(3, emoji).number(4, second * 1000);
        return FieldWriter().bytes(1, one.message()).message();
    };
    const auto own = [](const char *emoji, quint64 second) {
        return FieldWriter()
            .bytes(2, FieldWriter().bytes(2, emoji).number(3, second).number(4, 1).message())
            .message();
    };
    const auto info = [](int row, const QByteArray &reactions, const char *link = "ZMESSAGE") {
        const QByteArray blob =
            FieldWriter().number(4, 2).bytes(2, "x").bytes(7, reactions).message().toHex();
        return "INSERT INTO ZWAMESSAGEINFO(Z_PK, " + QByteArray(link) + ", ZRECEIPTINFO) VALUES ("
            + QByteArray::number(row) + ", " + QByteArray::number(row) + ", x'" + blob + "');";
    };
    const auto add = [](const char *name, const QByteArray &rows, const QStringList &expected) {
        QTest::newRow(name) << rows << expected;
    };
    const QString line = u"0 hello"_s;
    add("reaction of the other one",
        kAnn + hello + info(1, reaction({}, "\u2764", kSecond)),
        { line, u"0 Ann reacted with \u2764 to “hello”"_s });
    add("reaction of the owner, in seconds, by the message's own column",
        kAnn + hello + "UPDATE ZWAMESSAGE SET ZMESSAGEINFO = 9;"
            + info(9, own("\U0001F44D", kSecond), "Z_OPT"),
        { line, u"0 > You reacted with \U0001F44D to “hello”"_s });
    add("reactions stand at their time",
        kAnn + hello + message(2, "0", "ZTEXT = 'b'") + message(3, "0", "ZTEXT = 'c'")
            + info(1, own("late", kSecond + 9) + reaction({}, "soon", kSecond + 2))
            + info(2, reaction({}, "undated", 0)),
        { line,
          u"0 Ann reacted with soon to “hello”"_s,
          u"0 b"_s,
          u"0 Ann reacted with undated to “b”"_s,
          u"0 c"_s,
          u"0 > You reacted with late to “hello”"_s });
    add("one of each person, without those withdrawn",
        kGroup + message(1, "1", "ZGROUPMEMBER = 2") + message(2, "10", "ZTOJID = '" + ann + "'")
            + info(1,
                   reaction(bob, "new", kSecond + 9) + reaction(bob, "old", kSecond + 8)
                       + reaction(ann, "mine", kSecond + 7) + reaction("205@lid", "x", kSecond)
                       + reaction("205@lid", "", kSecond + 1) + reaction("206@lid", "?", kSecond)),
        { u"1 +15550100124: "_s,
          u"0 Somebody: Somebody reacted with ? to “Photo”"_s,
          u"6 Messages are end-to-end encrypted"_s,
          u"0 > You reacted with mine to “Photo”"_s,
          u"0 +15550100124: +15550100124 reacted with new to “Photo”"_s });
    add("how many of a channel's readers reacted",
        chat(1, "1203@newsletter", "ZPARTNERNAME = 'News'") + message(1, "0", "ZTEXT = 'hello'")
            + info(1,
                   FieldWriter()
                       .bytes(3,
                              FieldWriter()
                                  .bytes(1, FieldWriter().text(1, u"+1"_s).number(2, 7).message())
                                  .message())
                       .message()),
        { u"0 hello|[Reactions: +1 7]"_s });
    add("reactions that are cut off",
        kAnn + hello
            + "INSERT INTO ZWAMESSAGEINFO(Z_PK, ZMESSAGE, ZRECEIPTINFO) VALUES"
              " (1, 1, x'3A0A0A041A02414212FF'), (2, 1, x'3AFFFFFFFFFFFFFFFFFF01');",
        { line });

    const auto quoting = [](const QByteArray &id, const QByteArray &quoted) {
        FieldWriter metadata;
        if (!id.isEmpty())
            metadata.bytes(5, id);
        metadata.bytes(6, "15550100123@s.whatsapp.net").bytes(19, quoted);
        return message(2, "0", "ZTEXT = 'yes'")
            + media(2, "ZMETADATA = x'" + metadata.message().toHex() + '\'');
    };
    const QByteArray text = FieldWriter().bytes(1, "as it was").message();
    const QByteArray deleted = message(1, "14", "ZSTANZAID = '3A01', ZTEXT = 'x@lid'");
    const QString yes = u"0 [Reply to “%1”]|yes"_s;
    add("answer", kAnn + hello + quoting("3A01", text), { line, yes.arg(u"hello"_s) });
    add("an answer is quoted without its own quote, and reacted to",
        kAnn + hello + quoting("3A01", text)
            + "UPDATE ZWAMESSAGE SET ZSTANZAID = '3A02' WHERE Z_PK = 2;" + message(3, "1")
            + media(3, "ZMETADATA = x'" + FieldWriter().bytes(5, "3A02").message().toHex() + '\'')
            + info(2, reaction({}, "x", kSecond + 4)),
        { line, yes.arg(u"hello"_s), u"1 [Reply to “yes”]"_s, u"0 Ann reacted with x to “yes”"_s });
    add("answer to a message that is gone",
        kAnn + quoting("3A09", text),
        { yes.arg(u"as it was"_s) });
    add("answer to a message that was deleted for everyone",
        kAnn + deleted + quoting("3A01", text),
        { u"0 [Deleted message]"_s, yes.arg(u"as it was"_s) });
    add("answer to what nobody knows",
        kAnn + quoting("3A09", QByteArray("\x0a\xff", 2)),
        { u"0 [Reply]|yes"_s });
    add("the link's own preview is no quote", kAnn + quoting({}, text), { u"0 yes"_s });
    add("the metadata of very old versions is no quote",
        kAnn + message(1, "0", "ZTEXT = 'yes'")
            + media(
                1,
                "ZMETADATA = x'"
                    + ("bplist00" + QByteArray(104, 'x') + FieldWriter().bytes(5, "id").message())
                          .toHex()
                    + '\''),
        { u"0 yes"_s });
    const auto field = [](quint32 number, const QByteArray &value) {
        return FieldWriter().bytes(number, value).message();
    };
    const QList<std::pair<QByteArray, QString>> contents {
        { field(3, field(3, "caption")), u"caption"_s },
        { field(3, field(16, "jpeg")), u"Photo"_s },
        { field(4, field(16, "FN:Carl")), u"Carl"_s },
        { field(5, field(4, "Road 1")), u"Road 1"_s },
        { field(6, field(6, "title") + field(1, "a link")), u"a link"_s },
        { field(7, field(8, "a.pdf")), u"a.pdf"_s },
        { field(8, {}), u"Audio"_s },
        { field(2, "key") + field(9, field(7, "film")), u"film"_s },
    };
    for (const auto &[content, quote] : contents)
        add(qPrintable(u"answer to "_s + quote),
            kAnn + quoting("3A09", content),
            { yes.arg(quote) });

    const QByteArray created = "INSERT INTO ZWAGROUPINFO(Z_PK, ZCHATSESSION, ZCREATORJID, "
                               "ZCREATIONDATE) VALUES (7, 1, '"
        + bob + "', 600000000);";
    const QString byBob = u"6 +15550100124 created the group"_s;
    add("who made the group",
        kGroup + created + message(1, "0", "ZTEXT = 'x'"),
        { byBob, u"0 x"_s });
    add("who made the group, by the chat's column",
        kGroup + created
            + "UPDATE ZWAGROUPINFO SET ZCHATSESSION = NULL; UPDATE ZWACHATSESSION SET "
              "ZGROUPINFO = 7;"
            + message(1, "0", "ZTEXT = 'x'"),
        { byBob, u"0 x"_s });
    add("who made the group, where a message tells it without a name",
        kGroup + created + message(1, "6", "ZGROUPEVENTTYPE = 12"),
        { byBob });
    add("who made the group, where a message tells it",
        kGroup + created + message(1, "6", "ZGROUPEVENTTYPE = 12, ZGROUPMEMBER = 1"),
        { u"6 +15550100123 created the group"_s });
    add("who made an old group: the owner",
        chat(1, "15550100123-1400000000@g.us") + message(1, "0", "ZTEXT = 'x'")
            + message(2, "10", "ZTOJID = '" + ann + "'"),
        { u"6 You created the group"_s, u"0 x"_s, u"6 Messages are end-to-end encrypted"_s });
    add("nobody knows who made the group",
        kGroup + created + "UPDATE ZWAGROUPINFO SET ZCREATORJID = '9@lid';"
            + message(1, "0", "ZTEXT = 'x'"),
        { u"0 x"_s });
}

void tst_Whatsapp::relatesMessages()
{
    QFETCH(QByteArray, rows);
    WhatsappFixture fixture;
    fixture.addChats(rows);
    QTEST(fixture.messages(), "expected");
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Whatsapp::saysWhatHappened_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("more");
    QTest::addColumn<QString>("expected");

    const auto group = [](int code, const QByteArray &more, const QString &expected) {
        QTest::addRow("group %d %s", code, more.constData())
            << QByteArray("6") << code << more << expected;
    };
    const QByteArray by = "ZGROUPMEMBER = 1";
    const QByteArray jids = by
        + ", ZTEXT = '15550100124@s.whatsapp.net;15550100555@s.whatsapp.net , "
          "15550100999@s.whatsapp.net'";
    group(1, by + ", ZTEXT = 'New'", u"Ann changed the subject to “New”"_s);
    group(1, by, u"Ann changed the subject"_s);
    group(56,
          by + ", ZTEXT = '{\"old\":\"A\",\"newSubject\":\"B\"}'",
          u"Ann changed the subject to “B”"_s);
    group(56, by + ", ZTEXT = '{\"x'", u"Ann changed the subject"_s);
    group(56,
          by + ", ZTEXT = '{\"author\":\"15550100125@s.whatsapp.net\",\"new_subject\":\"B\"}'",
          u"Ann changed the subject to “B”"_s);
    group(1, by + ", ZTEXT = '[Team] Sailing'", u"Ann changed the subject to “[Team] Sailing”"_s);
    group(1,
          by + ", ZTEXT = 'Write to ada@lid.example, not 9@lidos'",
          u"Ann changed the subject to “Write to ada@lid.example, not 9@lidos”"_s);
    group(12, by + ", ZTEXT = '{fun} crew'", u"Ann created the group “{fun} crew”"_s);
    group(2, jids, u"Ann added Bob, +15550100555, you"_s);
    group(2, by, u"Members were added"_s);
    group(50, "ZISFROMME = 1, ZTEXT = '15550100124@s.whatsapp.net'", u"You added Bob"_s);
    group(3, by, u"Ann left"_s);
    group(3, "ZGROUPMEMBER = 5", u"You left"_s); // the owner's own row
    group(3, "ZGROUPMEMBER = 99", u"Unknown left"_s);
    group(4, {}, u"Somebody changed the group's picture"_s);
    group(5, by, u"Ann removed the group's picture"_s);
    group(7, by, u"Ann was removed"_s);
    group(7, by + ", ZTEXT = '15550100124@s.whatsapp.net'", u"Ann was removed by Bob"_s);
    group(7, "ZISFROMME = 1", u"You were removed"_s);
    group(9, by, u"Ann changed the phone number"_s);
    group(10, by, u"You are now an admin"_s);
    group(11, by, u"You are no longer an admin"_s);
    group(12, by, u"Ann created the group"_s);
    group(12, by + ", ZTEXT = 'Crew'", u"Ann created the group “Crew”"_s);
    group(14, {}, u"You were removed"_s);
    group(15, by, u"Ann joined by an invitation link"_s);
    group(23, by, u"Ann joined by an invitation link"_s);
    group(17, by, u"Ann changed the description"_s);
    group(22, by, u"Ann removed the description"_s);
    group(18, {}, u"Who may edit the group was changed"_s);
    group(21, {}, u"Who may send messages was changed"_s);
    group(26, {}, u"Disappearing messages were changed"_s);
    group(61, {}, u"The group was added to a community"_s);
    group(33, {}, u"The group was removed from a community"_s);
    group(64, {}, u"Group event"_s);
    group(64, "ZTEXT = 'plain words'", u"Group event: plain words"_s);
    group(64, "ZTEXT = '[1,2]'", u"Group event"_s);
    group(64, "ZTEXT = 'CO/kxKIGIAA='", u"Group event"_s);

    const auto notice = [](int code, const QByteArray &more, const QString &expected) {
        QTest::addRow("notice %d %s", code, more.constData())
            << QByteArray("10") << code << more << expected;
    };
    notice(2, "ZGROUPMEMBER = 1", u"Messages are end-to-end encrypted"_s);
    notice(1, {}, u"Missed voice call"_s);
    notice(46, {}, u"Missed video call"_s);
    notice(3, {}, u"Security code changed"_s);
    notice(6, {}, u"Phone number changed"_s);
    notice(38, {}, u"Business account notice"_s);
    notice(34, {}, u"You blocked this contact"_s);
    notice(35, {}, u"You unblocked this contact"_s);
    notice(41, {}, u"Group call started"_s);
    notice(99, {}, u"Notice"_s);
    notice(99, "ZTEXT = 'plain words'", u"plain words"_s);
    notice(99, "ZTEXT = '{\"a\":1}'", u"Notice"_s);
}

void tst_Whatsapp::saysWhatHappened()
{
    QFETCH(QByteArray, type);
    QFETCH(int, code);
    QFETCH(QByteArray, more);
    QFETCH(QString, expected);
    WhatsappFixture fixture;
    const QByteArray change = "ZGROUPEVENTTYPE = " + QByteArray::number(code)
        + ", ZMESSAGESTATUS = 0, ZTOJID = '15550100999@s.whatsapp.net'"
        + (more.isEmpty() ? QByteArray() : ", " + more);
    fixture.addChats(
        kGroup + message(1, type, change)
        + message(2, "0", "ZISFROMME = 1, ZTEXT = 'x'") // so that states count
        + message(3, "10", "ZTOJID = '15550100999@s.whatsapp.net'")
        + "INSERT INTO ZWAPROFILEPUSHNAME(ZJID, ZPUSHNAME) VALUES"
          " ('15550100123@s.whatsapp.net', 'Ann'), ('15550100124@s.whatsapp.net', 'Bob'),"
          " ('15550100125@s.whatsapp.net', 'Carl \"C\"');");
    // No state of sending, and no author: that would be a bubble.
    QString line = fixture.messages().value(0);
    QCOMPARE(line.remove(u"> "_s), u"6 "_s + expected);
}

void tst_Whatsapp::listsChats_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QStringList>("expected");

    const auto one = [](const QByteArray &jid, const QByteArray &more) {
        return chat(1, jid, more) + message(1, "0", "ZTEXT = 'x'");
    };
    const auto add = [](const char *name, const QByteArray &rows, const QStringList &expected) {
        QTest::newRow(name) << rows << expected;
    };
    add("private", kAnn + message(1, "0", "ZTEXT = 'x'"), { u"Ann|Ann|+15550100123"_s });
    add("a number for a name",
        one("15550100123@s.whatsapp.net",
            "ZPARTNERNAME = char(8234) || '+1 (555) 010-0123' || char(8236)"),
        { u"+15550100123|+15550100123|+15550100123"_s });
    add("no name",
        one("15550100123@s.whatsapp.net", {}),
        { u"+15550100123|+15550100123|+15550100123"_s });
    add("group",
        one("120363000000000001@g.us", "ZPARTNERNAME = '  Sea' || char(8206) || '  dogs'"),
        { u"Sea dogs||"_s });
    add("group without a subject",
        one("15550100-1400000000@g.us", {}),
        { u"15550100-1400000000||"_s });
    add("list", one("170000@broadcast", "ZPARTNERNAME = 'Neighbours'"), { u"Neighbours||"_s });
    add("channel", one("1203@newsletter", "ZPARTNERNAME = 'News'"), { u"News||"_s });
    add("something new", one("x@planet", {}), { u"x||"_s });
    add("the app itself",
        one("0@s.whatsapp.net", "ZPARTNERNAME = 'WhatsApp'"),
        { u"WhatsApp|WhatsApp|"_s });
    add("private identifier", one("205@lid", "ZPARTNERNAME = 'Ann'"), { u"Ann|Ann|"_s });
    add("private identifier of a known number",
        one("205@lid", "ZPARTNERNAME = 'Ann', ZCONTACTIDENTIFIER = '15550100123@s.whatsapp.net'"),
        { u"Ann|Ann|+15550100123"_s });
    add("no identifier, private", one("", "ZPARTNERNAME = 'Ann'"), { u"Ann|Ann|"_s });
    add("no identifier, group", one("", "ZPARTNERNAME = 'G', ZSESSIONTYPE = 1"), { u"G||"_s });
    add("removed", one("1@g.us", "ZPARTNERNAME = 'G', ZREMOVED = 1"), { u"G|||deleted"_s });
    add("hidden and archived",
        one("1@g.us", "ZPARTNERNAME = 'G', ZHIDDEN = 1, ZARCHIVED = 1"),
        { u"G||"_s });
    add("status posts", one("status@broadcast", {}), {});
    add("status posts of a person", one("1@status", {}), {});
    add("status posts under a private identifier", one("1@lid.status", {}), {});
    add("status posts by their type", one("1@s.whatsapp.net", "ZSESSIONTYPE = 3"), {});
    add("without messages", kAnn, {});
    add("nothing but an album", kAnn + message(1, "66"), {});
    add("a message without its chat", kAnn + message(1, "0", "ZTEXT = 'x', ZCHATSESSION = 77"), {});
    add("a message without any chat",
        kAnn + message(1, "0", "ZTEXT = 'x', ZCHATSESSION = NULL"),
        {});
    add("newest first, by the list's date, else by the messages'",
        chat(1, "1@g.us", "ZPARTNERNAME = 'old', ZLASTMESSAGEDATE = 600000000")
            + chat(2, "2@g.us", "ZPARTNERNAME = 'newest', ZLASTMESSAGEDATE = 800000000")
            + chat(3, "3@g.us", "ZPARTNERNAME = 'between'") + message(1, "0", "ZTEXT = 'x'")
            + message(2, "0", "ZTEXT = 'x', ZCHATSESSION = 2, ZMESSAGEDATE = 1")
            + message(3, "0", "ZTEXT = 'x', ZCHATSESSION = 3"),
        { u"newest||"_s, u"between||"_s, u"old||"_s });
}

void tst_Whatsapp::listsChats()
{
    QFETCH(QByteArray, rows);
    QFETCH(QStringList, expected);
    WhatsappFixture fixture;
    fixture.addChats(rows);
    QCOMPARE(fixture.chats(), expected);
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Whatsapp::findsNames_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("name");

    const QByteArray chosen = "INSERT INTO ZWAPROFILEPUSHNAME(ZJID, ZPUSHNAME) VALUES"
                              " ('15550100123@s.whatsapp.net', 'annie'),"
                              " ('15550100124@s.whatsapp.net', 'bobby');";
    QTest::newRow("address book") << "ZGROUPMEMBER = 1"_ba << chosen << u"Ann Book"_s;
    QTest::newRow("chosen name, with a device") << "ZGROUPMEMBER = 2"_ba << chosen << u"bobby"_s;
    QTest::newRow("a chosen name that could be data")
        << "ZGROUPMEMBER = 2"_ba
        << "INSERT INTO ZWAPROFILEPUSHNAME(ZJID, ZPUSHNAME) VALUES"
           " ('15550100124@s.whatsapp.net', 'OMAR');"_ba
        << u"OMAR"_s;
    QTest::newRow("the member's own name")
        << "ZGROUPMEMBER = 2"_ba
        << chosen + "UPDATE ZWAGROUPMEMBER SET ZCONTACTNAME = 'Bob B.' WHERE Z_PK = 2;"
        << u"Bob B."_s;
    QTest::newRow("the message's name")
        << "ZGROUPMEMBER = 2, ZPUSHNAME = 'bobs phone'"_ba << QByteArray() << u"bobs phone"_s;
    QTest::newRow("an encoded name is none")
        << "ZGROUPMEMBER = 2, ZPUSHNAME = 'CO/kxKIGIAA='"_ba << QByteArray() << u"+15550100124"_s;
    QTest::newRow("number") << "ZGROUPMEMBER = 2"_ba << QByteArray() << u"+15550100124"_s;
    QTest::newRow("private identifier, mapped") << "ZGROUPMEMBER = 3"_ba << chosen << u"Ann Book"_s;
    QTest::newRow("private identifier, mapped here and by the contacts")
        << "ZGROUPMEMBER = 4"_ba
        << "CREATE TABLE ZWAPHONENUMBERLIDPAIR (Z_PK INTEGER PRIMARY KEY, ZTIMESTAMP, ZLID,"
           " ZPHONENUMBER); INSERT INTO ZWAPHONENUMBERLIDPAIR VALUES"
           " (1, 1, '205690000000002@lid', '15550100888');"_ba
        << u"+15550100888"_s;
    QTest::newRow("private identifier") << "ZGROUPMEMBER = 3"_ba
                                        << "DELETE FROM ZWAGROUPMEMBER WHERE Z_PK = 3;"
                                           "INSERT INTO ZWAGROUPMEMBER(Z_PK, ZMEMBERJID) VALUES"
                                           " (3, '205690000000003@lid');"_ba
                                        << u"Unknown"_s;
    QTest::newRow("private identifier, mapped by the contacts")
        << "ZGROUPMEMBER = 4"_ba << chosen << u"+15550100777"_s;
    QTest::newRow("a member that is not there") << "ZGROUPMEMBER = 99"_ba << chosen << u"Unknown"_s;
    QTest::newRow("none, by the sender")
        << "ZFROMJID = '15550100124@s.whatsapp.net'"_ba << chosen << u"bobby"_s;
    QTest::newRow("none at all") << "ZFROMJID = '120363000000000001@g.us'"_ba << chosen
                                 << QString();
    QTest::newRow("the app's contacts") << "ZGROUPMEMBER = 5"_ba << chosen << u"Eve Contact"_s;
}

void tst_Whatsapp::findsNames()
{
    QFETCH(QByteArray, member);
    QFETCH(QByteArray, rows);
    QFETCH(QString, name);
    WhatsappFixture fixture;
    fixture.writer.addFile(
        u"HomeDomain"_s,
        u"Library/AddressBook/AddressBook.sqlitedb"_s,
        BackupFixture::database(
            "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT, Last TEXT);"
            "CREATE TABLE ABMultiValue (record_id INTEGER, property INTEGER, label INTEGER, value "
            "TEXT); INSERT INTO ABPerson VALUES (1, 'Ann', 'Book');"
            "INSERT INTO ABMultiValue VALUES (1, 3, NULL, '(555) 010-0123');"));
    fixture.writer.addFile(
        WhatsappFixture::domain(),
        u"LID.sqlite"_s,
        BackupFixture::database("CREATE TABLE ZWAPHONENUMBERLIDPAIR (Z_PK INTEGER PRIMARY KEY,"
                                " ZTIMESTAMP TIMESTAMP, ZLID VARCHAR, ZPHONENUMBER VARCHAR);"
                                "INSERT INTO ZWAPHONENUMBERLIDPAIR VALUES"
                                " (1, 2, '205690000000001@lid', '15550100123'),"
                                " (2, 1, '205690000000001', '15550100777@s.whatsapp.net');"));
    fixture.writer.addFile(
        WhatsappFixture::domain(),
        u"ContactsV2.sqlite"_s,
        BackupFixture::database("CREATE TABLE ZWAADDRESSBOOKCONTACT (Z_PK INTEGER PRIMARY KEY,"
                                " ZWHATSAPPID VARCHAR, ZFULLNAME VARCHAR, ZLID VARCHAR);"
                                "INSERT INTO ZWAADDRESSBOOKCONTACT VALUES"
                                " (1, CAST('15550100999' AS BLOB), CAST('Eve Contact' AS BLOB), "
                                "NULL), (2, '15550100777', NULL, '205690000000002@lid');"));
    fixture.addChats(kGroup + rows + message(1, "0", "ZTEXT = 'x', " + member)
                     + message(2, "0", "ZTEXT = 'y', ZISFROMME = 1, " + member));
    QCOMPARE(fixture.messages(),
             (QStringList { name.isEmpty() ? u"0 x"_s : u"0 "_s + name + u": x"_s, u"0 > y"_s }));
    QCOMPARE(fixture.problems(), QStringList());
}

void tst_Whatsapp::marksWhatFailed_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<bool>("othersHaveState");
    QTest::addColumn<bool>("failed");

    const QByteArray sent = "ZISFROMME = 1, ";
    QTest::newRow("read") << sent + "ZMESSAGESTATUS = 8" << true << false;
    QTest::newRow("between") << sent + "ZMESSAGESTATUS = 4" << true << false;
    QTest::newRow("waiting") << sent + "ZMESSAGESTATUS = 0" << true << true;
    QTest::newRow("waiting, where states are not kept")
        << sent + "ZMESSAGESTATUS = 0" << false << false;
    QTest::newRow("not sent") << sent + "ZMESSAGESTATUS = 9" << true << true;
    QTest::newRow("no state") << sent + "ZMESSAGESTATUS = NULL" << true << false;
    QTest::newRow("error") << sent + "ZMESSAGEERRORSTATUS = 3" << true << true;
    QTest::newRow("received, whatever it says")
        << "ZMESSAGESTATUS = 0, ZMESSAGEERRORSTATUS = 3"_ba << true << false;
    QTest::newRow("event") << "ZMESSAGETYPE = 6, ZMESSAGESTATUS = 0"_ba << true << false;
}

void tst_Whatsapp::marksWhatFailed()
{
    QFETCH(QByteArray, state);
    QFETCH(bool, othersHaveState);
    QFETCH(bool, failed);
    WhatsappFixture fixture;
    fixture.addChats(kAnn + message(1, "0", "ZTEXT = 'x', " + state)
                     + message(2,
                               "0",
                               "ZTEXT = 'y', ZISFROMME = 1, ZMESSAGESTATUS = "_ba
                                   + (othersHaveState ? "8" : "0")));
    QCOMPARE(fixture.messages().value(0).contains(u"! "_s), failed);
}

void tst_Whatsapp::marksBroadcasts()
{
    WhatsappFixture fixture;
    fixture.addChats(kAnn
                     + chat(2, "170000@broadcast", "ZPARTNERNAME = 'List', ZLASTMESSAGEDATE = 1")
                     + message(1, "0", "ZTEXT = 'to all', ZISFROMME = 1, ZCHATSESSION = 2")
                     + message(2, "0", "ZTEXT = 'to all', ZISFROMME = 1, ZPARENTMESSAGE = 1")
                     + message(3, "0", "ZTEXT = 'to Ann', ZISFROMME = 1, ZPARENTMESSAGE = 2")
                     + message(4, "0", "ZTEXT = 'gone', ZISFROMME = 1, ZPARENTMESSAGE = 99"));
    QCOMPARE(fixture.messages(0),
             (QStringList { u"0 > * to all"_s, u"0 > to Ann"_s, u"0 > gone"_s }));
    QCOMPARE(fixture.messages(1), QStringList { u"0 > * to all"_s });
}

void tst_Whatsapp::ordersMessages()
{
    WhatsappFixture fixture;
    fixture.addChats(kAnn + message(1, "0", "ZTEXT = 'd', ZSORT = 3")
                     + message(2, "0", "ZTEXT = 'b', ZSORT = 2")
                     + message(3, "0", "ZTEXT = 'c', ZSORT = 2")
                     + message(4, "0", "ZTEXT = 'a', ZSORT = 2, ZMESSAGEDATE = 1")
                     + message(5, "0", "ZTEXT = 'undated', ZSORT = NULL, ZMESSAGEDATE = 'never'"));
    QCOMPARE(fixture.messages(),
             (QStringList { u"0 undated"_s, u"0 a"_s, u"0 b"_s, u"0 c"_s, u"0 d"_s }));
}

void tst_Whatsapp::findsMedia_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("found");

    QTest::newRow("below Message") << "'Media/a/1.jpg'"_ba << u"one"_s;
    QTest::newRow("with a slash") << "'/Media/a/1.jpg'"_ba << u"one"_s;
    QTest::newRow("as it is") << "'Message/Media/a/1.jpg'"_ba << u"one"_s;
    QTest::newRow("beside Message") << "'Media/b/2.jpg'"_ba << u"two"_s;
    QTest::newRow("in the old app's library") << "'Media/c/3.jpg'"_ba << u"three"_s;
    QTest::newRow("never downloaded") << "NULL"_ba << QString();
    QTest::newRow("empty") << "''"_ba << QString();
    QTest::newRow("slashes") << "'///'"_ba << QString();
    QTest::newRow("missing") << "'Media/a/9.jpg'"_ba << QString();
    QTest::newRow("missing, its preview beside it") << "'Media/d/4.jpg'"_ba << u"four"_s;
    QTest::newRow("missing, its preview elsewhere")
        << "'Media/a/9.jpg', ZXMPPTHUMBPATH = 'Media/d/4.thumb'"_ba << u"four"_s;
    QTest::newRow("never downloaded, but seen")
        << "NULL, ZXMPPTHUMBPATH = '/Media/d/4.thumb'"_ba << u"four"_s;
    QTest::newRow("the file, not its preview")
        << "'Media/a/1.jpg', ZXMPPTHUMBPATH = 'Media/d/4.thumb'"_ba << u"one"_s;
    QTest::newRow("previews of this machine")
        << "NULL, ZXMPPTHUMBPATH = '/etc/passwd'"_ba << QString();
    QTest::newRow("a folder") << "'Media/a'"_ba << QString();
    QTest::newRow("out of the folder") << "'Media/../../secret.jpg'"_ba << QString();
    QTest::newRow("in and out") << "'Media/a/../../../Library/secret.jpg'"_ba << QString();
    QTest::newRow("another domain's") << "'../HomeDomain/Library/secret.jpg'"_ba << QString();
    QTest::newRow("of this machine") << "'/etc/passwd'"_ba << QString();
    QTest::newRow("a zero in it") << "'Media/a/1.jpg' || char(0) || '/../x'"_ba << QString();
    QTest::newRow("very long") << "replace(hex(zeroblob(100000)), '00', '../')"_ba << QString();
}

void tst_Whatsapp::findsMedia()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, found);
    WhatsappFixture fixture;
    fixture.addMedia(u"Media/a/1.jpg"_s, "one");
    fixture.addMedia(u"Media/d/4.thumb"_s, "four");
    fixture.writer.addFile(WhatsappFixture::domain(), u"Media/b/2.jpg"_s, "two");
    fixture.writer.addFile(WhatsappFixture::oldDomain(), u"Library/Media/c/3.jpg"_s, "three");
    fixture.writer.addFile(u"HomeDomain"_s, u"Library/secret.jpg"_s, "secret");
    fixture.addChats(kAnn + message(1, "1")
                     + media(1, "ZMEDIALOCALPATH = " + path)
                     // Found from the other side, when the message's own column leads nowhere.
                     + message(2, "1", "ZMEDIAITEM = 99")
                     + "INSERT INTO ZWAMEDIAITEM(Z_PK, ZMESSAGE) VALUES (50, 2);"
                       "UPDATE ZWAMEDIAITEM SET ZMEDIALOCALPATH = "
                     + path + " WHERE Z_PK = 50;");
    const QString expected = found.isEmpty() ? u"1 "_s : u"1 {%1}"_s.arg(found);
    QCOMPARE(fixture.messages(), (QStringList { expected, expected }));
}

void tst_Whatsapp::showsPicturesInHighDefinitionOnce()
{
    WhatsappFixture fixture;
    fixture.addMedia(u"Media/1.jpg"_s, "small");
    fixture.addMedia(u"Media/2.jpg"_s, "large");
    fixture.addMedia(u"Media/4.jpg"_s, "only");
    fixture.addChats(kAnn + message(1, "1") + media(1, "ZMEDIALOCALPATH = 'Media/1.jpg'")
                     + message(2, "1", "ZPARENTMESSAGE = 1")
                     + media(2, "ZMEDIALOCALPATH = 'Media/2.jpg'") + message(3, "1")
                     + message(4, "1", "ZPARENTMESSAGE = 3")
                     + media(4, "ZMEDIALOCALPATH = 'Media/4.jpg'"));
    QCOMPARE(fixture.messages(), (QStringList { u"1 {small}"_s, u"1 "_s, u"1 {only}"_s }));
}

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

void tst_Whatsapp::showsThePictureThatNamesAText()
{
    WhatsappFixture fixture;
    fixture.addMedia(u"Media/1.jpg"_s, "one");
    fixture.addChats(kAnn + message(1, "0", "ZTEXT = 'look'")
                     + "INSERT INTO ZWAMEDIAITEM(Z_PK, ZMESSAGE, ZMEDIALOCALPATH) VALUES"
                       " (9, 1, 'Media/1.jpg');");
    QCOMPARE(fixture.messages(), QStringList { u"0 look{one}"_s });
}

void tst_Whatsapp::readsEveryEdition()
{
    const auto named = [](const QByteArray &name, int date) {
        return Sample::whatsappTables() + chat(1, "1@g.us", "ZPARTNERNAME = '" + name + "'")
            + message(1, "0", "ZTEXT = '" + name + "', ZMESSAGEDATE = " + QByteArray::number(date));
    };
    for (const bool hasCurrent : { true, false }) {
        WhatsappFixture fixture;
        if (hasCurrent)
            fixture.addDatabase(BackupFixture::database(named("current", 700000002).constData()));
        fixture.addDatabase(BackupFixture::database(named("business", 700000003).constData()),
                            WhatsappFixture::businessDomain());
        fixture.writer.addFile(WhatsappFixture::oldDomain(),
                               u"Documents/ChatStorage.sqlite"_s,
                               BackupFixture::database(named("old", 700000001).constData()));
        QCOMPARE(fixture.chats(),
                 (QStringList { u"business||"_s, hasCurrent ? u"current||"_s : u"old||"_s }));
        QCOMPARE(fixture.messages(0), QStringList { u"0 business"_s });
        QCOMPARE(fixture.messages(1), QStringList { hasCurrent ? u"0 current"_s : u"0 old"_s });
    }
    WhatsappFixture none;
    none.writer.addFile(u"HomeDomain"_s, u"x"_s, "x");
    QCOMPARE(none.chats(), QStringList());
    QCOMPARE(none.set(WhatsappFixture::kFiles)->recoverCount(), 0);
    QCOMPARE(none.problems(), QStringList());
}

void tst_Whatsapp::readsWhatTheOldestTablesHold()
{
    WhatsappFixture fixture;
    fixture.writer.addFile(
        WhatsappFixture::oldDomain(),
        u"Documents/ChatStorage.sqlite"_s,
        BackupFixture::database(
            "CREATE TABLE ZWACHATSESSION (Z_PK INTEGER PRIMARY KEY, ZCONTACTJID VARCHAR);"
            "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, ZISFROMME INTEGER,"
            " ZCHATSESSION INTEGER, ZMESSAGEDATE TIMESTAMP, ZTEXT VARCHAR);"
            "CREATE TABLE ZWASTATUS (Z_PK INTEGER PRIMARY KEY, ZWHATSAPPID, ZCONTACTNAME);"
            "INSERT INTO ZWASTATUS VALUES (1, '15550100123', 'Ann');"
            "INSERT INTO ZWACHATSESSION VALUES (1, '15550100123@s.whatsapp.net');"
            "INSERT INTO ZWAMESSAGE VALUES (1, 0, 1, 400000002, 'later'), (2, 1, 1, 400000001, "
            "'x');"));
    QCOMPARE(fixture.chats(), QStringList { u"Ann|Ann|+15550100123"_s });
    QCOMPARE(fixture.messages(), (QStringList { u"0 > x"_s, u"0 later"_s }));
    QCOMPARE(fixture.problems(), QStringList());
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
