#include "sample/WhatsappCalls.h"

#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/People.h"
#include "sample/SampleDates.h"
#include "sample/WhatsappShowcase.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr char kTables[] = R"(
CREATE TABLE ZWAAGGREGATECALLEVENT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZINCOMING INTEGER,
  ZMISSED INTEGER, ZMISSEDREASON INTEGER, ZVIDEO INTEGER, ZFIRSTDATE TIMESTAMP, ZLINKTOKEN VARCHAR);
CREATE TABLE ZWACDCALLEVENT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZBYTESRECEIVED INTEGER,
  ZBYTESSENT INTEGER, ZOUTCOME INTEGER, Z1CALLEVENTS INTEGER, Z_FOK_1CALLEVENTS INTEGER, ZDATE TIMESTAMP,
  ZDURATION FLOAT, ZGROUPCALLCREATORUSERJIDSTRING VARCHAR, ZGROUPJIDSTRING VARCHAR, ZSCHEDULEDID VARCHAR);
CREATE TABLE ZWACDCALLEVENTPARTICIPANT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZOUTCOME INTEGER,
  Z1PARTICIPANTS INTEGER, Z_FOK_1PARTICIPANTS INTEGER, ZJIDSTRING VARCHAR);
CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);
INSERT INTO Z_PRIMARYKEY VALUES (1,'WAAggregateCallEvent',0,1),(2,'WACDCallEvent',0,1),
  (3,'WACDCallEventParticipant',0,1);
)";

QString jid(const QString &number)
{
    return number.sliced(1) + "@s.whatsapp.net"_L1;
}

// A call; its people are indexes of people().
struct Call
{
    QDateTime date;
    QList<int> others;
    bool isIncoming;
    bool isVideo;
    int seconds; // 0: it did not come about
    QString group;
};

} // namespace

QByteArray whatsappCallTables()
{
    return kTables;
}

void addWhatsappCalls(BackupWriter &writer)
{
    const QString path = u"CallHistory.sqlite"_s;
    Database database(writer.contentPath(whatsappDomain(), path), kTables);
    Statement list =
        database.prepare("INSERT INTO ZWAAGGREGATECALLEVENT VALUES (?,1,1,?,?,1,?,?,NULL)");
    Statement event = database.prepare(
        "INSERT INTO ZWACDCALLEVENT(Z_PK,Z_ENT,Z_OPT,ZOUTCOME,Z1CALLEVENTS,ZDATE,ZDURATION,"
        "ZGROUPCALLCREATORUSERJIDSTRING,ZGROUPJIDSTRING) VALUES (?,2,1,?,?,?,?,?,?)");
    Statement participant = database.prepare(
        "INSERT INTO ZWACDCALLEVENTPARTICIPANT(Z_ENT,Z_OPT,ZOUTCOME,Z1PARTICIPANTS,ZJIDSTRING) "
        "VALUES (3,1,0,?,?)");
    const auto may = [](int day, int hour, int minute) {
        return QDateTime(QDate(2024, 5, day), QTime(hour, minute), Qt::UTC);
    };
    const QList<Call> calls {
        { may(14, 17, 32), { 5 }, false, false, 754, {} },
        { may(25, 20, 1), { 1, 2 }, true, true, 1840, walkersGroup() },
        { may(27, 10, 11), { 0 }, true, false, 0, {} },
    };
    for (int row = 1; row <= calls.size(); ++row) {
        const Call &call = calls[row - 1];
        const bool isMissed = call.isIncoming && call.seconds == 0;
        const QString first = people()[call.others.first()].number;
        list.run({ row, call.isIncoming, isMissed, call.isVideo, cocoaSeconds(call.date) });
        event.run({ row,
                    isMissed ? 1 : 0,
                    row,
                    cocoaSeconds(call.date),
                    call.seconds,
                    jid(call.isIncoming ? first : ownersNumber()),
                    call.group.isEmpty() ? QVariant() : QVariant(call.group) });
        for (const int other : call.others)
            participant.run({ row, jid(people()[other].number) });
    }
    if (!database.finish())
        writer.fail(path, database.error());
    writer.addWritten(whatsappDomain(), path);
}

} // namespace Sample
