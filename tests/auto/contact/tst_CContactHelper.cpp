#include "contact/CContactHelper.h"
#include "platform/CCommonUtils.h"
#include "support/FakeContact.h"

#include <QTranslator>
#include <QtTest>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

using Parts = QMap<QString, QString>;

// Puts every text of the library's context between angle quotes.
class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char *context,
                      const char *sourceText,
                      const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return qstrcmp(context, "DataExport") == 0 ? u"«%1»"_s.arg(QString::fromUtf8(sourceText))
                                                   : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class tst_CContactHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void convertsLabels_data();
    void convertsLabels();
    void labelsProfilesByTheirService_data();
    void labelsProfilesByTheirService();
    void namesGroups();
    void translatesKnownLabelsOnly();
    void convertsValues_data();
    void convertsValues();
    void convertsServices_data();
    void convertsServices();
    void findsHiddenParts_data();
    void findsHiddenParts();
    void describesDays_data();
    void describesDays();
};

void tst_CContactHelper::convertsLabels_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("expected");

    const auto token = [](const QString &name) { return u"_$!<%1>!$_"_s.arg(name); };
    const QList<std::pair<QString, QString>> tokens {
        { u"Mobile"_s, u"mobile"_s },       { u"Home"_s, u"home"_s },
        { u"Work"_s, u"work"_s },           { u"Anniversary"_s, u"anniversary"_s },
        { u"Other"_s, u"other"_s },         { u"Main"_s, u"main"_s },
        { u"OtherFAX"_s, u"other fax"_s },  { u"HomeFAX"_s, u"home fax"_s },
        { u"WorkFAX"_s, u"work fax"_s },    { u"Pager"_s, u"pager"_s },
        { u"HomePage"_s, u"home page"_s },  { u"Mother"_s, u"mother"_s },
        { u"Father"_s, u"father"_s },       { u"Parent"_s, u"parent"_s },
        { u"Brother"_s, u"brother"_s },     { u"Sister"_s, u"sister"_s },
        { u"Child"_s, u"child"_s },         { u"Friend"_s, u"friend"_s },
        { u"Spouse"_s, u"spouse"_s },       { u"Partner"_s, u"partner"_s },
        { u"Assistant"_s, u"assistant"_s }, { u"Manager"_s, u"manager"_s },
    };
    for (const auto &[name, words] : tokens)
        QTest::newRow(qPrintable(name)) << token(name) << words;
    const QList<std::pair<QString, QString>> others {
        { u"iPhone"_s, u"iPhone"_s },
        { u"twitter"_s, u"Twitter"_s },
        { u"facebook"_s, u"Facebook"_s },
        { u"flickr"_s, u"Flickr"_s },
        { u"linkedin"_s, u"LinkedIn"_s },
        { u"myspace"_s, u"Myspace"_s },
        { u"sinaweibo"_s, u"Sina Weibo"_s },
        { u"birthday"_s, u"birthday"_s },
        { u"notes"_s, u"notes"_s },
        { u"FaceBook"_s, u"FaceBook"_s },
        { u"_$!<home>!$_"_s, u"_$!<home>!$_"_s },
        { u"_$!<School>!$_"_s, u"_$!<School>!$_"_s },
        { u"My boat"_s, u"My boat"_s },
        { QString(), QString() },
    };
    for (const auto &[label, words] : others)
        QTest::newRow(qPrintable(u"as it is: "_s + label)) << label << words;
}

void tst_CContactHelper::convertsLabels()
{
    QFETCH(QString, label);
    QFETCH(QString, expected);
    CContactHelper helper;
    QCOMPARE(helper.convertLabel(label, false), expected);
    QCOMPARE(helper.convertLabel(label, true), expected);
}

void tst_CContactHelper::labelsProfilesByTheirService_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<Parts>("parts");
    QTest::addColumn<QString>("expected");

    const QString service = CContactHelper::VALUE_KEY_SERVICE;
    QTest::newRow("known") << 46 << Parts { { service, u"facebook"_s } } << u"Facebook"_s;
    QTest::newRow("unknown") << 46 << Parts { { service, u"Mastodon"_s } } << u"Mastodon"_s;
    QTest::newRow("none") << 46 << Parts { { u"username"_s, u"x"_s } } << u"other"_s;
    QTest::newRow("empty") << 46 << Parts { { service, QString() } } << u"other"_s;
    QTest::newRow("no profile") << 13 << Parts { { service, u"facebook"_s } } << u"other"_s;
}

void tst_CContactHelper::labelsProfilesByTheirService()
{
    QFETCH(int, type);
    QFETCH(Parts, parts);
    FakeContactProperty property;
    property.type = type;
    property.label = CContactHelper::CATE_OTHER;
    property.parts = parts;
    QTEST(CContactHelper().getPropLabel(&property), "expected");
}

void tst_CContactHelper::namesGroups()
{
    const QMap<int, QString> groups {
        { 3, u"Phone"_s },
        { 4, u"Email"_s },
        { 22, u"URL"_s },
        { 5, u"Address"_s },
        { 12, u"Date"_s },
        { 23, u"Related Name"_s },
        { 46, u"Social Profile"_s },
        { 13, u"Instant Message"_s },
    };
    for (int type = -1; type < 100; ++type) {
        QCOMPARE(CContactHelper::convertGroupLabel(type), groups.value(type));
        QCOMPARE(CContactHelper::convertGroupLabel(type).isNull(), !groups.contains(type));
    }
    QCOMPARE(CContactHelper::groupLabelForBirthday(), u"Birthday"_s);
    QCOMPARE(CContactHelper::groupLabelForNotes(), u"Notes"_s);
}

void tst_CContactHelper::translatesKnownLabelsOnly()
{
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    CContactHelper helper;
    FakeContactProperty profile;
    profile.type = 46;
    profile.parts = { { CContactHelper::VALUE_KEY_SERVICE, u"twitter"_s } };
    const QStringList translated {
        helper.convertLabel(CContactHelper::CATE_HOME, true),
        helper.convertLabel(CContactHelper::CATE_HOME, false),
        helper.convertLabel(u"My boat"_s, true),
        helper.getPropLabel(&profile),
        CContactHelper::convertGroupLabel(23),
        CContactHelper::groupLabelForBirthday(),
        CContactHelper::groupLabelForNotes(),
        helper.convertSpecialValue(u"aim"_s),
    };
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(translated,
             (QStringList { u"«home»"_s,
                            u"home"_s,
                            u"My boat"_s,
                            u"«Twitter»"_s,
                            u"«Related Name»"_s,
                            u"«Birthday»"_s,
                            u"«Notes»"_s,
                            u"AIM"_s }));
}

void tst_CContactHelper::convertsValues_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("value");
    QTest::addColumn<Parts>("parts");
    QTest::addColumn<QString>("expected");

    const auto account = [](const QString &service, const QString &user) {
        return Parts { { u"service"_s, service }, { u"username"_s, user } };
    };
    const Parts address { { u"Country"_s, u"5"_s }, { u"ZIP"_s, u"4"_s },    { u"State"_s, u"3"_s },
                          { u"City"_s, u"2"_s },    { u"Street"_s, u"1"_s }, { u"url"_s, u"x"_s } };
    QTest::newRow("plain") << 3 << u"+1 555"_s << Parts() << u"+1 555"_s;
    QTest::newRow("address") << 5 << u"-"_s << address << u"1|2|3|4|5"_s;
    QTest::newRow("address with an empty part")
        << 5 << u"-"_s << Parts { { u"Street"_s, u"1"_s }, { u"City"_s, {} }, { u"ZIP"_s, u"4"_s } }
        << u"1|4"_s;
    QTest::newRow("only parts that are not known")
        << 5 << u"-"_s << Parts { { u"x"_s, u"y"_s } } << QString();
    QTest::newRow("account") << 13 << u"-"_s << account(u"skype"_s, u"bo"_s) << u"bo (Skype)"_s;
    QTest::newRow("twitter") << 13 << u"-"_s << account(u"twitter"_s, u"bo"_s)
                             << u"@bo (twitter)"_s;
    QTest::newRow("the case counts")
        << 13 << u"-"_s << account(u"Twitter"_s, u"bo"_s) << u"bo (Twitter)"_s;
    QTest::newRow("profile") << 46 << u"-"_s << account(u"twitter"_s, u"bo"_s) << u"@bo"_s;
    QTest::newRow("no service") << 13 << u"-"_s << account({}, u"bo"_s) << u"bo"_s;
    QTest::newRow("no user") << 13 << u"-"_s << Parts { { u"service"_s, u"aim"_s } } << u" (AIM)"_s;
    QTest::newRow("a user with a place holder")
        << 13 << u"-"_s << account(u"%1"_s, u"%1"_s) << u"%1 (%1)"_s;
    QTest::newRow("date") << 12 << u"0"_s << Parts() << u"2001-01-01"_s;
    QTest::newRow("date, the last second") << 12 << u"86399.9"_s << Parts() << u"2001-01-01"_s;
    QTest::newRow("date that is none") << 12 << u"nan"_s << Parts() << QString();
    QTest::newRow("seconds of another kind") << 4 << u"0"_s << Parts() << u"0"_s;
}

void tst_CContactHelper::convertsValues()
{
    QFETCH(int, type);
    QFETCH(QString, value);
    QFETCH(Parts, parts);
    FakeContactProperty property;
    property.type = type;
    property.value = value;
    property.parts = parts;
    QTEST(CContactHelper().getPropValue(&property, u"|"_s), "expected");
    for (auto part = parts.begin(); part != parts.end(); ++part)
        QCOMPARE(CContactHelper::getPropValueEntry(&property, part.key()), part.value());
    QVERIFY(CContactHelper::getPropValueEntry(&property, u"absent"_s).isNull());
}

void tst_CContactHelper::convertsServices_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    const QList<std::pair<const char *, const char *>> services {
        { "google", "Google Talk" },
        { "GoogleTalk", "Google Talk" },
        { "YAHOO", "Yahoo!" },
        { "msn", "MSN" },
        { "icq", "ICQ" },
        { "jabber", "Jabber" },
        { "skype", "Skype" },
        { "qq", "QQ" },
        { "Facebook", "Facebook" },
        { "gadu", "GaduGadu" },
        { "aim", "AIM" },
        { "Signal", "Signal" },
        { "", "" },
    };
    for (const auto &[value, expected] : services)
        QTest::newRow(value) << QString::fromLatin1(value) << QString::fromLatin1(expected);
}

void tst_CContactHelper::convertsServices()
{
    QFETCH(QString, value);
    QTEST(CContactHelper().convertSpecialValue(value), "expected");
}

void tst_CContactHelper::findsHiddenParts_data()
{
    QTest::addColumn<Parts>("parts");
    QTest::addColumn<Parts>("hidden");

    Parts known;
    for (const char *key : { "Country",
                             "Street",
                             "ZIP",
                             "City",
                             "State",
                             "CountryCode",
                             "username",
                             "service",
                             "url" })
        known.insert(QString::fromLatin1(key), u"x"_s);
    Parts more = known;
    more.insert(u"zip"_s, u"y"_s);
    QTest::newRow("none") << Parts() << Parts();
    QTest::newRow("all known") << known << Parts();
    QTest::newRow("one more") << more << Parts { { u"zip"_s, u"y"_s } };
}

void tst_CContactHelper::findsHiddenParts()
{
    QFETCH(Parts, parts);
    QFETCH(Parts, hidden);
    FakeContactProperty property;
    property.parts = parts;
    Parts found { { u"old"_s, u"content"_s } };
    QCOMPARE(CContactHelper::getHiddenProperty(&property, found), !hidden.isEmpty());
    QCOMPARE(found, hidden);
}

void tst_CContactHelper::describesDays_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("day");
    QTest::addColumn<QString>("formatted");

    const double noon = 43200;
    const double leapDay1604 = -12523032000; // noon
    for (const char *zone : { "UTC", "Pacific/Honolulu", "Asia/Tokyo" }) {
        const auto row = [zone](const char *what) -> QTestData & {
            return QTest::addRow("%s, %s", what, zone) << QByteArray(zone);
        };
        row("noon") << noon << u"2001-01-01"_s << u"01.01.2001"_s;
        row("without a year") << leapDay1604 << u"02-29"_s << u"02-29"_s;
        row("no date") << qQNaN() << QString() << QString();
    }
    QTest::newRow("evening") << QByteArray("Asia/Tokyo") << noon + 36000 << u"2001-01-01"_s
                             << u"02.01.2001"_s;
    QTest::newRow("first second") << QByteArray("Pacific/Honolulu") << 0.0 << u"2001-01-01"_s
                                  << u"31.12.2000"_s;
}

void tst_CContactHelper::describesDays()
{
    QFETCH(QByteArray, zone);
    QFETCH(double, seconds);
    const QByteArray before = qgetenv("TZ");
    qputenv("TZ", zone);
    tzset();
    const QDateTime dateTime = CCommonUtils::buildDateTimeBase2001(seconds);
    const QString day = CContactHelper::getDateDesc(dateTime, nullptr);
    const QString formatted = CContactHelper::getDateDesc(dateTime, "dd.MM.yyyy");
    qputenv("TZ", before);
    tzset();
    QTEST(day, "day");
    QTEST(formatted, "formatted");
}

QTEST_GUILESS_MAIN(tst_CContactHelper)
#include "tst_CContactHelper.moc"
