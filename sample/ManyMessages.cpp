#include "sample/ManyMessages.h"

#include "sample/MessageDatabase.h"
#include "sample/People.h"
#include "sample/Random.h"
#include "sample/SmallTalk.h"

#include <algorithm>
#include <vector>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFirstWithReactions = 10;
constexpr int kFirstWithReplies = 14;
constexpr int kGroupPercent = 10;
constexpr int kSmsPercent = 25;
constexpr qint64 kSpanSeconds = qint64(5) * 365 * 86400;
constexpr qint64 kMostBetweenLinesSeconds = 90;

struct Conversation
{
    qint64 chat = 0;
    QString service;
    QString roomName;
    QList<qint64> handles;
};

class Crowd
{
public:
    Crowd(MessageDatabase &database, Random &random, int messages, int conversations)
        : m_database(database)
        , m_random(random)
        , m_talk(random)
        , m_messagesLeft(messages)
        , m_secondsApart(std::max<qint64>(kSpanSeconds / std::max(messages, 1), 2))
        , m_now(QDateTime(QDate(2016, 6, 1), QTime(6, 0), Qt::UTC))
    {
        m_conversations.reserve(static_cast<std::size_t>(conversations));
        for (int i = 0; i < conversations; ++i)
            m_conversations.push_back(conversation(i));
    }

    void talk()
    {
        // Everybody says something, then they come and go.
        for (const Conversation &one : m_conversations)
            exchange(one);
        while (m_messagesLeft > 0)
            exchange(m_conversations[next()]);
    }

private:
    Conversation conversation(int index)
    {
        Conversation made;
        made.service = m_random.chance(kSmsPercent) ? u"SMS"_s : u"iMessage"_s;
        const bool isGroup = index > 0 && m_random.chance(kGroupPercent);
        const int members = isGroup ? m_random.between(2, 6) : 1;
        ChatRow chat;
        chat.service = made.service;
        chat.isGroup = isGroup;
        for (int i = 0; i < members; ++i) {
            const Person member = person(isGroup ? m_random.below(index + 1) : index);
            const QString &address = member.number.isEmpty() ? member.email : member.number;
            const qint64 handle = m_database.addHandle(address, made.service);
            if (!chat.handles.contains(handle))
                chat.handles.append(handle);
            chat.identifier = address;
        }
        if (isGroup) {
            made.roomName = u"chat%1"_s.arg(100000000000LL + index);
            chat.identifier = made.roomName;
            chat.groupId = m_random.uuid();
            if (m_random.chance(50))
                chat.displayName = u"Round table %1"_s.arg(index);
        }
        made.handles = chat.handles;
        made.chat = m_database.addChat(chat);
        return made;
    }

    std::size_t next()
    {
        const auto count = static_cast<int>(m_conversations.size());
        const int among = m_random.chance(50) ? std::max(1, count / 10) : count;
        return static_cast<std::size_t>(m_random.below(among));
    }

    void exchange(const Conversation &in)
    {
        const bool ownerBegins = m_random.chance(50);
        SpokenLine line;
        m_talk.begin();
        while (m_messagesLeft > 0 && m_talk.next(line)) {
            const qint64 handle = line.first == ownerBegins ? 0 : m_random.pick(in.handles);
            MessageRow row = message(in, handle, line.text);
            if (m_random.chance(1) && !m_last.isEmpty()
                && m_database.iosRelease() >= kFirstWithReplies)
                row.threadOriginator = m_last;
            m_last = row.guid;
            add(in, row);
            if (m_random.chance(4))
                react(in);
        }
        m_last.clear();
        m_now = m_now.addSecs(m_secondsApart * m_random.between(2, 6));
    }

    MessageRow message(const Conversation &in, qint64 handle, const QString &text)
    {
        MessageRow row;
        row.guid = m_random.uuid();
        row.handle = handle;
        row.fromMe = handle == 0;
        row.text = text;
        row.service = in.service;
        row.roomName = in.roomName;
        row.delivered = in.service != "SMS"_L1;
        row.date = m_now;
        // As on a phone that was in use for years: old rows have plain texts, young ones often not.
        const int kind = m_random.below(10);
        row.store = kind < 2 ? TextStore::Plain
            : kind < 6       ? TextStore::Attributed
                             : TextStore::Both;
        if (row.fromMe && m_random.below(1000) < 3) {
            row.error = 4;
            row.sent = row.delivered = false;
        }
        m_now = m_now.addSecs(m_random.between(
            1, static_cast<int>(std::min(m_secondsApart, kMostBetweenLinesSeconds))));
        return row;
    }

    void react(const Conversation &in)
    {
        if (m_messagesLeft == 0 || m_database.iosRelease() < kFirstWithReactions)
            return;
        MessageRow row =
            message(in, m_random.chance(50) ? 0 : m_random.pick(in.handles), u"Loved a message"_s);
        row.associatedGuid = u"p:0/"_s + m_last;
        row.associatedType = 2000 + m_random.below(6);
        add(in, row);
    }

    void add(const Conversation &in, const MessageRow &row)
    {
        m_database.addToChat(in.chat, m_database.addMessage(row), row.date);
        --m_messagesLeft;
    }

    MessageDatabase &m_database;
    Random &m_random;
    SmallTalk m_talk;
    int m_messagesLeft;
    const qint64 m_secondsApart;
    QDateTime m_now;
    QString m_last;
    std::vector<Conversation> m_conversations;
};

} // namespace

void addManyMessages(MessageDatabase &database, Random &random, int messages, int conversations)
{
    Crowd(database, random, messages, std::clamp(conversations, 1, messages)).talk();
}

} // namespace Sample
