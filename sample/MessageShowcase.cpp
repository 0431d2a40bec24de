#include "sample/MessageShowcase.h"

#include "sample/DocumentMaker.h"
#include "sample/HeicEncoder.h"
#include "sample/InventedText.h"
#include "sample/KeyedArchive.h"
#include "sample/MessageSchema.h"
#include "sample/MessageScript.h"
#include "sample/MovieWriter.h"
#include "sample/People.h"
#include "sample/PictureMaker.h"
#include "sample/PollPayload.h"
#include "sample/Random.h"
#include "sample/VoiceMessage.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

const QString kSms = u"SMS"_s;
const QString kIMessage = u"iMessage"_s;
const QString kRcs = u"RCS"_s;
constexpr qint64 kMe = 0;
constexpr int kFirstWithPolls = kNewestMessageRelease; // they came when these were its tables
constexpr int kVote = 4000;

enum Reaction { Love, Like, Dislike, Laugh, Emphasis, Question, Emoji };
enum EventItem { Participant = 1, Renamed = 2, GroupAction = 3 };
enum EventAction { Added = 0, Removed = 1, Left = 0, NewPicture = 1 };

QDateTime may(int day, int hour, int minute)
{
    return QDateTime(QDate(2024, 5, day), QTime(hour, minute), Qt::UTC);
}

QByteArray vCard(const Person &somebody)
{
    return u"BEGIN:VCARD\r\nVERSION:3.0\r\nN:%2;%1;;;\r\nFN:%1 %2\r\nTEL;type=CELL:%3\r\nEND:VCARD\r\n"_s
        .arg(somebody.first, somebody.last, somebody.number)
        .toUtf8();
}

QByteArray linkPayload(const QString &url, const QString &title, const QString &summary)
{
    const QVariantMap address { { kArchivedClass, u"NSURL"_s }, { u"NS.relative"_s, url } };
    const QVariantMap metadata { { kArchivedClass, u"LPLinkMetadata"_s },
                                 { u"URL"_s, address },
                                 { u"originalURL"_s, address },
                                 { u"title"_s, title },
                                 { u"summary"_s, summary },
                                 { u"siteName"_s, u"Tide & Timber"_s } };
    return keyedArchive({ { kArchivedClass, u"RichLink"_s },
                          { u"richLinkMetadata"_s, metadata },
                          { u"richLinkIsPlaceholder"_s, false } });
}

QByteArray appPayload(const QString &app, const QString &text, const QString &caption)
{
    return keyedArchive({ { u"an"_s, app },
                          { u"ldtext"_s, text },
                          { u"userInfo"_s, QVariantMap { { u"caption"_s, caption } } } });
}

class Showcase
{
public:
    Showcase(MessageDatabase &database, BackupWriter &writer, Random &random)
        : m_database(database)
        , m_random(random)
        , m_script(database, writer, random)
    {
    }

    void play()
    {
        shortCodes();
        boatyard();
        deletedConversation();
        grandma();
        noor();
        mmsWithoutAName();
        tomas();
        crew();
        mara();
        withoutConversation();
    }

private:
    struct OneToOne
    {
        qint64 handle;
        qint64 chat;
    };

    OneToOne oneToOne(const QString &address, const QString &service)
    {
        const qint64 handle = m_database.addHandle(address, service);
        return { handle, m_database.addChat({ address, service, false, {}, {}, { handle } }) };
    }

    SentFile photo(const QString &name, QSize size = { 1200, 900 })
    {
        return { name,
                 u"image/jpeg"_s,
                 u"public.jpeg"_s,
                 encodeJpeg(drawLandscape(m_random, size), 82),
                 SentFile::Where::InBackup,
                 false };
    }

    // As newer phones take them: on its side, in the file that they prefer.
    SentFile newPhoto(const QString &name, QSize size)
    {
        constexpr int kToTheRight = 6;
        const QImage image = storedForOrientation(drawLandscape(m_random, size), kToTheRight);
        return { name,
                 u"image/heic"_s,
                 u"public.heic"_s,
                 encodeHeic(image, { kToTheRight, exifBlock(kToTheRight, m_script.now()) }),
                 SentFile::Where::InBackup,
                 false };
    }

    // One that moves.
    SentFile sticker(const QString &name)
    {
        constexpr QSize kSize(240, 180);
        constexpr int kFrames = 6;
        const Random start = m_random;
        QList<QByteArray> frames;
        for (int i = 0; i < kFrames; ++i) {
            m_random = start;
            const QImage frame = drawLandscape(m_random, kSize, static_cast<double>(i) / kFrames);
            frames.append(encodeHeic(frame, { .thumbnailPx = 0 }));
        }
        return { name,
                 u"image/heics"_s,
                 u"public.heics"_s,
                 heicSequence(frames, kSize, kFrames, m_script.now()),
                 SentFile::Where::InBackup,
                 false };
    }

    // One that goes by the app of polls; a vote when it answers \a poll.
    QString putPoll(qint64 handle, const QByteArray &payload, const QString &poll = {})
    {
        MessageRow row = m_script.line(handle, QString());
        row.balloon = u"com.apple.messages.Polls"_s;
        row.payload = payload;
        row.associatedGuid = poll;
        row.associatedType = poll.isEmpty() ? 0 : kVote;
        return m_script.put(row);
    }

    void shortCodes();
    void boatyard();
    void deletedConversation();
    void grandma();
    void noor();
    void mmsWithoutAName();
    void tomas();
    void crew();
    void mara();
    void withoutConversation();

    MessageDatabase &m_database;
    Random &m_random;
    MessageScript m_script;
};

void Showcase::shortCodes()
{
    const OneToOne code = oneToOne(u"28777"_s, kSms);
    m_script.enter(code.chat, kSms, may(1, 9, 2));
    m_script.say(
        code.handle, u"Your code is 481 205. It is good for ten minutes."_s, TextStore::Plain);
    m_script.wait(2881);
    m_script.say(
        code.handle, u"Your code is 930 774. It is good for ten minutes."_s, TextStore::Plain);

    const OneToOne bank = oneToOne(u"HarborBank"_s, kSms);
    m_script.enter(bank.chat, kSms, may(4, 16, 20));
    m_script.say(bank.handle,
                 u"Card ending 0042: $18.40 at Gull & Sons Bakery. Not you? Reply NO."_s,
                 TextStore::Plain);
}

void Showcase::boatyard()
{
    const OneToOne yard = oneToOne(people()[7].number, kSms);
    m_script.enter(yard.chat, kSms, may(6, 10, 40));
    m_script.say(
        yard.handle,
        u"Good morning! Your mast is back from the workshop. You can fetch it any day until five."_s);
    MessageRow failed = m_script.line(kMe, u"Great! Does Thursday at four suit you?"_s);
    failed.error = 22;
    failed.sent = failed.delivered = false;
    m_script.put(failed);
    m_script.wait(3);
    m_script.say(kMe, u"Second try: Thursday at four?"_s);
    m_script.say(yard.handle, u"Thursday at four it is. Bring a long trailer :-)"_s);
    m_script.wait(300);
    MessageRow bill = m_script.line(yard.handle, u"￼"_s);
    bill.subject = u"Invoice 2024-117"_s;
    m_script.put(bill,
                 { { u"Invoice 2024-117.pdf"_s,
                     u"application/pdf"_s,
                     u"com.adobe.pdf"_s,
                     pdfDocument(u"Invoice 2024-117"_s, inventedText(m_random, 1)),
                     SentFile::Where::InBackup,
                     false } });
}

void Showcase::deletedConversation()
{
    const OneToOne stranger = oneToOne(u"+12025550171"_s, kSms);
    m_script.enter(stranger.chat, kSms, may(12, 20, 11));
    m_script.startDeleting(may(20, 8, 0));
    m_script.say(stranger.handle, u"Hi, is the blue kayak still for sale?"_s);
    m_script.say(kMe, u"Sorry, it went yesterday."_s);
    m_script.say(stranger.handle,
                 u"Too bad. Should the buyer change their mind, I am still here!"_s);
}

void Showcase::grandma()
{
    const OneToOne grandma = oneToOne(people()[5].number, kSms);
    m_script.enter(grandma.chat, kSms, may(14, 17, 30));
    m_script.say(
        grandma.handle,
        u"My dear, thank you for the flowers. They stand in the blue vase on the piano, next "
        "to the picture of your grandfather with the pike, and every time I walk past I have "
        "to smile. The roses have opened today, all but the white one, which has always been "
        "a little slow. When you come on Sunday I shall make the apple cake that you like, "
        "the one with the crumbs on top, and we can sit outside if the wind is kind.\n\n"
        "Do not forget your raincoat. And bring an appetite.\n\nYour Grandma"_s);
    m_script.say(kMe, u"I would not miss that cake for the world ❤️"_s);
    m_script.wait(18);
    m_script.send(kMe, u"￼"_s, { photo(u"IMG_2201.jpeg"_s, { 900, 1200 }) });
    m_script.say(kMe, u"This is where I am right now"_s);
    m_script.say(grandma.handle, u"How lovely. Who is the man with the hat?"_s);
    m_script.wait(1);
    m_script.send(grandma.handle,
                  u"￼"_s,
                  { { u"IMG_0007.jpeg"_s,
                      u"image/jpeg"_s,
                      u"public.jpeg"_s,
                      {},
                      SentFile::Where::Missing,
                      false } });
    m_script.say(grandma.handle, u"Here he is again, forty years ago"_s);
    m_script.wait(10);
    m_script.send(kMe,
                  u"￼"_s,
                  { { u"%1 %2.vcf"_s.arg(people()[0].first, people()[0].last),
                      u"text/vcard"_s,
                      u"public.vcard"_s,
                      vCard(people()[0]),
                      SentFile::Where::InBackup,
                      false } });
    m_script.say(kMe, u"That is Mara's number, in case you cannot reach me"_s);
}

void Showcase::noor()
{
    const OneToOne noor = oneToOne(people()[4].email, kIMessage);
    m_script.enter(noor.chat, kIMessage, may(18, 7, 55));
    m_script.say(noor.handle, u"صباح الخير! هل نلتقي في المقهى اليوم؟"_s, TextStore::Attributed);
    m_script.say(kMe,
                 u"صباح النور ☀️ نعم، الساعة الخامسة"_s,
                 TextStore::Attributed);
    m_script.say(noor.handle, u"ممتاز, see you at the café «البحر» at 5"_s, TextStore::Attributed);
    m_script.wait(95);
    m_script.say(noor.handle,
                 u"שלום from the beach 🏖️ (my cousin says hi)"_s,
                 TextStore::Attributed);
    m_script.send(noor.handle,
                  u"￼"_s,
                  { { u"Map of the harbour.png"_s,
                      u"image/png"_s,
                      u"public.png"_s,
                      encodePng(drawScreenshot(m_random, { 390, 844 })),
                      SentFile::Where::InBackup,
                      false } });
    m_script.say(kMe, u"👋👋🏽👨‍👩‍👧‍👦"_s, TextStore::Attributed);
}

void Showcase::mmsWithoutAName()
{
    const qint64 jonas = m_database.addHandle(people()[1].number, kSms);
    const qint64 priya = m_database.addHandle(people()[2].number, kSms);
    const qint64 sam = m_database.addHandle(people()[6].number, kSms);
    const qint64 chat = m_database.addChat(
        { u"chat512907334120"_s, kSms, true, {}, m_random.uuid(), { jonas, priya, sam } });
    m_script.enter(chat, kSms, may(20, 12, 5));
    MessageRow invitation = m_script.line(
        jonas,
        u"Saturday at our place, from six on. Bring nothing but yourselves.￼The garden is ready:￼"_s);
    invitation.subject = u"Summer party"_s;
    m_script.put(invitation,
                 { photo(u"IMG_4410.jpeg"_s), photo(u"IMG_4411.jpeg"_s, { 1000, 1000 }) });
    m_script.say(priya, u"We're in! Can I make the mango salad?"_s);
    m_script.say(sam, u"Only if there is plenty of it"_s);
    m_script.say(kMe, u"Count me in as well. I'll bring the lanterns"_s);
    m_script.wait(26);
    m_script.say(jonas, u"Perfect. Shoes off, grass is soft"_s);
}

void Showcase::tomas()
{
    const OneToOne tomas = oneToOne(people()[3].number, kRcs);
    m_script.enter(tomas.chat, kRcs, may(22, 19, 12));
    m_script.say(tomas.handle, u"New phone, same me. Can you see my dots now?"_s);
    m_script.say(kMe, u"I can! Welcome to this century"_s);
    const QString bet =
        m_script.say(tomas.handle, u"Bet I still beat you to the lighthouse on Sunday"_s);
    m_script.react(kMe, Laugh, bet);
    m_script.wait(4);
    const SentFile film { u"Sea trial.mov"_s,
                          u"video/quicktime"_s,
                          u"com.apple.quicktime-movie"_s,
                          landscapeMovie(m_random, { 480, 360 }, 24, m_script.now()),
                          SentFile::Where::InBackup,
                          false };
    m_script.send(tomas.handle, u"￼Proof of speed"_s, { film });
    m_script.say(kMe, u"That is the ferry overtaking you"_s);
}

void Showcase::crew()
{
    const qint64 mara = m_database.addHandle(people()[0].number, kIMessage);
    const qint64 jonas = m_database.addHandle(people()[1].number, kIMessage);
    const qint64 priya = m_database.addHandle(people()[2].number, kIMessage);
    const qint64 stranger = m_database.addHandle(u"+12025550186"_s, kIMessage);
    const qint64 chat = m_database.addChat({ u"chat830246119477"_s,
                                             kIMessage,
                                             true,
                                             u"Marigold Crew ⛵"_s,
                                             m_random.uuid(),
                                             { mara, jonas, priya, stranger } });
    m_script.enter(chat, kIMessage, may(24, 18, 3));
    m_script.event(mara, Renamed, 0, 0, u"Marigold Crew ⛵"_s);
    m_script.say(mara, u"So, crew: cast off on Sunday at nine sharp?"_s);
    const QString nine = m_script.say(jonas, u"Nine as in nine, or nine as in last time?"_s);
    m_script.react(priya, Laugh, nine);
    m_script.react(mara, Emphasis, nine);
    m_script.event(mara, Participant, Added, stranger);
    m_script.say(stranger,
                 u"Hello everybody, I'm Ruth from the club. Thanks for having me aboard!"_s);
    const QString welcome = m_script.say(
        kMe, u"Welcome Ruth! We are short of somebody who can cook"_s, TextStore::Attributed);
    m_script.react(stranger, Emoji, welcome, u"🍲"_s);
    m_script.wait(22);
    m_script.send(priya,
                  u"￼￼Look what came in the post"_s,
                  { photo(u"IMG_7730.jpeg"_s), newPhoto(u"IMG_7731.HEIC"_s, { 1400, 800 }) });
    m_script.event(priya, GroupAction, NewPicture, 0);
    m_script.send(jonas, u"￼"_s, { sticker(u"Sticker.heics"_s) });
    const QString weather = m_script.say(kMe, u"Forecast: four, gusts of six, sun from noon on"_s);
    m_script.reply(jonas, weather, u"Gusts of six is my middle name"_s);
    m_script.reply(priya, weather, u"Then I take the big jacket"_s);
    m_script.wait(31);
    MessageRow mention = m_script.line(mara, u"Jonas you steer, I do the foresail"_s);
    mention.runs = { { 5, 0, {}, {}, people()[1].number }, { 29, 0, {}, {}, {} } };
    m_script.put(mention);
    MessageRow share = m_script.line(mara, QString());
    share.balloon = u"com.apple.messages.MSMessageExtensionBalloonPlugin:0000000000:"
                    "com.apple.PassbookUIService.PeerPaymentMessagesExtension"_s;
    share.payload = appPayload(u"Cash"_s, u"$24.00 for fuel"_s, u"$24.00 for fuel"_s);
    m_script.put(share);
    m_script.say(jonas, u"Paid. Twice, by mistake. Buy a spare can!"_s);
    m_script.event(stranger, GroupAction, Left, 0);
    if (m_database.iosRelease() >= kFirstWithPolls) {
        const QString pasta = u"Pasta"_s;
        const QString soup = u"Fish soup"_s;
        const QString poll = putPoll(mara, pollPayload(u"What do we cook?"_s, { pasta, soup }));
        putPoll(jonas, votePayload({ pasta }), poll);
        putPoll(priya, votePayload({ pasta, soup }), poll);
        putPoll(jonas, votePayload({ soup }), poll);
    }
}

void Showcase::mara()
{
    const qint64 byText = m_database.addHandle(people()[0].number, kSms);
    const qint64 textChat =
        m_database.addChat({ people()[0].number, kSms, false, {}, {}, { byText } });
    const qint64 mara = m_database.addHandle(people()[0].number, kIMessage);
    const qint64 chat =
        m_database.addChat({ people()[0].number, kIMessage, false, {}, {}, { mara } });

    m_script.enter(textChat, kSms, may(25, 8, 14));
    m_script.say(byText, u"Only bars of the old sort here"_s);
    m_script.say(kMe, u"Then I'll write like it's 1999: c u l8r"_s);

    m_script.enter(chat, kIMessage, may(25, 16, 40));
    m_script.say(mara, u"Back! You won't believe this sky"_s);
    m_script.send(mara, u"￼"_s, { photo(u"IMG_1012.jpeg"_s) });
    const QString wow = m_script.say(kMe, u"Wow. Straight from the phone? 😍"_s);
    m_script.react(mara, Love, wow);
    m_script.say(mara, u"Straight out. No filter but fog"_s, TextStore::Attributed);
    m_script.wait(12);
    MessageRow voice = m_script.line(mara, u"￼"_s);
    voice.isAudio = true;
    m_script.put(voice,
                 { { u"Audio Message.caf"_s,
                     {},
                     u"com.apple.coreaudio-format"_s,
                     voiceMessage(m_random, 12),
                     SentFile::Where::InBackup,
                     false } });
    MessageRow heard = m_script.line(mara, u"￼"_s);
    heard.isAudio = heard.isExpired = true;
    heard.runs = { { 1, 0, m_random.uuid(), {}, {}, u"Listen, they sing!"_s } };
    m_script.put(heard);
    m_script.say(kMe, u"Ha! Are those seals?"_s);
    const QString seals = m_script.say(mara, u"Seals. Eleven of them. They have opinions"_s);
    m_script.react(kMe, Laugh, seals);
    m_script.react(kMe, Like, seals);
    m_script.withdraw(kMe, Like, seals);
    m_script.wait(27);

    const QString url =
        u"https://tide-and-timber.example/boats/marigold-a-small-boat-with-a-long-story?from=messages&page=2"_s;
    MessageRow link = m_script.line(mara, url);
    link.runs = { { url.size(), 0, {}, url, {} } };
    link.balloon = u"com.apple.messages.URLBalloonProvider"_s;
    link.payload = linkPayload(
        url, u"Marigold, a small boat with a long story"_s, u"How she came to the bay"_s);
    m_script.put(link,
                 { { u"8C1F.pluginPayloadAttachment"_s,
                     {},
                     u"dyn.age81k3p2su11upxvsr1dg2"_s,
                     m_random.bytes(400),
                     SentFile::Where::InBackup,
                     true } });
    m_script.say(mara, u"They wrote about us! Second paragraph"_s);
    m_script.reply(kMe, wow, u"(still looking at that picture by the way)"_s);
    m_script.edit(
        kMe,
        { u"Dinner on Teusday?"_s, u"Dinner on Tuesday?"_s, u"Dinner on Tuesday at seven?"_s });
    m_script.unsend(mara);
    m_script.say(mara, u"Wrong window, sorry. Tuesday at seven!"_s);
    m_script.startDeleting(may(28, 6, 30));
    m_script.say(kMe, u"I'll tell you a secret then"_s);
    m_script.stopDeleting();
    MessageRow failed = m_script.line(kMe, u"On my way, five minutes"_s);
    failed.sent = failed.delivered = false;
    failed.error = 4;
    m_script.put(failed);
    m_script.send(mara,
                  u"￼"_s,
                  { { u"IMG_1019.HEIC"_s,
                      u"image/heic"_s,
                      u"public.heic"_s,
                      {},
                      SentFile::Where::NeverFetched,
                      false } });
    m_script.say(mara, u"Table by the window. The one on the left"_s);
    m_script.say(kMe, u"🎉"_s, TextStore::Attributed);
}

// What is left of conversations that the phone has lost.
void Showcase::withoutConversation()
{
    m_script.enter(0, kSms, may(2, 11, 0));
    const qint64 gone = m_database.addHandle(u"+12025550199"_s, kSms);
    m_script.say(gone, u"This message has lost its conversation"_s, TextStore::Plain);
    constexpr qint64 kNoSuchHandle = 99999;
    m_script.say(kNoSuchHandle, u"And this one its sender, too"_s, TextStore::Plain);
}

} // namespace

void addMessageShowcase(MessageDatabase &database, BackupWriter &writer, Random &random)
{
    Showcase(database, writer, random).play();
}

} // namespace Sample
