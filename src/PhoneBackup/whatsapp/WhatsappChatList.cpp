#include "PhoneBackup/whatsapp/WhatsappChatList.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/source/PhoneAddress.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

enum SessionType : qint64 { kPrivate = 0, kGroup = 1, kList = 2, kStatus = 3 };

qint64 msOf(const QDateTime &date)
{
    return date.isValid() ? date.toMSecsSinceEpoch() : PhoneTime::kNoMs;
}

} // namespace

struct WhatsappChatList::Session
{
    WhatsappChat chat;
    QStringList numbers; // of everybody in it, for the filter
    QStringList people; // names of everybody in a group, likewise
    bool isStatus = false;
    bool isFound = true; // not only its messages
    qint64 newestMs = PhoneTime::kNoMs; // of its messages, whatever the filter
    std::vector<Entry> entries;
};

WhatsappChatList::WhatsappChatList(Source &source,
                                   WhatsappDatabase &database,
                                   WhatsappNames &names,
                                   const RowsOfMessages &media)
    : m_source(source)
    , m_database(database)
    , m_names(names)
    , m_media(media)
{
}

WhatsappChatList::~WhatsappChatList() = default;

std::vector<WhatsappChat> WhatsappChatList::take()
{
    std::vector<WhatsappChat> result;
    const Table messages(m_database, u"ZWAMESSAGE"_s);
    if (!messages.hasColumn(u"ZCHATSESSION"_s) || !messages.hasColumn(u"Z_PK"_s)) {
        m_database.addLoss(Notice("whatsapp.noMessages"));
        return result;
    }
    for (const QString &column : { u"ZTEXT"_s, u"ZMESSAGEDATE"_s, u"ZISFROMME"_s }) {
        if (!messages.hasColumn(column))
            m_database.addLoss(Notice("whatsapp.noMessageColumn", { column }));
    }
    readSessions();
    readCreators();
    if (!m_source.messageFilter().chats.isEmpty())
        readMembers();
    for (Session &session : m_sessions)
        findPartner(session);
    readMessages();
    for (Session &session : m_sessions) {
        if (!session.isFound) {
            setKind(session, kGroup);
            findPartner(session);
        }
    }
    for (Session &session : m_sessions) {
        if (session.entries.empty() || !isWanted(session))
            continue;
        if (m_names.isOwner(session.chat.jid))
            session.chat.partner.who = WhatsappPerson::Who::Owner;
        if (session.chat.lastDateMs == PhoneTime::kNoMs)
            session.chat.lastDateMs = session.newestMs;
        sortEntries(session.entries, session.chat);
        result.push_back(std::move(session.chat));
        session.entries = {};
    }
    m_sessions.clear();
    return result;
}

void WhatsappChatList::readSessions()
{
    Table table(m_database, u"ZWACHATSESSION"_s);
    if (!table.hasColumn(u"ZCONTACTJID"_s) || !table.hasColumn(u"Z_PK"_s)) {
        m_database.addLoss(Notice("whatsapp.noChats"));
        return;
    }
    const auto [jid, type, removed, archived, hidden, name, lastDate, contact, group] =
        table.columns(u"ZCONTACTJID"_s,
                      u"ZSESSIONTYPE"_s,
                      u"ZREMOVED"_s,
                      u"ZARCHIVED"_s,
                      u"ZHIDDEN"_s,
                      u"ZPARTNERNAME"_s,
                      u"ZLASTMESSAGEDATE"_s,
                      u"ZCONTACTIDENTIFIER"_s,
                      u"ZGROUPINFO"_s);
    m_sessionsAreComplete = table.forEach([&](const Table::Row &row) {
        Session session;
        WhatsappChat &chat = session.chat;
        chat.row = row.id();
        chat.jid = Jid(row.text(jid));
        setKind(session, row.integer(type));
        chat.isRemoved = row.integer(removed) != 0;
        chat.isArchived = row.integer(archived) != 0;
        chat.isHidden = row.integer(hidden) != 0;
        chat.lastDateMs = msOf(PhoneTime::since2001(row.number(lastDate)));
        chat.name = WhatsappNames::cleaned(row.text(name));
        m_names.learn(chat.jid, Jid(row.text(contact)));
        m_bySessionRow.insert(chat.row, int(m_sessions.size()));
        m_byGroupRow.insert(row.integer(group), int(m_sessions.size()));
        m_sessions.push_back(std::move(session));
    });
}

void WhatsappChatList::setKind(Session &session, qint64 storedType)
{
    WhatsappChat &chat = session.chat;
    const Jid::Kind kind = chat.jid.kind();
    const bool isNameless = kind == Jid::Kind::None;
    if (chat.jid.isPerson() || kind == Jid::Kind::App || (isNameless && storedType == kPrivate))
        chat.kind = WhatsappChat::Kind::Person;
    else if (kind == Jid::Kind::List || (isNameless && storedType == kList))
        chat.kind = WhatsappChat::Kind::List;
    else
        chat.kind = WhatsappChat::Kind::Group;
    session.isStatus = kind == Jid::Kind::Status || storedType == kStatus;
}

// The chat that a message belongs to, null when it belongs to none. Where chats could not all be
// read, one is made of what its messages tell: the identifier that they were sent to or came from.
WhatsappChatList::Session *WhatsappChatList::sessionOf(qint64 row, QByteArrayView jid)
{
    int index = m_bySessionRow.value(row, -1);
    if (index < 0 && (m_sessionsAreComplete || row == 0))
        return nullptr;
    if (index < 0) {
        index = int(m_sessions.size());
        m_bySessionRow.insert(row, index);
        m_sessions.emplace_back();
        m_sessions.back().chat.row = row;
        m_sessions.back().isFound = false;
    }
    Session &session = m_sessions[std::size_t(index)];
    if (!session.isFound && !jid.isEmpty() && session.chat.jid.kind() == Jid::Kind::None)
        session.chat.jid = Jid(QString::fromUtf8(jid));
    return &session;
}

void WhatsappChatList::readCreators()
{
    Table table(m_database, u"ZWAGROUPINFO"_s);
    const auto [session, creator, date] =
        table.columns(u"ZCHATSESSION"_s, u"ZCREATORJID"_s, u"ZCREATIONDATE"_s);
    table.forEach([&](const Table::Row &row) {
        int index = m_bySessionRow.value(row.integer(session), -1);
        if (index < 0)
            index = m_byGroupRow.value(row.id(), -1);
        if (index < 0)
            return;
        WhatsappChat &chat = m_sessions[std::size_t(index)].chat;
        chat.creator = Jid(row.text(creator));
        chat.creationDate = PhoneTime::since2001(row.number(date));
    });
    // Older groups have both in their identifier: "<number>-<seconds since 1970>".
    for (Session &old : m_sessions) {
        WhatsappChat &chat = old.chat;
        const QString &id = chat.jid.user();
        if (chat.jid.kind() != Jid::Kind::Group || !id.contains(u'-'))
            continue;
        if (!chat.creator.isPerson())
            chat.creator = Jid(id.section(u'-', 0, 0) + "@s.whatsapp.net"_L1);
        if (!chat.creationDate.isValid())
            chat.creationDate = PhoneTime::sinceUnix(id.section(u'-', 1, 1).toDouble());
    }
}

void WhatsappChatList::readMembers()
{
    Table table(m_database, u"ZWAGROUPMEMBER"_s);
    const auto [chat, id] = table.columns(u"ZCHATSESSION"_s, u"ZMEMBERJID"_s);
    table.forEach([&](const Table::Row &row) {
        const int index = m_bySessionRow.value(row.integer(chat), -1);
        if (index < 0)
            return;
        const WhatsappPerson member = m_names.person(Jid(row.text(id)));
        Session &session = m_sessions[std::size_t(index)];
        session.people.append(member.name);
        if (!member.number.isEmpty())
            session.numbers.append(member.number);
    });
}

void WhatsappChatList::findPartner(Session &session)
{
    WhatsappChat &chat = session.chat;
    if (!chat.isWithPerson())
        return;
    // A number in the place of a name tells nothing that is not known.
    const PhoneAddress number(m_names.number(chat.jid));
    if (PhoneAddress::match(PhoneAddress(chat.name), number) > 0)
        chat.name.clear();
    chat.partner = m_names.person(chat.jid);
    if (chat.partner.name.isEmpty())
        chat.partner.name = chat.name;
    if (!chat.partner.number.isEmpty())
        session.numbers.append(chat.partner.number);
}

bool WhatsappChatList::isWanted(const Session &session) const
{
    const MessageFilter &filter = m_source.messageFilter();
    const WhatsappChat &chat = session.chat;
    const QString fallback = chat.isWithPerson() ? chat.partner.nameOrNumber() : chat.jid.user();
    return !session.isStatus
        && filter.accepts(session.people + QStringList { chat.name, fallback }, session.numbers);
}

void WhatsappChatList::readMessages()
{
    Table table(m_database, u"ZWAMESSAGE"_s);
    const auto [chat, sort, sent] = table.columns(u"ZCHATSESSION"_s, u"ZSORT"_s, u"ZMESSAGEDATE"_s);
    const QString fromMe = u"ifnull(%1, 0)"_s.arg(table.sql(u"ZISFROMME"_s));
    const Table::Column media = table.expression(table.sql(u"ZMEDIAITEM"_s) + u" IS NOT NULL"_s);
    const Table::Column hasStatus = table.expression(
        u"%1 <> 0 AND ifnull(%2, 0) <> 0"_s.arg(fromMe, table.sql(u"ZMESSAGESTATUS"_s)));
    // Read where it is needed only: the row's texts come last, and rows may be long.
    const Table::Column ownJid =
        table.expression(u"CASE WHEN %1 = 0 AND %2 IN (6, 10) THEN %3 END"_s.arg(
            fromMe, table.sql(u"ZMESSAGETYPE"_s), table.sql(u"ZTOJID"_s)));
    const Table::Column chatJid = table.expression(
        m_sessionsAreComplete ? u"NULL"_s
                              : u"CASE WHEN %1 = 0 THEN %2 ELSE %3 END"_s.arg(
                                  fromMe, table.sql(u"ZFROMJID"_s), table.sql(u"ZTOJID"_s)));
    const MessageFilter &filter = m_source.messageFilter();
    QHash<QString, int> ownKeys;
    table.forEach([&](const Table::Row &row) {
        m_keepsStatus = m_keepsStatus || row.integer(hasStatus) != 0;
        const QByteArrayView own = row.bytes(ownJid);
        if (!own.isEmpty()) {
            const Jid jid(QString::fromUtf8(own));
            if (jid.isPerson())
                ++ownKeys[jid.key()];
        }
        Session *session = sessionOf(row.integer(chat), row.bytes(chatJid));
        if (!session)
            return;
        const QDateTime date = PhoneTime::since2001(row.number(sent));
        const qint64 ms = msOf(date);
        session->newestMs = std::max(session->newestMs, ms);
        if (filter.accepts(date)) {
            const bool hasMedia = row.integer(media) != 0 || m_media.first(row.id()) != 0;
            session->entries.push_back({ row.integer(sort), ms, row.id(), hasMedia });
        }
    });
    int most = 0;
    QString ownKey;
    for (auto it = ownKeys.cbegin(); it != ownKeys.cend(); ++it) {
        if (it.value() > most || (it.value() == most && it.key() < ownKey)) {
            most = it.value();
            ownKey = it.key();
        }
    }
    if (!ownKey.isEmpty())
        m_names.addOwner(Jid(ownKey));
}

void WhatsappChatList::sortEntries(std::vector<Entry> &entries, WhatsappChat &chat)
{
    const auto before = [](const Entry &a, const Entry &b) {
        if (a.sort != b.sort)
            return a.sort < b.sort;
        return a.dateMs != b.dateMs ? a.dateMs < b.dateMs : a.row < b.row;
    };
    const auto isSame = [](const Entry &a, const Entry &b) { return a.row == b.row; };
    if (!std::is_sorted(entries.cbegin(), entries.cend(), before))
        std::sort(entries.begin(), entries.end(), before);
    entries.erase(std::unique(entries.begin(), entries.end(), isSame), entries.end());
    chat.messages.reserve(entries.size());
    for (const Entry &entry : entries) {
        chat.messages.push_back(entry.row);
        if (entry.hasMedia)
            chat.withMedia.push_back(entry.row);
    }
}

} // namespace PhoneBackup
