#include "PhoneBackup/messages/ConversationList.h"

#include "PhoneBackup/messages/Handles.h"
#include "PhoneBackup/messages/People.h"
#include "PhoneBackup/messages/SmsDatabase.h"
#include "PhoneBackup/plist/PropertyList.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/Table.h"

#include <algorithm>
#include <numeric>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kGroupStyle = 43; // of chat.style: the sign '+'
constexpr QByteArrayView kPicture = "groupPhotoGuid"; // in chat.properties

} // namespace

struct ConversationList::Chat
{
    qint64 row = 0;
    bool isGroup = false;
    QString identifier;
    QString service;
    QString room;
    QString displayName;
    QString groupId;
    QString pictureGuid;
    QStringList ownAddresses;
    QStringList addresses;
};

ConversationList::ConversationList(SmsDatabase &database, Handles &handles, People &people)
    : m_database(database)
    , m_handles(handles)
    , m_people(people)
{
}

std::vector<Conversation> ConversationList::take()
{
    tellMissingTables();
    readChats();
    readMessages();
    readLinks();
    readDeleted();
    placeOrphans();
    sortMessages();
    findDates();
    nameConversations();

    std::vector<std::size_t> order(m_conversations.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
        return m_conversations[a].lastDateMs > m_conversations[b].lastDateMs;
    });
    std::vector<Conversation> result;
    result.reserve(order.size());
    for (const std::size_t index : order) {
        if (!m_conversations[index].messages.empty())
            result.push_back(std::move(m_conversations[index]));
    }
    return result;
}

// What is in them all is told by nothing else: who wrote what, and to whom.
void ConversationList::tellMissingTables() const
{
    for (const QString &table :
         { u"handle"_s, u"chat"_s, u"chat_handle_join"_s, u"chat_message_join"_s }) {
        if (!m_database.hasTable(table) && m_database.hasTable(u"message"_s))
            m_database.addLoss(Notice("messages.noTable", { table }));
    }
}

void ConversationList::readChats()
{
    Table table(m_database, u"chat"_s);
    const Table::Column style = table.column(u"style"_s);
    const Table::Column identifier = table.column(u"chat_identifier"_s);
    const Table::Column service = table.column(u"service_name"_s);
    const Table::Column room = table.column(u"room_name"_s);
    const Table::Column displayName = table.column(u"display_name"_s);
    const Table::Column groupId = table.column(u"group_id"_s);
    const Table::Column lastAddressed = table.column(u"last_addressed_handle"_s);
    const Table::Column accountLogin = table.column(u"account_login"_s);
    const Table::Column propertyList = table.column(u"properties"_s);
    std::vector<Chat> chats;
    table.forEach([&](const Table::Row &row) {
        Chat chat;
        chat.row = row.id();
        chat.isGroup = row.integer(style) == kGroupStyle;
        chat.identifier = row.text(identifier).trimmed();
        chat.service = row.text(service);
        chat.room = row.text(room).trimmed();
        chat.displayName = StoredText::cleaned(row.text(displayName)).simplified();
        chat.groupId = row.text(groupId).trimmed();
        chat.ownAddresses.append(row.text(lastAddressed).trimmed());
        QString login = row.text(accountLogin).trimmed();
        if (login.startsWith("P:"_L1) || login.startsWith("E:"_L1))
            login.remove(0, 2);
        chat.ownAddresses.append(login);
        const QByteArrayView properties = row.bytes(propertyList);
        if (properties.contains(kPicture)) { // most have others, which are not worth parsing
            chat.pictureGuid = PropertyList::parse(properties.toByteArray())
                                   .value(kPicture.toByteArray().constData())
                                   .toString();
        }
        chats.push_back(chat);
    });
    readParticipants(chats);
    const QSet<int> owners = ownersOf(chats);
    for (Chat &chat : chats) {
        QSet<int> people;
        for (const QString &address : std::as_const(chat.addresses))
            people.insert(m_people.number(address));
        chat.isGroup = chat.isGroup || people.size() > 1;
        if (chat.isGroup) {
            chat.addresses.removeIf(
                [&](const QString &address) { return owners.contains(m_people.number(address)); });
        }
        place(chat);
    }
}

void ConversationList::readParticipants(std::vector<Chat> &chats) const
{
    Table table(m_database, u"chat_handle_join"_s);
    const auto [ofChat, handle] = table.columns(u"chat_id"_s, u"handle_id"_s);
    QHash<qint64, Chat *> byRow;
    std::for_each(chats.begin(), chats.end(), [&](Chat &chat) { byRow.insert(chat.row, &chat); });
    table.forEach([&, ofChat = ofChat, handle = handle](const Table::Row &row) {
        Chat *chat = byRow.value(row.integer(ofChat));
        const QString *address = m_handles.address(row.integer(handle));
        if (chat && address && !chat->addresses.contains(*address))
            chat->addresses.append(*address);
    });
}

// Numbers of the people that are the phone's owner. A note to oneself has no other participant, so
// owners are left out of groups only.
QSet<int> ConversationList::ownersOf(const std::vector<Chat> &chats) const
{
    QSet<int> owners;
    for (const Chat &chat : chats) {
        for (const QString &address : chat.ownAddresses) {
            if (!address.isEmpty())
                owners.insert(m_people.number(address));
        }
    }
    return owners;
}

void ConversationList::place(const Chat &chat)
{
    int index = -1;
    if (chat.isGroup)
        index = findOrAddGroup(chat);
    else if (!chat.addresses.isEmpty())
        index = findOrAddPerson(chat.addresses.first());
    else if (!chat.identifier.isEmpty())
        index = findOrAddPerson(*m_handles.intern(chat.identifier));
    else
        index = addConversation();
    m_ofChat.insert(chat.row, index);

    Conversation &conversation = at(index);
    conversation.isGroup = conversation.isGroup || chat.isGroup;
    // What the newest chat says counts.
    if (!chat.displayName.isEmpty())
        conversation.title = chat.displayName;
    if (!chat.service.isEmpty())
        conversation.service = chat.service;
    if (!chat.identifier.isEmpty())
        conversation.identifier = chat.identifier;
    if (!chat.pictureGuid.isEmpty())
        conversation.pictureGuid = chat.pictureGuid;
    for (const QString &address : chat.ownAddresses) {
        if (!address.isEmpty() && !conversation.ownAddresses.contains(address))
            conversation.ownAddresses.append(address);
    }
    for (const QString &address : chat.addresses) {
        if (!conversation.addresses.contains(address))
            conversation.addresses.append(address);
    }
}

int ConversationList::findOrAddGroup(const Chat &chat)
{
    QStringList keys;
    if (!chat.groupId.isEmpty())
        keys.append(u"id "_s + chat.groupId);
    if (!chat.room.isEmpty())
        keys.append(u"room "_s + chat.room);
    int index = -1;
    for (const QString &key : std::as_const(keys)) {
        if (index < 0)
            index = m_ofGroup.value(key, -1);
    }
    if (index < 0)
        index = addConversation();
    if (!chat.identifier.isEmpty())
        keys.append(u"room "_s + chat.identifier);
    for (const QString &key : std::as_const(keys)) {
        if (!m_ofGroup.contains(key))
            m_ofGroup.insert(key, index);
    }
    return index;
}

int ConversationList::findOrAddPerson(const QString &address)
{
    const int person = m_people.number(address);
    const auto known = m_ofPerson.constFind(person);
    if (known != m_ofPerson.constEnd())
        return *known;
    const int index = addConversation();
    at(index).addresses.append(address);
    m_ofPerson.insert(person, index);
    return index;
}

int ConversationList::addConversation()
{
    m_conversations.emplace_back();
    m_undated.push_back(false);
    return int(m_conversations.size()) - 1;
}

void ConversationList::nameConversations()
{
    for (Conversation &conversation : m_conversations) {
        for (const QString &address : std::as_const(conversation.addresses)) {
            const QString name = m_people.name(address);
            if (!conversation.names.contains(name)
                && (conversation.isGroup || conversation.names.isEmpty()))
                conversation.names.append(name);
        }
    }
    if (m_nowhere >= 0)
        at(m_nowhere).isNowhere = true;
}

void ConversationList::readMessages()
{
    const Table table(m_database, u"message"_s);
    if (!table.exists()) {
        m_database.addLoss(Notice("messages.noMessages"));
        return;
    }
    table.forEach([this](const Table::Row &row) { m_rows.add(row.id()); }, Table::Order::Any);
    m_rows.sort();
    m_linked.assign(std::size_t(m_rows.count()), false);
    m_dateQuery =
        m_database.prepare(u"SELECT %1 FROM message WHERE ROWID = ?1"_s.arg(table.sql(u"date"_s)));
}

void ConversationList::readLinks()
{
    Table table(m_database, u"chat_message_join"_s);
    if (!table.hasColumn(u"chat_id"_s) || !table.hasColumn(u"message_id"_s))
        return;
    const auto [ofChat, ofMessage, ofDate] =
        table.columns(u"chat_id"_s, u"message_id"_s, u"message_date"_s);
    qint64 lastChat = 0;
    int index = -1;
    const auto link =
        [&, ofChat = ofChat, ofMessage = ofMessage, ofDate = ofDate](const Table::Row &row) {
            const qint64 chat = row.integer(ofChat);
            if (chat != lastChat || index < 0) {
                index = m_ofChat.value(chat, -1);
                lastChat = chat;
            }
            const qint64 message = row.integer(ofMessage);
            const qsizetype position = m_rows.position(message);
            if (index < 0 || position == RowSet::kNone)
                return;
            m_linked[std::size_t(position)] = true;
            Conversation &conversation = at(index);
            conversation.messages.push_back(message);
            const qint64 date = SmsDatabase::dateMs(row.integer(ofDate));
            if (date == PhoneTime::kNoMs)
                m_undated[std::size_t(index)] = true;
            else
                conversation.lastDateMs = std::max(conversation.lastDateMs, date);
        };
    table.forEach(link, Table::Order::Any);
}

// The phone moves the link of a deleted message to a table of its own.
void ConversationList::readDeleted()
{
    Table table(m_database, u"chat_recoverable_message_join"_s);
    if (!table.hasColumn(u"chat_id"_s) || !table.hasColumn(u"message_id"_s))
        return;
    const auto [ofChat, ofMessage, ofDate] =
        table.columns(u"chat_id"_s, u"message_id"_s, u"delete_date"_s);
    std::vector<qsizetype> positions;
    table.forEach(
        [&, ofChat = ofChat, ofMessage = ofMessage, ofDate = ofDate](const Table::Row &row) {
            const int index = m_ofChat.value(row.integer(ofChat), -1);
            const qint64 message = row.integer(ofMessage);
            const qint64 deletedMs = SmsDatabase::dateMs(row.integer(ofDate));
            const qsizetype position = m_rows.position(message);
            if (position == RowSet::kNone || m_linked[std::size_t(position)])
                return;
            if (index < 0) {
                m_deletedElsewhere.insert(message, deletedMs);
                return;
            }
            positions.push_back(position);
            at(index).messages.push_back(message);
            at(index).deleted.push_back({ message, deletedMs });
            m_undated[std::size_t(index)] = true;
        });
    for (const qsizetype position : positions)
        m_linked[std::size_t(position)] = true;
}

void ConversationList::placeOrphans()
{
    std::unique_ptr<Statement> query;
    for (qsizetype position = 0; position < m_rows.count(); ++position) {
        if (m_linked[std::size_t(position)])
            continue;
        if (!query) {
            query = m_database.prepare(u"SELECT %1, %2 FROM message WHERE ROWID = ?1"_s.arg(
                m_database.column(u"message"_s, u"cache_roomnames"_s),
                m_database.column(u"message"_s, u"handle_id"_s)));
        }
        if (!query)
            return;
        query->reset();
        query->bind(1, m_rows.row(position));
        const bool found = query->step() == Statement::Step::Row;
        const int index = found
            ? placeOf(query->text(0).trimmed(), m_handles.address(query->integer(1)))
            : placeOf({}, nullptr);
        const qint64 row = m_rows.row(position);
        at(index).messages.push_back(row);
        const auto deleted = m_deletedElsewhere.constFind(row);
        if (deleted != m_deletedElsewhere.cend())
            at(index).deleted.push_back({ row, *deleted });
        m_undated[std::size_t(index)] = true;
    }
}

int ConversationList::placeOf(const QString &room, const QString *address)
{
    const int group = room.isEmpty() ? -1 : m_ofGroup.value(u"room "_s + room, -1);
    if (group >= 0)
        return group;
    if (address)
        return findOrAddPerson(*address);
    if (m_nowhere < 0) {
        m_nowhere = addConversation();
        at(m_nowhere).isGroup = true; // its messages are of different people
    }
    return m_nowhere;
}

void ConversationList::sortMessages()
{
    const auto sort = [](auto &rows) {
        if (!std::is_sorted(rows.cbegin(), rows.cend()))
            std::sort(rows.begin(), rows.end());
        rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
        rows.shrink_to_fit();
    };
    for (Conversation &conversation : m_conversations) {
        sort(conversation.messages);
        sort(conversation.deleted);
        conversation.isDeleted = !conversation.messages.empty()
            && conversation.messages.size() == conversation.deleted.size();
    }
}

void ConversationList::findDates()
{
    for (std::size_t i = 0; i < m_conversations.size(); ++i) {
        if (!m_undated[i])
            continue;
        Conversation &conversation = m_conversations[i];
        for (const qint64 message : conversation.messages)
            conversation.lastDateMs = std::max(conversation.lastDateMs, dateOf(message));
    }
}

qint64 ConversationList::dateOf(qint64 message)
{
    if (!m_dateQuery)
        return PhoneTime::kNoMs;
    m_dateQuery->reset();
    m_dateQuery->bind(1, message);
    return m_dateQuery->step() == Statement::Step::Row
        ? SmsDatabase::dateMs(m_dateQuery->integer(0))
        : PhoneTime::kNoMs;
}

} // namespace PhoneBackup
