#include "PhoneBackup/whatsapp/WhatsappCalls.h"

#include "PhoneBackup/source/Jid.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"
#include "platform/Translation_p.h"

#include <QRegularExpression>
#include <QSet>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kConnected = 0; // among the outcomes of calls

// The column that \a pattern matches, "NULL" when there is none: it has a number in its name.
QString numberedColumn(const RowDatabase &database, const QString &table, const QString &pattern)
{
    const QRegularExpression name(pattern, QRegularExpression::CaseInsensitiveOption);
    for (const QString &column : database.columns(table)) {
        if (name.match(column).hasMatch())
            return column;
    }
    return u"NULL"_s;
}

// A line of the app's list, which several calls may share.
struct ListedCall
{
    bool isIncoming = false;
    bool isMissed = false;
    bool isVideo = false;
    QList<Jid> people;
};

struct StoredCall
{
    WhatsappCall call;
    qint64 listed = 0;
    qint64 outcome = kConnected;
    Jid caller;
    Jid group;
};

class CallLog
{
public:
    CallLog(Source &source,
            const WhatsappPlace &place,
            std::unique_ptr<WhatsappDatabase> database,
            int dataType)
        : m_source(source)
        , m_place(place)
        , m_database(std::move(database))
        , m_dataType(dataType)
    {
    }

    void read(std::vector<WhatsappCall> &calls)
    {
        readCalls();
        if (m_calls.empty())
            return;
        readList();
        readPeople();
        // Only now: the names are in databases that may be large.
        const auto chats =
            WhatsappDatabase::open(m_source,
                                   m_place,
                                   u"ChatStorage.sqlite"_s,
                                   tr("Names of people and groups in calls may be missing."),
                                   m_dataType);
        m_names.emplace(m_source, m_place, chats.get(), m_dataType);
        if (chats)
            readGroups(*chats);
        findOwner();
        for (StoredCall &stored : m_calls) {
            complete(stored);
            calls.push_back(std::move(stored.call));
        }
    }

private:
    void readCalls()
    {
        const QString table = u"ZWACDCALLEVENT"_s;
        if (!m_database->hasColumn(table, u"Z_PK"_s)) {
            m_database->addLoss(tr("It has no table of calls that can be read."));
            return;
        }
        const QStringList wanted { u"Z_PK"_s,
                                   m_database->column(table, u"ZDATE"_s),
                                   m_database->column(table, u"ZDURATION"_s),
                                   m_database->column(table, u"ZOUTCOME"_s),
                                   numberedColumn(*m_database, table, u"^Z\\d+CALLEVENTS$"_s),
                                   m_database->column(table, u"ZGROUPCALLCREATORUSERJIDSTRING"_s),
                                   m_database->column(table, u"ZGROUPJIDSTRING"_s) };
        QSet<qint64> known;
        m_database->query(wanted.join(u", "_s), table, [&](const Statement &row) {
            StoredCall stored;
            stored.call.row = row.integer(0);
            if (known.contains(stored.call.row))
                return;
            known.insert(stored.call.row);
            stored.call.date = PhoneTime::since2001(row.number(1));
            stored.call.seconds = row.number(2);
            stored.outcome = row.integer(3);
            stored.listed = row.integer(4);
            stored.caller = Jid(row.text(5));
            stored.group = Jid(row.text(6));
            m_calls.push_back(std::move(stored));
        });
    }

    void readList()
    {
        const QString table = u"ZWAAGGREGATECALLEVENT"_s;
        if (!m_database->hasColumn(table, u"Z_PK"_s))
            return;
        const QStringList wanted { u"Z_PK"_s,
                                   m_database->column(table, u"ZINCOMING"_s),
                                   m_database->column(table, u"ZMISSED"_s),
                                   m_database->column(table, u"ZVIDEO"_s) };
        m_database->query(wanted.join(u", "_s), table, [this](const Statement &row) {
            m_list.insert(row.integer(0),
                          { row.integer(1) != 0, row.integer(2) != 0, row.integer(3) != 0, {} });
        });
    }

    void readPeople()
    {
        const QString table = u"ZWACDCALLEVENTPARTICIPANT"_s;
        const QString listed = numberedColumn(*m_database, table, u"^Z\\d+PARTICIPANTS$"_s);
        if (!m_database->hasColumn(table, u"ZJIDSTRING"_s))
            return;
        m_database->query(listed + u", ZJIDSTRING"_s, table, [this](const Statement &row) {
            const auto found = m_list.find(row.integer(0));
            const Jid jid(row.text(1));
            if (found != m_list.end() && jid.isPerson())
                found->people.append(jid);
        });
    }

    void readGroups(WhatsappDatabase &chats)
    {
        const QString table = u"ZWACHATSESSION"_s;
        if (!chats.hasColumn(table, u"ZCONTACTJID"_s) || !chats.hasColumn(table, u"ZPARTNERNAME"_s))
            return;
        chats.query(u"ZCONTACTJID, ZPARTNERNAME"_s, table, [this](const Statement &row) {
            const Jid jid(row.text(0));
            if (jid.kind() == Jid::Kind::Group)
                m_groups.insert(jid.key(), WhatsappNames::cleaned(row.text(1)));
        });
    }

    // Equal for the same person, whichever identifier names them.
    QString person(const Jid &jid) const
    {
        const QString number = m_names->number(jid);
        return number.isEmpty() ? jid.key() : number;
    }

    // Whoever rang when it was not somebody else.
    void findOwner()
    {
        for (const StoredCall &stored : m_calls) {
            const auto listed = m_list.constFind(stored.listed);
            if (listed != m_list.constEnd() && !listed->isIncoming && stored.caller.isPerson())
                m_owner.insert(person(stored.caller));
        }
    }

    bool isOwner(const Jid &jid) const { return m_owner.contains(person(jid)); }

    void complete(StoredCall &stored) const
    {
        using Direction = WhatsappCall::Direction;
        WhatsappCall &call = stored.call;
        const auto listed = m_list.constFind(stored.listed);
        const bool isListed = listed != m_list.constEnd();
        if (isListed)
            call.direction = listed->isIncoming ? Direction::Incoming : Direction::Outgoing;
        else if (stored.caller.isPerson())
            call.direction = isOwner(stored.caller) ? Direction::Outgoing : Direction::Incoming;
        call.isVideo = isListed && listed->isVideo;
        call.isMissed = call.direction == Direction::Incoming
            && (stored.outcome != kConnected || (isListed && listed->isMissed));
        call.group = m_groups.value(stored.group.key());

        QList<Jid> others = isListed ? listed->people : QList<Jid>();
        others.removeIf([this](const Jid &jid) { return isOwner(jid); });
        if (others.isEmpty() && call.direction == Direction::Incoming && stored.caller.isPerson())
            others.append(stored.caller);
        setPeople(call, others);
    }

    void setPeople(WhatsappCall &call, const QList<Jid> &others) const
    {
        QSet<QString> known;
        bool anyName = false;
        for (const Jid &jid : others) {
            if (known.contains(person(jid)))
                continue;
            known.insert(person(jid));
            const QString number = m_names->number(jid);
            anyName = anyName || !m_names->name(jid).isEmpty() || number.isEmpty();
            call.names.append(m_names->nameOrNumber(jid));
            if (!number.isEmpty())
                call.numbers.append(number);
        }
        if (!anyName)
            call.names.clear();
    }

    Source &m_source;
    const WhatsappPlace m_place;
    std::unique_ptr<WhatsappDatabase> m_database;
    int m_dataType;
    std::optional<WhatsappNames> m_names;
    std::vector<StoredCall> m_calls;
    QHash<qint64, ListedCall> m_list;
    QHash<QString, QString> m_groups; // names by Jid::key()
    QSet<QString> m_owner; // as person() has them
};

} // namespace

std::vector<WhatsappCall> readWhatsappCalls(Source &source, int dataType)
{
    std::vector<WhatsappCall> calls;
    for (const WhatsappPlace &place : { WhatsappPlace::app(), WhatsappPlace::business() }) {
        auto database = WhatsappDatabase::open(
            source, place, u"CallHistory.sqlite"_s, tr("Calls may be missing."), dataType);
        if (database)
            CallLog(source, place, std::move(database), dataType).read(calls);
    }
    return calls;
}

} // namespace PhoneBackup
