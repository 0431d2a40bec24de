#include "PhoneItems/messages/MessageData.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/messages/MessageSource.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/messages/ConversationContent.h"
#include "PhoneItems/messages/ConversationWriter.h"
#include "PhoneItems/messages/MessageWords.h"
#include "PhoneItems/messages/Messages.h"

#include <algorithm>
#include <numeric>

namespace PhoneItems {

using namespace PhoneBackup;

namespace {

// So few rows may all be the phone's own notes, or superseded reactions; whether something is left
// to be shown is cheap to find out.
constexpr std::size_t kFewMessages = 8;

} // namespace

MessageData::MessageData(Source &source)
    : ItemData(DataType::Messages)
    , m_source(source)
    , m_messages(MessageSource::open(source))
    , m_content(std::make_unique<ConversationContent>())
{
    if (!m_messages)
        return;
    readConversations();
    for (int i = 0; i < int(m_conversations.size()); ++i)
        m_items.emplace_back(*this, i);
}

MessageData::~MessageData() = default;

void MessageData::readConversations()
{
    m_conversations = m_messages->takeConversations();
    const MessageFilter &filter = m_source.messageFilter();
    const auto isEmpty = [&](const Conversation &conversation) {
        if (!filter.chats.isEmpty()
            && !filter.accepts(namesOf(conversation), conversation.addresses))
            return true;
        const bool byDate = filter.since.isValid() || filter.until.isValid();
        if (byDate && !hasWanted(conversation))
            return true;
        if (conversation.messages.size() > kFewMessages)
            return false;
        m_content->clear();
        return read(conversation, {}) && m_content->chats().isEmpty();
    };
    m_conversations.erase(std::remove_if(m_conversations.begin(), m_conversations.end(), isEmpty),
                          m_conversations.end());
    m_content->clear();
    for (const Conversation &conversation : m_conversations)
        m_names.push_back(MessageWords::conversation(conversation));
}

bool MessageData::read(const Conversation &conversation, const QString &name) const
{
    const bool isWhole = m_messages->read(conversation, m_content->records());
    ConversationWriter(m_source, m_messages->people(), conversation, name, *m_content).write();
    return isWhole || !m_content->chats().isEmpty();
}

// A group is also looked for by the people in it, whatever it is called.
QStringList MessageData::namesOf(const Conversation &conversation) const
{
    QStringList names { MessageWords::conversation(conversation) };
    for (const QString &address : conversation.addresses)
        names += m_source.addressBook().name(address);
    return names;
}

ConversationContent *MessageData::content(int index) const
{
    if (m_current != index) {
        m_content->clear();
        m_current = read(conversation(index), name(index)) ? index : -1;
    }
    return m_current == index ? m_content.get() : nullptr;
}

bool MessageData::hasWanted(const Conversation &conversation) const
{
    // The newest come last and are asked for most.
    return std::any_of(conversation.messages.crbegin(),
                       conversation.messages.crend(),
                       [this](qint64 message) { return isWanted(message); });
}

qint64 MessageData::messageCount() const
{
    return std::accumulate(m_conversations.begin(),
                           m_conversations.end(),
                           qint64 { 0 },
                           [this](qint64 sum, const Conversation &conversation) {
                               return sum
                                   + std::count_if(
                                          conversation.messages.begin(),
                                          conversation.messages.end(),
                                          [this](qint64 message) { return isWanted(message); });
                           });
}

bool MessageData::isWanted(qint64 message) const
{
    const MessageFilter &filter = m_source.messageFilter();
    if (!filter.since.isValid() && !filter.until.isValid())
        return true;
    return filter.accepts(m_messages->dateOf(message));
}

void readMessages(Source &source, DataSets &sets)
{
    sets[DataType::Messages] = std::make_unique<MessageData>(source);
}

} // namespace PhoneItems
