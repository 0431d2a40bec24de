#include "model/CallHistory.h"

#include "model/PhoneTime.h"
#include "model/RowDatabase.h"
#include "model/Source.h"
#include "model/TableData.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QRegularExpression>
#include <QSet>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

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

QString durationText(std::optional<double> seconds)
{
    if (!seconds || !(*seconds >= 0 && *seconds <= kLongestCallSeconds)) // not a number fails both
        return {};
    const auto whole = qint64(*seconds);
    const QString rest = u"%1"_s.arg(whole % 60, 2, 10, QChar(u'0'));
    const qint64 minutes = whole / 60;
    return minutes < 60
        ? u"%1:%2"_s.arg(minutes).arg(rest)
        : u"%1:%2:%3"_s.arg(minutes / 60).arg(minutes % 60, 2, 10, QChar(u'0')).arg(rest);
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
        // The small store holds calls from before the phone was first unlocked; most come to the
        // other one later.
        const bool hasEarly = readStore(u"CallHistoryTemp.storedata"_s);
        const bool hasStore = readStore(u"CallHistory.storedata"_s) || hasEarly;
        // Where there is a store, older databases are what an update left behind.
        bool hasOld = false;
        if (m_calls->recoverCount() == 0)
            hasOld = readOld("WirelessDomain") || readOld("HomeDomain");
        if (!hasStore && !hasOld)
            m_source.addAbsence(kCalls,
                                kFirstReleaseWithoutCalls,
                                tr("Phones with iOS 13 or later put calls into encrypted backups "
                                   "only, and this one is not encrypted."));
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
                                       u"ZUNIQUE_ID"_s })
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
            const QString address = row.text(1).trimmed();
            const QStringList addresses =
                address.isEmpty() ? groups.value(key) : QStringList { address };
            Row call;
            call.id = key;
            call.date = PhoneTime::ofThePast(row.number(3));
            const bool isMissed = row.number(6).has_value() && row.number(6) == 0;
            add(call,
                addresses,
                row.text(2).trimmed(),
                row.integer(5) != 0,
                isMissed,
                row.number(4));
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
            Row call;
            call.id = row.integer(0);
            if (known.contains(call.id))
                return;
            known.insert(call.id);
            call.date = PhoneTime::sinceUnix(row.number(3));
            const QString address = row.text(1).trimmed();
            const bool isMissed = row.number(4).value_or(0) == 0;
            add(call,
                address.isEmpty() ? QStringList() : QStringList { address },
                row.text(2).trimmed(),
                (row.integer(5) & 1) != 0,
                isMissed,
                row.number(4));
        });
        return true;
    }

    void add(Row &call,
             const QStringList &addresses,
             const QString &storedName,
             bool isOutgoing,
             bool isMissed,
             std::optional<double> seconds)
    {
        QString name = nameOf(addresses);
        if (name.isEmpty())
            name = storedName;
        if (name.isEmpty() && addresses.isEmpty())
            name = tr("Unknown");
        call.cells = QStringList { name,
                                   addresses.join(u", "_s),
                                   isOutgoing     ? tr("Outgoing")
                                       : isMissed ? tr("Missed")
                                                  : tr("Incoming"),
                                   CCommonUtils::datetimeToMinute(call.date, true),
                                   durationText(seconds) };
        m_calls->add(call);
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
    QSet<QByteArray> m_seen; // identifiers of the calls in the small store
};

} // namespace

void readCallHistory(Source &source, DataSets &sets)
{
    CallHistory(source).read(sets);
}

} // namespace PhoneBackup
