#include "PhoneBackup/calls/CallHistory.h"

#include "PhoneBackup/source/Jid.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/RowDatabase.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/whatsapp/WhatsappCalls.h"
#include "PhoneItems/shared/DurationText.h"
#include "PhoneItems/shared/TableData.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QRegularExpression>
#include <QSet>

#include <map>
#include <tuple>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kCalls = 15;
constexpr int kFirstReleaseWithoutCalls = 13;
constexpr double kLongestCallSeconds = 1000.0 * 3600;

// The table that says who took part in calls of more than two, and its columns.
struct Participants
{
    QString table;
    QString call;
    QString handle;
};

using Direction = WhatsappCall::Direction;

// A call as it becomes a row.
struct Call
{
    Row row;
    QStringList addresses;
    QString storedName;
    Direction direction = Direction::Incoming;
    bool isMissed = false;
    std::optional<double> seconds;
    QString type; // how what it is becomes the cell; empty: as it is
};

// The calls with WhatsApp that the phone's own history may hold, too: those with one known person.
class KnownCalls
{
public:
    void add(const WhatsappCall &call, std::size_t number)
    {
        if (call.numbers.size() == 1 && call.names.size() <= 1 && call.date.isValid()) {
            const PhoneAddress address(call.numbers.first());
            m_calls.insert({ { address.bucket(), call.direction, call.date.toSecsSinceEpoch() },
                             { address, number } });
        }
    }

    // Takes out the call that this one is.
    std::optional<std::size_t>
    take(const QString &number, Direction direction, const QDateTime &date)
    {
        constexpr qint64 secondsApart = 60;
        const PhoneAddress address(number);
        if (address.kind() == PhoneAddress::Kind::None || !date.isValid())
            return std::nullopt;
        const QString bucket = address.bucket();
        const qint64 seconds = date.toSecsSinceEpoch();
        const auto end = m_calls.upper_bound({ bucket, direction, seconds + secondsApart });
        for (auto call = m_calls.lower_bound({ bucket, direction, seconds - secondsApart });
             call != end;
             ++call) {
            if (PhoneAddress::match(call->second.first, address) > 0) {
                const std::size_t found = call->second.second;
                m_calls.erase(call);
                return found;
            }
        }
        return std::nullopt;
    }

private:
    using Key = std::tuple<QString, Direction, qint64>; // who, which way, and when
    std::multimap<Key, std::pair<PhoneAddress, std::size_t>> m_calls;
};

QString durationText(std::optional<double> seconds)
{
    if (!seconds || !(*seconds >= 0 && *seconds <= kLongestCallSeconds)) // not a number fails both
        return {};
    return PhoneItems::durationText(qint64(*seconds));
}

class CallHistory
{
public:
    explicit CallHistory(Source &source)
        : m_source(source)
        , m_calls(std::make_unique<TableData>(
              kCalls,
              QStringList { tr("Name"), tr("Number"), tr("Type"), tr("Date"), tr("Duration") }))
    {
    }

    void read(DataSets &sets)
    {
        m_whatsapp = readWhatsappCalls(m_source, kCalls);
        for (std::size_t i = 0; i < m_whatsapp.size(); ++i)
            m_known.add(m_whatsapp[i], i);
        // The small store holds calls from before the phone was first unlocked; most come to the
        // other one later.
        const bool hasEarly = readStore(u"CallHistoryTemp.storedata"_s);
        const bool hasStore = readStore(u"CallHistory.storedata"_s) || hasEarly;
        // Where there is a store, older databases are what an update left behind.
        bool hasOld = false;
        if (m_calls->recoverCount() == 0 && !m_hasKnown)
            hasOld = readOld("WirelessDomain") || readOld("HomeDomain");
        if (!hasStore && !hasOld)
            m_source.addAbsence(kCalls,
                                kFirstReleaseWithoutCalls,
                                tr("Phones with iOS 13 or later put calls into encrypted backups "
                                   "only, and this one is not encrypted."));
        for (const WhatsappCall &call : m_whatsapp)
            add(call);
        m_calls->sortNewestFirst();
        sets[kCalls] = std::move(m_calls);
    }

private:
    std::optional<RowDatabase> open(QByteArrayView domain, const QString &path)
    {
        return RowDatabase::open(m_source, kCalls, domain, path, tr("Calls may be missing."));
    }

    // Whether the backup has such a store.
    bool readStore(const QString &name)
    {
        const QString path = u"Library/CallHistoryDB/"_s + name;
        std::optional<RowDatabase> database = open("HomeDomain", path);
        if (!database)
            return m_source.files().findFile("HomeDomain", path) != FileIndex::kNone;
        const QString table = u"ZCALLRECORD"_s;
        if (!database->hasTable(table)) {
            database->addLoss(tr("It has no table of calls that can be read."));
            return true;
        }
        const QHash<qint64, QStringList> groups = participants(*database);
        QStringList wanted;
        for (const QString &column : { u"Z_PK"_s,
                                       u"ZADDRESS"_s,
                                       u"ZNAME"_s,
                                       u"ZDATE"_s,
                                       u"ZDURATION"_s,
                                       u"ZORIGINATED"_s,
                                       u"ZANSWERED"_s,
                                       u"ZUNIQUE_ID"_s,
                                       u"ZSERVICE_PROVIDER"_s })
            wanted.append(database->column(table, column));
        QSet<qint64> known;
        const qsizetype seenBefore = m_seen.size();
        database->query(wanted.join(u','), table, [&](const Statement &row) {
            const qint64 key = row.integer(0);
            const QByteArray id = row.bytes(7).toByteArray();
            if (known.contains(key) || (seenBefore > 0 && m_seen.contains(id)))
                return;
            known.insert(key);
            if (!id.isEmpty() && path.contains("Temp"_L1))
                m_seen.insert(id);
            Call call;
            call.row.id = key;
            call.row.date = PhoneTime::ofThePast(row.number(3));
            QString address = row.text(1).trimmed();
            const bool isWhatsapp = row.text(8).startsWith("net.whatsapp."_L1, Qt::CaseInsensitive);
            if (isWhatsapp && Jid(address).isPerson())
                address = Jid(address).number();
            call.addresses = address.isEmpty() ? groups.value(key) : QStringList { address };
            call.storedName = row.text(2).trimmed();
            call.direction = row.integer(5) != 0 ? Direction::Outgoing : Direction::Incoming;
            call.isMissed = row.number(6).has_value() && row.number(6) == 0;
            call.seconds = row.number(4);
            if (isWhatsapp) {
                call.type = typeOfWhatsapp(false);
                if (isKnown(call))
                    return;
            }
            add(call);
        });
        return true;
    }

    // Addresses of the calls that have none of their own.
    QHash<qint64, QStringList> participants(RowDatabase &database)
    {
        QHash<qint64, QStringList> of;
        const Participants link = participantsTable(database);
        if (link.table.isEmpty() || !database.hasColumn(u"ZHANDLE"_s, u"ZVALUE"_s))
            return of;
        const QString address = database.column(u"ZCALLRECORD"_s, u"ZADDRESS"_s);
        database.query(u"Z_PK"_s,
                       u"ZCALLRECORD WHERE ifnull(length(%1), 0) = 0"_s.arg(address),
                       [&](const Statement &row) { of.insert(row.integer(0), {}); });
        if (of.isEmpty())
            return of;
        QHash<qint64, QString> handles;
        database.query(u"Z_PK, ZVALUE"_s, u"ZHANDLE"_s, [&](const Statement &row) {
            handles.insert(row.integer(0), row.text(1).trimmed());
        });
        database.query(link.call + u", "_s + link.handle, link.table, [&](const Statement &row) {
            const auto call = of.find(row.integer(0));
            const QString handle = handles.value(row.integer(1));
            if (call != of.end() && !handle.isEmpty() && !call->contains(handle))
                call->append(handle);
        });
        return of;
    }

    // Its name and those of its columns hold numbers that change with the phone's release.
    static Participants participantsTable(RowDatabase &database)
    {
        static const QRegularExpression tableName(u"^Z_\\d+REMOTEPARTICIPANTHANDLES$"_s);
        static const QRegularExpression callName(u"^Z_\\d+REMOTEPARTICIPANTCALLS$"_s);
        QStringList tables;
        database.query(u"name"_s,
                       u"sqlite_master WHERE type = 'table'"_s,
                       [&](const Statement &row) { tables.append(row.text(0)); });
        for (const QString &table : tables) {
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

    // Whether the backup has such a database.
    bool readOld(QByteArrayView domain)
    {
        const QString path = u"Library/CallHistory/call_history.db"_s;
        std::optional<RowDatabase> database = open(domain, path);
        if (!database)
            return m_source.files().findFile(domain, path) != FileIndex::kNone;
        const QString table = u"call"_s;
        if (!database->hasTable(table)) {
            database->addLoss(tr("It has no table of calls that can be read."));
            return true;
        }
        QStringList wanted;
        for (const QString &column :
             { u"address"_s, u"name"_s, u"date"_s, u"duration"_s, u"flags"_s })
            wanted.append(database->column(table, column));
        QSet<qint64> known;
        database->query(u"ROWID, "_s + wanted.join(u','), table, [&](const Statement &row) {
            Call call;
            call.row.id = row.integer(0);
            if (known.contains(call.row.id))
                return;
            known.insert(call.row.id);
            call.row.date = PhoneTime::sinceUnix(row.number(3));
            const QString address = row.text(1).trimmed();
            if (!address.isEmpty())
                call.addresses.append(address);
            call.storedName = row.text(2).trimmed();
            call.isMissed = row.number(4).value_or(0) == 0;
            if ((row.integer(5) & 1) != 0)
                call.direction = Direction::Outgoing;
            call.seconds = row.number(4);
            add(call);
        });
        return true;
    }

    // Whether WhatsApp's own log has it; what only this one tells is taken over.
    bool isKnown(const Call &call)
    {
        const auto found = call.addresses.size() == 1
            ? m_known.take(call.addresses.first(), call.direction, call.row.date)
            : std::nullopt;
        if (!found)
            return false;
        m_hasKnown = true;
        WhatsappCall &known = m_whatsapp[*found];
        if (known.names.isEmpty() && !call.storedName.isEmpty())
            known.names.append(call.storedName);
        if (call.seconds.value_or(0) > known.seconds.value_or(0))
            known.seconds = call.seconds;
        return true;
    }

    static QString typeOfWhatsapp(bool isVideo)
    {
        return isVideo ? tr("%1 (WhatsApp video)") : tr("%1 (WhatsApp)");
    }

    void add(const WhatsappCall &whatsapp)
    {
        Call call;
        call.row.id = whatsapp.row;
        call.row.date = whatsapp.date;
        call.addresses = whatsapp.numbers;
        QStringList names = whatsapp.names;
        for (QString &name : names) {
            if (name.isEmpty())
                name = tr("Unknown");
        }
        call.storedName = names.join(u", "_s);
        if (!whatsapp.group.isEmpty())
            call.storedName = call.storedName.isEmpty()
                ? whatsapp.group
                : u"%1 (%2)"_s.arg(whatsapp.group, call.storedName);
        call.direction = whatsapp.direction;
        call.isMissed = whatsapp.isMissed;
        call.seconds = whatsapp.seconds;
        call.type = typeOfWhatsapp(whatsapp.isVideo);
        addRow(call, call.storedName);
    }

    void add(Call &call)
    {
        const QString name = nameOf(call.addresses);
        addRow(call, name.isEmpty() ? call.storedName : name);
    }

    void addRow(Call &call, const QString &name)
    {
        const QString type = call.direction == Direction::Outgoing ? tr("Outgoing")
            : call.direction == Direction::Unknown                 ? tr("Call")
            : call.isMissed                                        ? tr("Missed")
                                                                   : tr("Incoming");
        call.row.cells =
            QStringList { name.isEmpty() && call.addresses.isEmpty() ? tr("Unknown") : name,
                          call.addresses.join(u", "_s),
                          call.type.isEmpty() ? type : call.type.arg(type),
                          CCommonUtils::datetimeToMinute(call.row.date, true),
                          durationText(call.seconds) };
        m_calls->add(call.row);
    }

    // Empty when none of them is in the address book.
    QString nameOf(const QStringList &addresses)
    {
        QStringList names;
        bool anyKnown = false;
        for (const QString &address : addresses) {
            const QString name = m_source.addressBook().name(address);
            anyKnown |= !name.isEmpty();
            names.append(name.isEmpty() ? address : name);
        }
        return anyKnown ? names.join(u", "_s) : QString();
    }

    Source &m_source;
    std::unique_ptr<TableData> m_calls;
    std::vector<WhatsappCall> m_whatsapp;
    KnownCalls m_known; // of m_whatsapp
    bool m_hasKnown = false; // the phone's history has some of them
    QSet<QByteArray> m_seen; // identifiers of the calls in the small store
};

} // namespace

void readCallHistory(Source &source, DataSets &sets)
{
    CallHistory(source).read(sets);
}

} // namespace PhoneBackup
