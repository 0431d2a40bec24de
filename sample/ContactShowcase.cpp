#include "sample/ContactShowcase.h"

#include "sample/ContactDatabase.h"
#include "sample/People.h"
#include "sample/PictureMaker.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

using Db = ContactDatabase;

// As new releases store a day: its noon in Greenwich.
QString day(int year, int month, int dayOfMonth)
{
    const QDateTime noon(QDate(year, month, dayOfMonth), QTime(12, 0), Qt::UTC);
    return QString::number(cocoaSeconds(noon), 'f', 6);
}

constexpr int kNoYear = 1604;

class Showcase
{
public:
    Showcase(ContactDatabase &database, Random &random)
        : m_database(database)
        , m_random(random)
    {
    }

    void write()
    {
        for (const Person &somebody : people())
            addPerson(somebody);
        addSkipper();
        addScripts();
        addAccounts();
        addFamily();
        addNameless();
        addLinked();
        addOddities();
    }

private:
    void addPerson(const Person &somebody)
    {
        Card card;
        card.first = somebody.first;
        card.last = somebody.last;
        card.organization = somebody.organization;
        card.isOrganization = somebody.first.isEmpty();
        if (somebody.first == u"Mara"_s) {
            card.nickname = u"Mimi"_s;
            card.jobTitle = u"Sailmaker"_s;
            card.department = u"Canvas"_s;
            card.organization = u"Tide & Timber"_s;
            card.birthday = day(1987, 5, 14);
            card.note = u"Allergic to shellfish.\nBorrowed the blue kayak in March."_s;
        } else if (somebody.first == u"Jonas"_s) {
            // An older release: midnight in Berlin.
            card.birthday = QString::number(
                cocoaSeconds(QDateTime(QDate(1990, 2, 28), QTime(23, 0), Qt::UTC)), 'f', 6);
        } else if (somebody.first == u"Grandma"_s) {
            card.birthday = day(kNoYear, 2, 29);
        }
        const qint64 row = m_database.addCard(card);
        if (!somebody.numberAsTyped.isEmpty()) {
            m_database.addValue(row,
                                Db::kPhone,
                                card.isOrganization ? u"Main"_s : u"Mobile"_s,
                                somebody.numberAsTyped);
        }
        if (!somebody.email.isEmpty())
            m_database.addValue(row, Db::kEmail, u"Home"_s, somebody.email);
        if (somebody.first == u"Mara"_s)
            addMore(row);
        if (card.isOrganization)
            addOffice(row);
        const bool hasPhoto = row % 3 == 1;
        if (hasPhoto)
            addPhoto(row);
    }

    void addMore(qint64 row)
    {
        m_database.addValue(row, Db::kPhone, u"=iPhone"_s, u"+1 202-555-0143"_s);
        m_database.addValue(row, Db::kPhone, u"=Boat"_s, u"(202) 555-0144;12"_s);
        m_database.addValue(row, Db::kEmail, u"Work"_s, u"mara@tide-and-timber.example"_s);
        m_database.addValue(
            row, Db::kUrl, u"HomePage"_s, u"https://tide-and-timber.example/mara?a=1&b=2"_s);
        m_database.addValue(row,
                            Db::kUrl,
                            u"Work"_s,
                            u"https://tide-and-timber.example/shop?basket="_s
                                + u"c1a7b0e4"_s.repeated(16));
        m_database.addParts(row,
                            Db::kAddress,
                            u"Home"_s,
                            { { u"Street"_s, u"12 Harbour Lane\nBack House, 2nd floor"_s },
                              { u"ZIP"_s, u"20001"_s },
                              { u"City"_s, u"Exampleton"_s },
                              { u"State"_s, u"DC"_s },
                              { u"Country"_s, u"United States"_s },
                              { u"CountryCode"_s, u"us"_s } });
        m_database.addParts(row,
                            Db::kAddress,
                            u"Work"_s,
                            { { u"City"_s, u"Marigold"_s }, { u"Country"_s, u"Canada"_s } });
        m_database.addValue(row, Db::kDate, u"Anniversary"_s, day(2015, 6, 20));
        m_database.addValue(row, Db::kDate, u"=Boat's launch"_s, day(kNoYear, 4, 1));
        m_database.addValue(row, Db::kRelatedName, u"Spouse"_s, u"Elias Lindqvist"_s);
        m_database.addValue(row, Db::kRelatedName, u"YoungerSister"_s, u"Kim Lindqvist"_s);
        m_database.addParts(row,
                            Db::kSocialProfile,
                            {},
                            { { u"service"_s, u"twitter"_s },
                              { u"username"_s, u"mara_sails"_s },
                              { u"url"_s, u"http://twitter.example/mara_sails"_s },
                              { u"userid"_s, u"4711"_s } });
        m_database.addParts(row,
                            Db::kInstantMessage,
                            u"Home"_s,
                            { { u"service"_s, u"Skype"_s }, { u"username"_s, u"mara.sails"_s } });
        m_database.addValue(row, Db::kSound, {}, u"system:Opening"_s);
    }

    void addOffice(qint64 row)
    {
        m_database.addValue(row, Db::kPhone, u"WorkFAX"_s, u"(202) 555 0191"_s);
        m_database.addValue(row, Db::kEmail, u"Work"_s, u"office@marigold.example"_s);
        m_database.addValue(row, Db::kUrl, u"HomePage"_s, u"marigold.example"_s);
        m_database.addParts(row,
                            Db::kAddress,
                            u"Work"_s,
                            { { u"Street"_s, u"1 Quay"_s }, { u"ZIP"_s, u"20002"_s } });
    }

    // Every part that a name has.
    void addSkipper()
    {
        Card card;
        card.prefix = u"Dr."_s;
        card.first = u"Anneliese"_s;
        card.middle = u"Maria"_s;
        card.last = u"von Brandt-Ó Sé"_s;
        card.suffix = u"Jr."_s;
        card.nickname = u"Skipper"_s;
        card.organization = u"Harbour Office; Pilots"_s;
        card.jobTitle = u"Pilot, \"first class\""_s;
        const qint64 row = m_database.addCard(card);
        m_database.addValue(row, Db::kPhone, u"Pager"_s, u"+49 30 5550101"_s);
        m_database.addValue(row, Db::kPhone, u"HomeFAX"_s, u"+49 30 5550102"_s);
        m_database.addValue(row, Db::kPhone, u"OtherFAX"_s, u"+49 30 5550103"_s);
        m_database.addValue(row, Db::kPhone, u"Other"_s, u"1-800-555-BOAT"_s);
        m_database.addValue(row, Db::kRelatedName, u"Assistant"_s, u"Ole Petersen"_s);
        addPhoto(row, u"PNG"_s);
    }

    void addScripts()
    {
        Card japanese;
        japanese.first = u"花子"_s;
        japanese.last = u"佐藤"_s;
        japanese.firstSpoken = u"はなこ"_s;
        japanese.lastSpoken = u"さとう"_s;
        m_database.addValue(
            m_database.addCard(japanese), Db::kPhone, u"Mobile"_s, u"+81 90-5550-0107"_s);
        Card arabic;
        arabic.first = u"نور"_s;
        arabic.last = u"الهدى"_s;
        m_database.addValue(
            m_database.addCard(arabic), Db::kEmail, u"Home"_s, u"nur@example.org"_s);
        Card swedish;
        swedish.first = u"Åsa"_s;
        swedish.last = u"Öberg"_s;
        m_database.addValue(
            m_database.addCard(swedish), Db::kPhone, u"Home"_s, u"+46 8 555 01 09"_s);
        Card emoji;
        emoji.first = u"Zoë 🐙"_s;
        emoji.note = u"Met at the 🦑 market 👨‍👩‍👧‍👦"_s;
        m_database.addValue(
            m_database.addCard(emoji), Db::kPhone, u"Mobile"_s, u"+1 202 555 0170"_s);
    }

    void addAccounts()
    {
        Card card;
        card.first = u"Lena"_s;
        card.last = u"Fischer <3 & Co"_s;
        const qint64 row = m_database.addCard(card);
        const auto profile = [&](const Db::Parts &parts) {
            m_database.addParts(row, Db::kSocialProfile, {}, parts);
        };
        profile({ { u"service"_s, u"Facebook"_s }, { u"username"_s, u"lena.fischer"_s } });
        profile({ { u"service"_s, u"linkedin"_s }, { u"username"_s, u"lenafischer"_s } });
        profile({ { u"service"_s, u"sinaweibo"_s }, { u"username"_s, u"莱娜"_s } });
        profile({ { u"username"_s, u"lena without a service"_s } });
        const auto account = [&](const QString &service, const QString &user) {
            m_database.addParts(row,
                                Db::kInstantMessage,
                                u"Work"_s,
                                { { u"service"_s, service }, { u"username"_s, user } });
        };
        account(u"Jabber"_s, u"lena@jabber.example"_s);
        account(u"GoogleTalk"_s, u"lena@talk.example"_s);
        account(u"Harbour Chat"_s, u"lena"_s);
    }

    void addFamily()
    {
        Card card;
        card.first = u"Elias"_s;
        card.last = u"Lindqvist"_s;
        card.birthday = day(1985, 12, 31);
        const qint64 row = m_database.addCard(card);
        m_database.addValue(row, Db::kPhone, u"Mobile"_s, u"+1 202-555-0145"_s);
        for (const QString &label : { u"Mother"_s, u"Father"_s, u"Parent"_s, u"Brother"_s })
            m_database.addValue(row, Db::kRelatedName, label, label + u" of Elias"_s);
        for (const QString &label : { u"Sister"_s, u"Child"_s, u"Friend"_s, u"Partner"_s })
            m_database.addValue(row, Db::kRelatedName, label, label + u" of Elias"_s);
        m_database.addValue(row, Db::kRelatedName, u"Manager"_s, u"Ann of the yard"_s);
        m_database.addValue(row, Db::kRelatedName, u"=Coxswain"_s, u"Noor Haddad"_s);
        m_database.addValue(row, Db::kDate, u"Other"_s, day(2001, 1, 1));
        addPhoto(row);
        m_database.addGroup(u"Family"_s, { 1, row });
        m_database.addGroup(u"Crew ⛵"_s, { 1, 2, 3 });
    }

    void addNameless()
    {
        m_database.addValue(
            m_database.addCard({}), Db::kEmail, u"Other"_s, u"newsletter@example.com"_s);
        m_database.addValue(m_database.addCard({}), Db::kPhone, {}, u"+1 202 555 0188"_s);
        Card nickname;
        nickname.nickname = u"The man from the ferry"_s;
        m_database.addCard(nickname);
        m_database.addCard({}); // nothing at all
    }

    // The same person in the phone's own book and in that of a server.
    void addLinked()
    {
        Card own;
        own.first = u"Theo"_s;
        const qint64 first = m_database.addCard(own);
        m_database.addValue(first, Db::kPhone, u"Mobile"_s, u"+1 202 555 0166"_s);
        Card server;
        server.first = u"Theodor"_s;
        server.last = u"Papadopoulos"_s;
        server.organization = u"Ferry Line"_s;
        server.store = 1;
        const qint64 second = m_database.addCard(server);
        m_database.addValue(second, Db::kPhone, u"Mobile"_s, u"+1 202 555 0166"_s);
        m_database.addValue(second, Db::kEmail, u"Work"_s, u"theodor@ferry.example"_s);
        m_database.link({ first, second }, second, first);
        addPhoto(first);
    }

    void addOddities()
    {
        Card card;
        card.first = u"Ivo \"Tiny\""_s;
        card.last = u"Q/R\\S"_s;
        const qint64 row = m_database.addCard(card);
        m_database.addValue(row, Db::kPhone, u"=_$!<half"_s, u"#31#2025550177"_s);
        m_database.addValue(row, Db::kPhone, {}, u"2025550178,,,44#"_s);
        // Kept as a small part only.
        m_database.addPhoto(row, {}, { { Db::kSmall, picture(60, u"JPEG"_s) } });
    }

    QByteArray picture(int side, const QString &format)
    {
        constexpr int kQuality = 85;
        const QImage image = drawLandscape(m_random, QSize(side, side));
        return format == u"PNG"_s ? encodePng(image) : encodeJpeg(image, kQuality);
    }

    void addPhoto(qint64 row, const QString &format = u"JPEG"_s)
    {
        const QByteArray whole = picture(320, format);
        m_database.addPhoto(
            row, whole, { { Db::kLargest, whole }, { Db::kSmall, picture(60, u"JPEG"_s) } });
    }

    ContactDatabase &m_database;
    Random &m_random;
};

} // namespace

void addContactShowcase(ContactDatabase &database, Random &random)
{
    Showcase(database, random).write();
}

} // namespace Sample
