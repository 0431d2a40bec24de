#include "sample/CallSample.h"

#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/People.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"

#include <algorithm>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kTables = R"(
CREATE TABLE ZCALLDBPROPERTIES (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTIMER_ALL FLOAT,
  ZTIMER_INCOMING FLOAT, ZTIMER_OUTGOING FLOAT);
CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZANSWERED INTEGER,
  ZCALL_CATEGORY INTEGER, ZCALLTYPE INTEGER, ZDISCONNECTED_CAUSE INTEGER, ZFACE_TIME_DATA INTEGER,
  ZHANDLE_TYPE INTEGER, ZNUMBER_AVAILABILITY INTEGER, ZORIGINATED INTEGER, ZREAD INTEGER, ZDATE TIMESTAMP,
  ZDURATION FLOAT, ZDEVICE_ID VARCHAR, ZISO_COUNTRY_CODE VARCHAR, ZLOCATION VARCHAR, ZNAME VARCHAR,
  ZSERVICE_PROVIDER VARCHAR, ZUNIQUE_ID VARCHAR UNIQUE, ZADDRESS VARCHAR);
CREATE TABLE ZHANDLE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTYPE INTEGER, ZNORMALIZEDVALUE VARCHAR,
  ZVALUE VARCHAR);
CREATE TABLE Z_2REMOTEPARTICIPANTHANDLES (Z_2REMOTEPARTICIPANTCALLS INTEGER, Z_4REMOTEPARTICIPANTHANDLES INTEGER,
  PRIMARY KEY (Z_2REMOTEPARTICIPANTCALLS, Z_4REMOTEPARTICIPANTHANDLES));
CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);
CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB);
INSERT INTO Z_PRIMARYKEY VALUES (1,'CallDBProperties',0,1),(2,'CallRecord',0,0),(4,'Handle',0,0);
CREATE INDEX ZCALLRECORD_ZDATE_INDEX ON ZCALLRECORD (ZDATE);
)";

constexpr int kUsualDays = 40;
constexpr int kCallsADay = 12; // of a phone with many calls

enum Kind { AppCall = 0, PhoneCall = 1, VideoCall = 8, AudioCall = 16 };

// Which of the calls, counted from the newest, are special.
enum Special { Early = 0, Withheld = 3, Group = 5, FromApp = 7, Long = 9 };

class CallStore
{
public:
    CallStore(BackupWriter &writer, const QString &name)
        : m_writer(writer)
        , m_path(u"Library/CallHistoryDB/"_s + name)
        , m_database(writer.contentPath(domain(), m_path), kTables)
        , m_insert(m_database.prepare(
              "INSERT INTO ZCALLRECORD(Z_PK, Z_ENT, Z_OPT, ZANSWERED, ZCALLTYPE, ZORIGINATED, "
              "ZREAD, "
              "ZDATE, ZDURATION, ZISO_COUNTRY_CODE, ZLOCATION, ZNAME, ZSERVICE_PROVIDER, "
              "ZUNIQUE_ID, ZADDRESS) "
              "VALUES (?,2,1,?,?,?,1,?,?,'us','<<RecentsNumberLocationNotFound>>',?,?,?,?)"))
    {
    }

    void add(Random &random, int index, const QDateTime &date)
    {
        const Person caller = person(random.below(random.chance(80) ? 12 : 400));
        const bool isOutgoing = random.chance(45);
        const bool isAnswered = isOutgoing ? random.chance(85) : random.chance(70);
        const int kind = index == FromApp ? AppCall
            : random.chance(85)           ? PhoneCall
            : random.chance(50)           ? VideoCall
                                          : AudioCall;
        const double seconds = index == Long ? 2 * 3600 + 61
            : isAnswered                     ? random.real(4, 1900)
                                             : 0;
        QVariant address = caller.number.isEmpty() ? caller.email : caller.number;
        if (index == Withheld || index == Group)
            address = QVariant();
        ++m_count;
        m_insert.run({ m_count,
                       isAnswered ? 1 : 0,
                       kind,
                       isOutgoing ? 1 : 0,
                       cocoaSeconds(date),
                       seconds,
                       index == FromApp ? QVariant(u"Harbour Radio"_s) : QVariant(),
                       kind == AppCall         ? u"org.example.radio"_s
                           : kind == PhoneCall ? u"com.apple.Telephony"_s
                                               : u"com.apple.FaceTime"_s,
                       random.uuid(),
                       address });
        if (index == Group)
            addParticipants();
    }

    void finish()
    {
        m_database.execute("UPDATE Z_PRIMARYKEY SET Z_MAX = (SELECT count(*) FROM ZCALLRECORD) "
                           "WHERE Z_ENT = 2");
        if (!m_database.finish())
            m_writer.fail(m_path, m_database.error());
        m_writer.addWritten(domain(), m_path);
    }

private:
    static QString domain() { return u"HomeDomain"_s; }

    void addParticipants()
    {
        Statement handle = m_database.prepare("INSERT INTO ZHANDLE VALUES (?,4,1,2,?,?)");
        Statement link = m_database.prepare("INSERT INTO Z_2REMOTEPARTICIPANTHANDLES VALUES (?,?)");
        for (int i = 0; i < 3; ++i) {
            const Person one = person(i);
            handle.run({ i + 1, one.number, one.number });
            link.run({ m_count, i + 1 });
        }
    }

    BackupWriter &m_writer;
    QString m_path;
    Database m_database;
    Statement m_insert;
    int m_count = 0;
};

} // namespace

void addCalls(BackupWriter &writer, const Options &options)
{
    if (options.calls == 0)
        return;
    Random random(options.seed, "calls");
    CallStore store(writer, u"CallHistory.storedata"_s);
    CallStore early(writer, u"CallHistoryTemp.storedata"_s);
    const int secondsApart =
        std::max(kUsualDays * 86400 / std::max(options.calls, kUsualDays * kCallsADay / 24), 60);
    // From the oldest on; the newest one came before the phone was unlocked.
    QDateTime date = sampleBackupDate().addSecs(-qint64(options.calls + 1) * secondsApart);
    for (int index = options.calls - 1; index >= 0; --index) {
        date = date.addSecs(random.between(secondsApart / 2, secondsApart));
        (index == Early ? early : store).add(random, index, date);
    }
    store.finish();
    early.finish();
}

} // namespace Sample
