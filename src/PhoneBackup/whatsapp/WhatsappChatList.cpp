#include "PhoneBackup/whatsapp/WhatsappChatList.h"

#include "PhoneBackup/source/PhoneAddress.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"
#include "platform/Translation_p.h"

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

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
    QString partnerName;
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
    const auto has = [this](const QString &table, const QString &column) {
        return m_database.hasColumn(table, column);
    };
    if (!has(u"ZWAMESSAGE"_s, u"ZCHATSESSION"_s) || !has(u"ZWAMESSAGE"_s, u"Z_PK"_s)) {
        m_database.addLoss(tr("It has no table of messages that can be read."));
        return result;
    }
    for (const QString &column : { u"ZTEXT"_s, u"ZMESSAGEDATE"_s, u"ZISFROMME"_s }) {
        if (!has(u"ZWAMESSAGE"_s, column))
            m_database.addLoss(tr("Its messages have no column %1.").arg(column));
    }
    readSessions();
    readCreators();
    if (!m_source.messageFilter().chats.isEmpty())
        readMembers();
    for (Session &session : m_sessions)
        name(session);
    readMessages();
    for (Session &session : m_sessions) {
        if (!session.isFound) {
            setKind(session, kGroup);
            name(session);
        }
    }
    for (Session &session : m_sessions) {
        if (session.entries.empty() || !isWanted(session))
            continue;
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
    const QString table = u"ZWACHATSESSION"_s;
    if (!m_database.hasColumn(table, u"ZCONTACTJID"_s) || !m_database.hasColumn(table, u"Z_PK"_s)) {
        m_database.addLoss(tr("It has no table of chats that can be read."));
        return;
    }
    QStringList wanted;
    for (const QString &column : { u"Z_PK"_s,
                                   u"ZCONTACTJID"_s,
                                   u"ZSESSIONTYPE"_s,
                                   u"ZREMOVED"_s,
                                   u"ZPARTNERNAME"_s,
                                   u"ZLASTMESSAGEDATE"_s,
                                   u"ZCONTACTIDENTIFIER"_s,
                                   u"ZGROUPINFO"_s })
        wanted.append(m_database.column(table, column));
    m_sessionsAreComplete =
        m_database.query(wanted.join(u", "_s), table, [this](const Statement &row) {
            Session session;
            WhatsappChat &chat = session.chat;
            chat.row = row.integer(0);
            if (m_bySessionRow.contains(chat.row))
                return;
            chat.jid = Jid(row.text(1));
            setKind(session, row.integer(2));
            chat.isRemoved = row.integer(3) != 0;
            chat.lastDateMs = msOf(PhoneTime::since2001(row.number(5)));
            session.partnerName = WhatsappNames::cleaned(row.text(4));
            m_names.learn(chat.jid, Jid(row.text(6)));
            m_bySessionRow.insert(chat.row, int(m_sessions.size()));
            m_byGroupRow.insert(row.integer(7), int(m_sessions.size()));
            m_sessions.push_back(std::move(session));
        });
}

void WhatsappChatList::setKind(Session &session, qint64 storedType)
{
    WhatsappChat &chat = session.chat;
    const Jid::Kind kind = chat.jid.kind();
    const bool isNameless = kind == Jid::Kind::None;
    chat.isPrivate =
        chat.jid.isPerson() || kind == Jid::Kind::App || (isNameless && storedType == kPrivate);
    chat.isList = kind == Jid::Kind::List || (isNameless && storedType == kList);
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
    const QString table = u"ZWAGROUPINFO"_s;
    const auto column = [&](const QString &name) { return m_database.column(table, name); };
    if (m_database.hasColumn(table, u"Z_PK"_s)) {
        const QStringList wanted { u"Z_PK"_s,
                                   column(u"ZCHATSESSION"_s),
                                   column(u"ZCREATORJID"_s),
                                   column(u"ZCREATIONDATE"_s) };
        m_database.query(wanted.join(u", "_s), table, [this](const Statement &row) {
            int index = m_bySessionRow.value(row.integer(1), -1);
            if (index < 0)
                index = m_byGroupRow.value(row.integer(0), -1);
            if (index < 0)
                return;
            WhatsappChat &chat = m_sessions[std::size_t(index)].chat;
            chat.creator = Jid(row.text(2));
            chat.creationDate = PhoneTime::since2001(row.number(3));
        });
    }
    // Older groups have both in their identifier: "<number>-<seconds since 1970>".
    for (Session &session : m_sessions) {
        WhatsappChat &chat = session.chat;
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
    const QString table = u"ZWAGROUPMEMBER"_s;
    if (!m_database.hasColumn(table, u"ZCHATSESSION"_s)
        || !m_database.hasColumn(table, u"ZMEMBERJID"_s))
        return;
    m_database.query(u"ZCHATSESSION, ZMEMBERJID"_s, table, [this](const Statement &row) {
        const int index = m_bySessionRow.value(row.integer(0), -1);
        if (index < 0)
            return;
        const Jid member(row.text(1));
        Session &session = m_sessions[std::size_t(index)];
        session.people.append(m_names.name(member));
        const QString number = m_names.number(member);
        if (!number.isEmpty())
            session.numbers.append(number);
    });
}

void WhatsappChatList::name(Session &session)
{
    WhatsappChat &chat = session.chat;
    chat.name = session.partnerName;
    if (!chat.isPrivate) {
        if (chat.name.isEmpty())
            chat.name = chat.jid.user().isEmpty() ? tr("Unknown") : chat.jid.user();
        return;
    }
    chat.number = m_names.number(chat.jid);
    // A number in the place of a name tells nothing that is not known.
    const bool isNumber =
        PhoneAddress::match(PhoneAddress(chat.name), PhoneAddress(chat.number)) > 0;
    chat.contact = m_names.nameOrNumber(chat.jid, isNumber ? QString() : chat.name);
    if (chat.name.isEmpty() || isNumber)
        chat.name = chat.contact;
    if (!chat.number.isEmpty())
        session.numbers.append(chat.number);
}

bool WhatsappChatList::isWanted(const Session &session) const
{
    const MessageFilter &filter = m_source.messageFilter();
    return !session.isStatus
        && filter.accepts(session.people + QStringList { session.chat.name, session.chat.contact },
                          session.numbers);
}

void WhatsappChatList::readMessages()
{
    const QString table = u"ZWAMESSAGE"_s;
    const auto column = [&](const QString &name) { return m_database.column(table, name); };
    const QString fromMe = u"ifnull(%1, 0)"_s.arg(column(u"ZISFROMME"_s));
    // Read where it is needed only: the row's texts come last, and rows may be long.
    const QString ownJid = u"CASE WHEN %1 = 0 AND %2 IN (6, 10) THEN %3 END"_s.arg(
        fromMe, column(u"ZMESSAGETYPE"_s), column(u"ZTOJID"_s));
    const QString chatJid = u"CASE WHEN %1 = 0 THEN %2 ELSE %3 END"_s.arg(
        fromMe, column(u"ZFROMJID"_s), column(u"ZTOJID"_s));
    const QString what =
        QStringList { u"Z_PK"_s,
                      u"ZCHATSESSION"_s,
                      column(u"ZSORT"_s),
                      column(u"ZMESSAGEDATE"_s),
                      column(u"ZMEDIAITEM"_s) + u" IS NOT NULL"_s,
                      u"%1 <> 0 AND ifnull(%2, 0) <> 0"_s.arg(fromMe, column(u"ZMESSAGESTATUS"_s)),
                      ownJid,
                      m_sessionsAreComplete ? u"NULL"_s : chatJid }
            .join(u", "_s);
    const MessageFilter &filter = m_source.messageFilter();
    QHash<QString, int> ownKeys;
    m_database.query(what, table, [&](const Statement &row) {
        m_facts.keepsStatus = m_facts.keepsStatus || row.integer(5) != 0;
        const QByteArrayView own = row.bytes(6);
        if (!own.isEmpty()) {
            const Jid jid(QString::fromUtf8(own));
            if (jid.isPerson())
                ++ownKeys[jid.key()];
        }
        Session *found = sessionOf(row.integer(1), row.bytes(7));
        if (!found)
            return;
        Session &session = *found;
        const QDateTime date = PhoneTime::since2001(row.number(3));
        session.newestMs = std::max(session.newestMs, msOf(date));
        const qint64 number = row.integer(0);
        if (filter.accepts(date)) {
            const bool hasMedia = row.integer(4) != 0 || m_media.first(number) != 0;
            session.entries.push_back({ row.integer(2), msOf(date), number, hasMedia });
        }
    });
    int most = 0;
    for (auto it = ownKeys.cbegin(); it != ownKeys.cend(); ++it) {
        if (it.value() > most || (it.value() == most && it.key() < m_facts.ownKey)) {
            most = it.value();
            m_facts.ownKey = it.key();
        }
    }
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
