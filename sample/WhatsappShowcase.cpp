#include "sample/WhatsappShowcase.h"

#include "sample/BackupWriter.h"
#include "sample/DocumentMaker.h"
#include "sample/InventedText.h"
#include "sample/MovieWriter.h"
#include "sample/People.h"
#include "sample/PictureMaker.h"
#include "sample/Random.h"
#include "sample/SoundMaker.h"
#include "sample/WhatsappDatabase.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

enum Type {
    Text = 0,
    Picture = 1,
    Video = 2,
    Audio = 3,
    ContactCard = 4,
    Location = 5,
    Event = 6,
    Link = 7,
    Document = 8,
    Notice = 10,
    Gif = 11,
    Deleted = 14,
    Sticker = 15,
    ViewOnce = 38,
    Poll = 46,
    Call = 59,
};

enum EventCode { Subject = 1, Added = 2, Left = 3, Created = 12, Encrypted = 2, MissedCall = 1 };

constexpr int kMe = -1;

QDateTime may(int day, int hour, int minute)
{
    return QDateTime(QDate(2024, 5, day), QTime(hour, minute), Qt::UTC);
}

QString jid(const QString &number)
{
    return number.sliced(1) + "@s.whatsapp.net"_L1;
}

QString vCard(const Person &person)
{
    return u"BEGIN:VCARD\nVERSION:3.0\nN:%2;%1;;;\nFN:%1 %2\nitem1.TEL;waid=%3:%4\nEND:VCARD\n"_s
        .arg(person.first, person.last, person.number.sliced(1), person.number);
}

// Plays chats into the database; its "I" is the phone's owner.
class Showcase
{
public:
    Showcase(WhatsappDatabase &database, BackupWriter &writer, Random &random)
        : m_database(database)
        , m_writer(writer)
        , m_random(random)
    {
    }

    void play()
    {
        mara();
        walkers();
        neighbours();
        removedChat();
        grandma();
        notAConversation();
    }

private:
    void enter(const WhatsappChatRow &chat, const QDateTime &start)
    {
        m_chat = m_database.addChat(chat);
        m_jid = chat.jid;
        m_now = start;
    }

    void wait(int minutes) { m_now = m_now.addSecs(qint64(minutes) * 60); }

    // From a member, kMe, or 0 for the one whom a private chat is with.
    WhatsappRow row(qint64 from, int type, const QString &text = {})
    {
        WhatsappRow row;
        row.chat = m_chat;
        row.date = m_now;
        row.type = type;
        row.text = text;
        row.fromMe = from == kMe;
        row.member = from > 0 ? from : 0;
        m_now = m_now.addSecs(m_random.between(20, 100));
        return row;
    }

    qint64 say(qint64 from, const QString &text)
    {
        return m_database.addMessage(row(from, Text, text));
    }

    void event(int type, int code, qint64 member = 0, const QString &text = {})
    {
        WhatsappRow what = row(member, type, text);
        what.eventCode = code;
        m_database.addMessage(what);
    }

    void send(const WhatsappRow &message, const WhatsappMediaRow &media)
    {
        WhatsappRow with = message;
        with.media = m_database.addMedia(media);
        m_database.addMessage(with);
    }

    // Adds the file of a message to the backup. \return its path as the database has it.
    QString store(const QString &extension, const QByteArray &content)
    {
        const QString path = u"Media/%1/%2/%3/%4.%5"_s.arg(m_jid,
                                                           QString::number(m_random.below(16), 16),
                                                           QString::number(m_random.below(16), 16),
                                                           m_random.uuid().toLower(),
                                                           extension);
        m_writer.addFile(whatsappDomain(), u"Message/"_s + path, content);
        return path;
    }

    WhatsappMediaRow photo(QSize size, const QString &caption = {})
    {
        return { store(u"jpg"_s, encodeJpeg(drawLandscape(m_random, size), 82)),
                 caption,
                 double(size.width()),
                 double(size.height()),
                 {},
                 u"image/jpeg"_s };
    }

    void mara();
    void walkers();
    void neighbours();
    void removedChat();
    void grandma();
    void notAConversation();

    WhatsappDatabase &m_database;
    BackupWriter &m_writer;
    Random &m_random;
    qint64 m_chat = 0;
    QString m_jid;
    QDateTime m_now;
};

void Showcase::mara()
{
    const Person mara = people()[0];
    enter({ jid(mara.number), u"Mara Lindqvist"_s }, may(27, 9, 12));
    event(Notice, Encrypted);
    const QString greeting = u"Good morning from the lighthouse! ☀️"_s;
    const qint64 first = say(0, greeting);
    m_database.addReaction(first, {}, u"❤️"_s, m_now);
    send(row(0, Picture), photo({ 900, 2000 }, u"The path is open again"_s));
    say(kMe, u"What a view. I'm putting my boots on"_s);
    send(row(kMe, Picture), photo({ 1600, 900 }, u"This is where we had lunch, if anybody asks"_s));
    send(row(0, Location),
         { {}, u"Old Lighthouse"_s, 54.123456, -7.654321, u"Cliff Road 1"_s, {} });
    send(row(0, Audio),
         { store(u"m4a"_s, tuneFile(m_random, 4, m_now)), {}, 0, 0, {}, u"audio/mp4"_s });
    say(kMe, u"Is that a seal, or are you singing? 😄"_s);
    send(row(0, ContactCard), { {}, {}, 0, 0, u"Jonas Weber"_s, vCard(people()[1]) });
    send(row(0, Document),
         { store(u"pdf"_s, pdfDocument(u"Tide table"_s, inventedText(m_random, 1))),
           u"Tide table May.pdf"_s,
           0,
           0,
           {},
           u"application/pdf"_s });
    send(row(0, Link, u"https://tide-and-timber.example/walks/lighthouse"_s),
         { {}, u"Seven walks to the lighthouse"_s, 0, 0, {}, {} });
    send(row(kMe, Sticker),
         { store(u"webp"_s, encodePng(drawLandscape(m_random, { 160, 160 }))),
           {},
           160,
           160,
           {},
           u"image/webp"_s });
    m_database.addMessage(row(0, Deleted));
    wait(45);
    WhatsappRow failed = row(kMe, Text, u"No signal in the woods, are you there?"_s);
    failed.status = 1;
    failed.error = 3;
    m_database.addMessage(failed);
    event(Notice, MissedCall);
    send(row(0, Picture),
         { {},
           u"One more, before the fog came"_s,
           1280,
           960,
           {},
           u"image/jpeg"_s,
           store(u"thumb"_s, encodeJpeg(drawLandscape(m_random, { 100, 75 }), 60)) });
    send(row(0, ViewOnce), {});
    const QString last = u"See you at seven & bring the <big> torch"_s;
    const qint64 farewell = say(kMe, last);
    m_database.addReaction(farewell, m_jid, u"👍"_s, m_now);
    WhatsappMediaRow answer;
    answer.metadata = WhatsappDatabase::quoteOf(first, m_jid, greeting);
    send(row(kMe, Text, u"And good night to it, by the way 🌙"_s), answer);
}

void Showcase::walkers()
{
    enter({ walkersGroup(),
            u"Lighthouse Walkers 🏮"_s,
            false,
            false,
            jid(people()[1].number),
            may(26, 18, 0) },
          may(26, 18, 0));
    const qint64 jonas = m_database.addMember(m_chat, jid(people()[1].number));
    const qint64 priya = m_database.addMember(m_chat, jid(people()[2].number));
    const qint64 ruth = m_database.addMember(m_chat, u"12025550186@s.whatsapp.net"_s);
    const qint64 stranger = m_database.addMember(m_chat, u"12025550187@s.whatsapp.net"_s);
    const qint64 hidden = m_database.addMember(m_chat, u"205690000000001@lid"_s);
    m_database.addChosenName(u"12025550186@s.whatsapp.net"_s, u"Ruth ⛵"_s);
    event(Event, Created, jonas, u"Walkers"_s);
    event(Event, Added, jonas, jid(people()[2].number) + u',' + jid(ownersNumber()));
    event(Event, Subject, priya, u"Lighthouse Walkers 🏮"_s);
    say(jonas, u"Sunday, nine sharp, at the harbour wall"_s);
    say(ruth, u"Count me in. I bring the thermos"_s);
    say(stranger, u"Hello everybody, I'm the neighbour from number 12"_s);
    say(hidden, u"And I'm the one whose number nobody sees"_s);
    send(row(priya, Video),
         { store(u"mp4"_s, landscapeMovie(m_random, { 320, 240 }, 12, m_now)),
           u"Last year's walk"_s,
           320,
           240,
           {},
           u"video/mp4"_s });
    send(row(kMe, Gif), { {}, {}, 320, 240, {}, u"video/mp4"_s });
    const qint64 poll = m_database.addMessage(row(priya, Poll, u"Soup or sandwiches?"_s));
    m_database.addOptions(poll, { u"Soup"_s, u"Sandwiches"_s });
    const qint64 soup = say(kMe, u"Soup! ¡Sopa! スープ! 🍲"_s);
    m_database.addReaction(soup, u"12025550186@s.whatsapp.net"_s, u"😋"_s, m_now);
    event(Event, Left, stranger);
}

// What goes to a list shows in the list and with each of the people on it.
void Showcase::neighbours()
{
    const QString text = u"The street party is on Saturday from four on. Everybody is welcome!"_s;
    enter({ u"1716540000@broadcast"_s, u"Neighbours"_s }, may(24, 12, 0));
    const qint64 original = say(kMe, text);
    enter({ jid(people()[2].number), u"\u200E+1 (202) 555‑0163"_s }, may(24, 12, 0));
    event(Notice, Encrypted);
    WhatsappRow copy = row(kMe, Text, text);
    copy.parent = original;
    m_database.addMessage(copy);
    say(0, u"We're in! I can make the mango salad"_s);
}

void Showcase::removedChat()
{
    enter({ u"12025550171@s.whatsapp.net"_s, u"\u202A+1 202 555 0171\u202C"_s, true },
          may(12, 20, 11));
    say(0, u"Hi, is the blue kayak still for sale?"_s);
    send(row(kMe, Picture), photo({ 600, 1200 }, u"It went yesterday, sorry"_s));
}

void Showcase::grandma()
{
    enter({ jid(people()[5].number), u"Grandma Elsie"_s, false, true }, may(14, 17, 30));
    say(0,
        u"My dear, the roses have opened today, all but the white one, which has always been a "
        "little slow.\n\nDo not forget your raincoat.\nYour Grandma"_s);
    say(kMe, u"صباح النور ☀️ as Noor would say"_s);
    m_database.addMessage(row(kMe, Call));
}

// The phone does not show these in its list of chats.
void Showcase::notAConversation()
{
    enter({ u"status@broadcast"_s, {} }, may(20, 8, 0));
    say(0, u"A status post is no message"_s);
    enter({ u"12025550188@s.whatsapp.net"_s, u"Nobody wrote here"_s }, may(20, 9, 0));
}

} // namespace

QString whatsappDomain()
{
    return u"AppDomainGroup-group.net.whatsapp.WhatsApp.shared"_s;
}

QString walkersGroup()
{
    return u"120363041234567890@g.us"_s;
}

void addWhatsappShowcase(WhatsappDatabase &database, BackupWriter &writer, Random &random)
{
    Showcase(database, writer, random).play();
}

} // namespace Sample
