#include "PhoneBackup/whatsapp/WhatsappCalls.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/source/Jid.h"
#include "PhoneBackup/source/Table.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"

#include <QRegularExpression>
#include <QSet>

#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kConnected = 0; // among the outcomes of calls
const QString kCalls = u"ZWACDCALLEVENT"_s;
const QString kPeople = u"ZWACDCALLEVENTPARTICIPANT"_s;

// The column that \a pattern matches, "NULL" when there is none. In its name is the number of the
// entity that it leads to, which differs between versions of the app.
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
    Call call;
    qint64 listed = 0;
    qint64 outcome = kConnected;
    Jid caller;
    Jid group;
};

class CallLog
{
public:
    CallLog(Source &source,
            const WhatsappHome &home,
            std::unique_ptr<WhatsappDatabase> database,
            int dataType)
        : m_source(source)
        , m_home(home)
        , m_database(std::move(database))
        , m_dataType(dataType)
    {
    }

    void read(std::vector<Call> &calls)
    {
        readCalls();
        if (m_calls.empty())
            return;
        readList();
        readPeople();
        // Only now: the names are in databases that may be large.
        const auto chats = WhatsappDatabase::open(m_source,
                                                  m_home,
                                                  u"ChatStorage.sqlite"_s,
                                                  Notice("whatsapp.callNamesMayBeMissing"),
                                                  m_dataType);
        m_names = std::make_unique<WhatsappNames>(m_source, m_home, chats.get(), m_dataType);
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
        Table table(*m_database, kCalls);
        if (!table.hasColumn(u"Z_PK"_s)) {
            m_database->addLoss(Notice("whatsapp.noCalls"));
            return;
        }
        const auto [date, duration, outcome, caller, group] =
            table.columns(u"ZDATE"_s,
                          u"ZDURATION"_s,
                          u"ZOUTCOME"_s,
                          u"ZGROUPCALLCREATORUSERJIDSTRING"_s,
                          u"ZGROUPJIDSTRING"_s);
        const Table::Column listed =
            table.expression(numberedColumn(*m_database, kCalls, u"^Z\\d+CALLEVENTS$"_s));
        table.forEach([&](const Table::Row &row) {
            StoredCall stored;
            stored.call.row = row.id();
            stored.call.date = PhoneTime::since2001(row.number(date));
            stored.call.seconds = row.number(duration);
            stored.outcome = row.integer(outcome);
            stored.listed = row.integer(listed);
            stored.caller = Jid(row.text(caller));
            stored.group = Jid(row.text(group));
            m_calls.push_back(std::move(stored));
        });
    }

    void readList()
    {
        Table table(*m_database, u"ZWAAGGREGATECALLEVENT"_s);
        const auto [incoming, missed, video] =
            table.columns(u"ZINCOMING"_s, u"ZMISSED"_s, u"ZVIDEO"_s);
        table.forEach([&](const Table::Row &row) {
            m_list.insert(row.id(),
                          { row.integer(incoming) != 0,
                            row.integer(missed) != 0,
                            row.integer(video) != 0,
                            {} });
        });
    }

    void readPeople()
    {
        Table table(*m_database, kPeople);
        const Table::Column id = table.column(u"ZJIDSTRING"_s);
        const Table::Column listed =
            table.expression(numberedColumn(*m_database, kPeople, u"^Z\\d+PARTICIPANTS$"_s));
        table.forEach([&](const Table::Row &row) {
            const auto found = m_list.find(row.integer(listed));
            const Jid jid(row.text(id));
            if (found != m_list.end() && jid.isPerson())
                found->people.append(jid);
        });
    }

    void readGroups(WhatsappDatabase &chats)
    {
        Table table(chats, u"ZWACHATSESSION"_s);
        const auto [id, name] = table.columns(u"ZCONTACTJID"_s, u"ZPARTNERNAME"_s);
        table.forEach([&](const Table::Row &row) {
            const Jid jid(row.text(id));
            if (jid.kind() == Jid::Kind::Group)
                m_groups.insert(jid.key(), WhatsappNames::cleaned(row.text(name)));
        });
    }

    // Whoever rang when it was not somebody else.
    void findOwner()
    {
        for (const StoredCall &stored : m_calls) {
            const auto listed = m_list.constFind(stored.listed);
            if (listed != m_list.constEnd() && !listed->isIncoming && stored.caller.isPerson())
                m_names->addOwner(stored.caller);
        }
    }

    void complete(StoredCall &stored) const
    {
        using Direction = Call::Direction;
        Call &call = stored.call;
        const auto listed = m_list.constFind(stored.listed);
        const bool isListed = listed != m_list.constEnd();
        if (isListed)
            call.direction = listed->isIncoming ? Direction::Incoming : Direction::Outgoing;
        else if (stored.caller.isPerson())
            call.direction =
                m_names->isOwner(stored.caller) ? Direction::Outgoing : Direction::Incoming;
        call.isVideo = isListed && listed->isVideo;
        call.isMissed = call.direction == Direction::Incoming
            && (stored.outcome != kConnected || (isListed && listed->isMissed));
        call.group = m_groups.value(stored.group.key());

        QList<Jid> others = isListed ? listed->people : QList<Jid>();
        others.removeIf([this](const Jid &jid) { return m_names->isOwner(jid); });
        if (others.isEmpty() && call.direction == Direction::Incoming && stored.caller.isPerson())
            others.append(stored.caller);
        setPeople(call, others);
    }

    void setPeople(Call &call, const QList<Jid> &others) const
    {
        QSet<QString> known;
        bool anyName = false;
        for (const Jid &jid : others) {
            if (known.contains(m_names->key(jid)))
                continue;
            known.insert(m_names->key(jid));
            const WhatsappPerson person = m_names->person(jid);
            anyName = anyName || !person.name.isEmpty() || person.number.isEmpty();
            call.names.append(person.nameOrNumber());
            if (!person.number.isEmpty())
                call.addresses.append(person.number);
        }
        if (!anyName)
            call.names.clear();
    }

    Source &m_source;
    const WhatsappHome m_home;
    std::unique_ptr<WhatsappDatabase> m_database;
    int m_dataType;
    std::unique_ptr<WhatsappNames> m_names; // once there are calls
    std::vector<StoredCall> m_calls;
    QHash<qint64, ListedCall> m_list;
    QHash<QString, QString> m_groups; // names by Jid::key()
};

} // namespace

std::vector<Call> readWhatsappCalls(Source &source, int dataType)
{
    std::vector<Call> calls;
    const std::pair<WhatsappHome, QString> homes[] = {
        { WhatsappHome::app(), u"net.whatsapp.WhatsApp"_s },
        { WhatsappHome::business(), u"net.whatsapp.WhatsAppSMB"_s },
    };
    for (const auto &[home, app] : homes) {
        auto database = WhatsappDatabase::open(
            source, home, u"CallHistory.sqlite"_s, Notice("whatsapp.callsMayBeMissing"), dataType);
        const std::size_t before = calls.size();
        if (database)
            CallLog(source, home, std::move(database), dataType).read(calls);
        for (std::size_t i = before; i < calls.size(); ++i) {
            calls[i].app = app;
            calls[i].kind = Call::Kind::App;
            calls[i].isOfLog = true;
        }
    }
    return calls;
}

} // namespace PhoneBackup
