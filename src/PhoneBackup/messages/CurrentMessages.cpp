#include "PhoneBackup/messages/CurrentMessages.h"

#include "PhoneBackup/messages/ConversationList.h"
#include "PhoneBackup/source/Source.h"

namespace PhoneBackup {

CurrentMessages::CurrentMessages(Source &source, std::unique_ptr<SmsDatabase> database)
    : m_database(std::move(database))
    , m_handles(*m_database)
    , m_people(source.addressBook())
    , m_attachments(source, *m_database)
    , m_reader(source, *m_database, m_handles, m_people, m_attachments)
{
    for (const auto &[address, other] : m_handles.pairs())
        m_people.join(address, other);
    for (const QString &address : m_handles.addresses()) {
        if (PhoneAddress(address).isInternational())
            m_people.number(address);
    }
}

CurrentMessages::~CurrentMessages() = default;

std::vector<Conversation> CurrentMessages::takeConversations()
{
    return ConversationList(*m_database, m_handles, m_people).take();
}

bool CurrentMessages::read(const Conversation &conversation, MessageList &list)
{
    return m_reader.read(conversation, list);
}

QDateTime CurrentMessages::dateOf(qint64 row)
{
    return m_reader.dateOf(row);
}

QList<MessageAttachment> CurrentMessages::attachmentsOf(qint64 row)
{
    return m_attachments.of(row);
}

bool CurrentMessages::isExpired(qint64 row)
{
    return m_reader.isExpired(row);
}

QList<qint64> CurrentMessages::attachmentRows()
{
    return m_attachments.rows();
}

MessageAttachment CurrentMessages::attachment(qint64 row)
{
    return m_attachments.read(row);
}

} // namespace PhoneBackup
