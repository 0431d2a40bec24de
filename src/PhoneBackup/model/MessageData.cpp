#include "model/MessageData.h"

#include "model/ConversationContent.h"
#include "model/ConversationList.h"
#include "model/Handles.h"
#include "model/MessageAttachments.h"
#include "model/MessageReader.h"
#include "model/People.h"
#include "model/SmsDatabase.h"
#include "model/Source.h"

#include <algorithm>
#include <numeric>

namespace PhoneBackup {

namespace {

// So few rows may all be the phone's own notes, or superseded reactions; whether something is left
// to be shown is cheap to find out.
constexpr std::size_t kFewMessages = 8;

} // namespace

class MessageData::Reading
{
public:
    Reading(Source &source, std::unique_ptr<SmsDatabase> database_)
        : database(std::move(database_))
        , handles(*database)
        , people(source.addressBook())
        , attachments(source, *database)
        , reader(source, *database, handles, people, attachments)
    {
    }

    std::unique_ptr<SmsDatabase> database;
    Handles handles;
    People people;
    MessageAttachments attachments;
    MessageReader reader;
    ConversationContent content;
};

MessageData::MessageData(Source &source)
    : m_source(source)
{
    std::unique_ptr<SmsDatabase> database = SmsDatabase::open(source);
    if (!database)
        return;
    m_reading = std::make_unique<Reading>(source, std::move(database));
    readConversations();
    for (int i = 0; i < int(m_conversations.size()); ++i)
        m_items.emplace_back(*this, i);
}

MessageData::~MessageData() = default;

void MessageData::readConversations()
{
    m_conversations =
        ConversationList(*m_reading->database, m_reading->handles, m_reading->people).take();
    const MessageFilter &filter = m_source.messageFilter();
    const auto isEmpty = [&](const Conversation &conversation) {
        if (!filter.accepts(conversation.name, conversation.addresses))
            return true;
        const bool byDate = filter.since.isValid() || filter.until.isValid();
        if (byDate && !hasWanted(conversation))
            return true;
        if (conversation.messages.size() > kFewMessages)
            return false;
        m_reading->content.clear();
        return m_reading->reader.read(conversation, m_reading->content)
            && m_reading->content.chats().isEmpty();
    };
    m_conversations.erase(std::remove_if(m_conversations.begin(), m_conversations.end(), isEmpty),
                          m_conversations.end());
    m_reading->content.clear();
}

int MessageData::dataType() const
{
    return SmsDatabase::kMessages;
}

int MessageData::recoverCount() const
{
    return int(m_items.size());
}

QList<int> MessageData::recoverList() const
{
    QList<int> list(recoverCount());
    std::iota(list.begin(), list.end(), 0);
    return list;
}

BkAbstractItem *MessageData::at(int index, bool /*original*/) const
{
    return index >= 0 && index < recoverCount() ? &m_items[std::size_t(index)] : nullptr;
}

int MessageData::count(int /*kind*/) const
{
    return recoverCount();
}

bool MessageData::recover(BkAbstractItem *item) const
{
    const auto *message = dynamic_cast<const MessageItem *>(item);
    return message && &message->data() == this;
}

ConversationContent *MessageData::content(int index) const
{
    ConversationContent &content = m_reading->content;
    if (m_current != index) {
        content.clear();
        const bool read = m_reading->reader.read(conversation(index), content);
        m_current = read ? index : -1;
    }
    return m_current == index ? &content : nullptr;
}

bool MessageData::hasWanted(const Conversation &conversation) const
{
    // The newest come last and are asked for most.
    return std::any_of(conversation.messages.crbegin(),
                       conversation.messages.crend(),
                       [this](qint64 message) { return isWanted(message); });
}

bool MessageData::isWanted(qint64 message) const
{
    const MessageFilter &filter = m_source.messageFilter();
    if (!filter.since.isValid() && !filter.until.isValid())
        return true;
    return filter.accepts(m_reading->reader.dateOf(message));
}

MessageAttachments *MessageData::attachments() const
{
    return m_reading ? &m_reading->attachments : nullptr;
}

} // namespace PhoneBackup
