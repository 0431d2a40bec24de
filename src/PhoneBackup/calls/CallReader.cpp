#include "PhoneBackup/calls/CallReader.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/calls/KnownCalls.h"
#include "PhoneBackup/source/Jid.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

#include <QRegularExpression>
#include <QSet>

#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFirstReleaseWithoutCalls = 13;
constexpr qint64 kOutgoingFlag = 1; // among the flags of old stores
const QString kRecords = u"ZCALLRECORD"_s;
const QString kHandles = u"ZHANDLE"_s;

// What the phone stores where it does not know the place of a number.
constexpr QLatin1StringView kNoPlace("<<RecentsNumberLocationNotFound>>");

// ZCALLTYPE, as the phone's own list of calls tells them apart.
enum CallType : qint64 { kOfApp = 0, kTelephone = 1, kFaceTimeVideo = 8, kFaceTimeAudio = 16 };

void setKind(Call &call, qint64 type)
{
    switch (type) {
    case kOfApp:
        call.kind = call.app.isEmpty() ? Call::Kind::Unknown : Call::Kind::App;
        break;
    case kTelephone:
        call.kind = Call::Kind::Telephone;
        break;
    case kFaceTimeVideo:
    case kFaceTimeAudio:
        call.kind = Call::Kind::FaceTime;
        call.isVideo = type == kFaceTimeVideo;
        break;
    default:
        break;
    }
}

// The table that says who took part in calls of more than two, and its columns.
struct Participants
{
    QString table;
    QString call;
    QString handle;
};

// Its name and those of its columns hold numbers that change with the phone's release.
Participants participantsTable(const RowDatabase &database)
{
    static const QRegularExpression tableName(u"^Z_\\d+REMOTEPARTICIPANTHANDLES$"_s);
    static const QRegularExpression callName(u"^Z_\\d+REMOTEPARTICIPANTCALLS$"_s);
    for (const QString &table : database.tableNames()) {
        if (!tableName.match(table).hasMatch())
            continue;
        Participants link { table, {}, {} };
        for (const QString &column : database.columns(table)) {
            if (callName.match(column).hasMatch())
                link.call = column;
            else if (tableName.match(column).hasMatch())
                link.handle = column;
        }
        if (!link.call.isEmpty() && !link.handle.isEmpty())
            return link;
    }
    return {};
}

// Addresses of the calls that have none of their own.
QHash<qint64, QStringList> participants(RowDatabase &database)
{
    QHash<qint64, QStringList> of;
    const Participants link = participantsTable(database);
    if (link.table.isEmpty() || !database.hasColumn(kHandles, u"ZVALUE"_s))
        return of;
    const Table calls(database, kRecords);
    calls.forEach([&](const Table::Row &row) { of.insert(row.id(), {}); },
                  u"ifnull(length(%1), 0) = 0"_s.arg(calls.sql(u"ZADDRESS"_s)));
    if (of.isEmpty())
        return of;
    QHash<qint64, QString> handles;
    Table values(database, kHandles);
    const Table::Column value = values.column(u"ZVALUE"_s);
    values.forEach(
        [&](const Table::Row &row) { handles.insert(row.id(), row.text(value).trimmed()); });
    Table links(database, link.table);
    const auto [call, handle] = links.columns(link.call, link.handle);
    links.forEach([&](const Table::Row &row) {
        const auto found = of.find(row.integer(call));
        const QString address = handles.value(row.integer(handle));
        if (found != of.end() && !address.isEmpty() && !found->contains(address))
            found->append(address);
    });
    return of;
}

class CallReader
{
public:
    CallReader(Source &source,
               std::vector<Call> ofLogs,
               const std::function<void(const Call &)> &sink)
        : m_source(source)
        , m_ofLogs(std::move(ofLogs))
        , m_sink(sink)
    {
    }

    void read()
    {
        for (std::size_t i = 0; i < m_ofLogs.size(); ++i)
            m_known.add(m_ofLogs[i], i);
        // The small store holds calls from before the phone was first unlocked; most come to the
        // other one later.
        const bool hasEarly = readStore(u"CallHistoryTemp.storedata"_s, true);
        const bool hasStore = readStore(u"CallHistory.storedata"_s, false) || hasEarly;
        // Where there is a store, older databases are what an update left behind.
        bool hasOld = false;
        if (!m_hasCalls)
            hasOld = readOld("WirelessDomain") || readOld("HomeDomain");
        if (!hasStore && !hasOld)
            m_source.addAbsence(
                DataType::Calls, kFirstReleaseWithoutCalls, Notice("calls.notInPlainBackups"));
        for (const Call &call : m_ofLogs)
            m_sink(call);
    }

private:
    std::optional<RowDatabase> open(QByteArrayView domain, const QString &path)
    {
        return RowDatabase::open(
            m_source, DataType::Calls, domain, path, Notice("calls.mayBeMissing"));
    }

    bool isInBackup(QByteArrayView domain, const QString &path)
    {
        return m_source.files().findFile(domain, path) != FileIndex::kNone;
    }

    // Whether the backup has such a store.
    bool readStore(const QString &file, bool isEarly)
    {
        const QString path = u"Library/CallHistoryDB/"_s + file;
        std::optional<RowDatabase> database = open("HomeDomain", path);
        if (!database)
            return isInBackup("HomeDomain", path);
        Table table(*database, kRecords);
        if (!table.exists()) {
            database->addLoss(Notice("calls.noTable"));
            return true;
        }
        const QHash<qint64, QStringList> groups = participants(*database);
        const auto [address, given, date, duration, originated, answered, id] =
            table.columns(u"ZADDRESS"_s,
                          u"ZNAME"_s,
                          u"ZDATE"_s,
                          u"ZDURATION"_s,
                          u"ZORIGINATED"_s,
                          u"ZANSWERED"_s,
                          u"ZUNIQUE_ID"_s);
        const auto [app, type, seen, place, country] = table.columns(u"ZSERVICE_PROVIDER"_s,
                                                                     u"ZCALLTYPE"_s,
                                                                     u"ZREAD"_s,
                                                                     u"ZLOCATION"_s,
                                                                     u"ZISO_COUNTRY_CODE"_s);
        const bool hasSeen = !m_seen.isEmpty();
        table.forEach([&](const Table::Row &row) {
            const QByteArrayView unique = row.bytes(id);
            if (hasSeen && m_seen.contains(unique.toByteArray()))
                return;
            if (isEarly && !unique.isEmpty())
                m_seen.insert(unique.toByteArray());
            Call call;
            call.row = row.id();
            call.id = row.text(id);
            call.date = PhoneTime::ofThePast(row.number(date));
            call.app = row.text(app);
            QString other = row.text(address).trimmed();
            if (isWhatsapp(call) && Jid(other).isPerson())
                other = Jid(other).number();
            call.addresses = other.isEmpty() ? groups.value(row.id()) : QStringList { other };
            if (const QString name = row.text(given).trimmed(); !name.isEmpty())
                call.names.append(name);
            call.direction = row.integer(originated) != 0 ? Call::Direction::Outgoing
                                                          : Call::Direction::Incoming;
            call.isMissed =
                call.direction == Call::Direction::Incoming && row.number(answered) == 0;
            call.seconds = row.number(duration);
            call.isSeen = row.integer(seen) != 0;
            call.country = row.text(country);
            if (const QString where = row.text(place); where != kNoPlace)
                call.place = where;
            if (!row.isNull(type))
                setKind(call, row.integer(type));
            m_hasCalls = true;
            if (!isWhatsapp(call) || !isKnown(call))
                m_sink(call);
        });
        return true;
    }

    // Whether the backup has such a database.
    bool readOld(QByteArrayView domain)
    {
        const QString path = u"Library/CallHistory/call_history.db"_s;
        std::optional<RowDatabase> database = open(domain, path);
        if (!database)
            return isInBackup(domain, path);
        Table table(*database, u"call"_s);
        if (!table.exists()) {
            database->addLoss(Notice("calls.noTable"));
            return true;
        }
        const auto [address, given, date, duration, flags, seen] =
            table.columns(u"address"_s, u"name"_s, u"date"_s, u"duration"_s, u"flags"_s, u"read"_s);
        table.forEach([&](const Table::Row &row) {
            Call call;
            call.row = row.id();
            call.date = PhoneTime::sinceUnix(row.number(date));
            if (const QString other = row.text(address).trimmed(); !other.isEmpty())
                call.addresses.append(other);
            if (const QString name = row.text(given).trimmed(); !name.isEmpty())
                call.names.append(name);
            const bool isOutgoing = (row.integer(flags) & kOutgoingFlag) != 0;
            call.direction = isOutgoing ? Call::Direction::Outgoing : Call::Direction::Incoming;
            call.seconds = row.number(duration);
            call.isMissed = !isOutgoing && call.seconds.value_or(0) == 0;
            call.isSeen = row.integer(seen) != 0;
            m_sink(call);
        });
        return true;
    }

    static bool isWhatsapp(const Call &call)
    {
        return call.app.startsWith("net.whatsapp."_L1, Qt::CaseInsensitive);
    }

    // Whether the log of its app has it; what only the phone tells is taken over.
    bool isKnown(const Call &call)
    {
        const auto found = m_known.take(call);
        if (!found)
            return false;
        Call &known = m_ofLogs[*found];
        if (known.names.isEmpty())
            known.names = call.names;
        if (call.seconds.value_or(0) > known.seconds.value_or(0))
            known.seconds = call.seconds;
        return true;
    }

    Source &m_source;
    std::vector<Call> m_ofLogs;
    const std::function<void(const Call &)> &m_sink;
    KnownCalls m_known; // of m_ofLogs
    bool m_hasCalls = false; // the phone's store has some
    QSet<QByteArray> m_seen; // identifiers of the calls in the small store
};

} // namespace

void readCalls(Source &source,
               std::vector<Call> ofLogs,
               const std::function<void(const Call &)> &sink)
{
    CallReader(source, std::move(ofLogs), sink).read();
}

} // namespace PhoneBackup
