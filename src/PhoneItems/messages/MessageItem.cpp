#include "PhoneItems/messages/MessageItem.h"

#include "PhoneBackup/source/PhoneAddress.h"
#include "PhoneItems/messages/ConversationContent.h"
#include "PhoneItems/messages/MessageData.h"

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

QString joined(const QStringList &addresses, PhoneAddress::Kind kind)
{
    QStringList chosen;
    for (const QString &address : addresses) {
        if (PhoneAddress(address).kind() == kind)
            chosen.append(address);
    }
    return chosen.join(u", "_s);
}

} // namespace

MessageItem::MessageItem(const MessageData &data, int index)
    : m_data(data)
    , m_index(index)
{
}

QString MessageItem::value(int index) const
{
    const Conversation &conversation = m_data.conversation(m_index);
    switch (index) {
    case 0:
        return m_data.name(m_index);
    case 1:
        return joined(conversation.addresses, PhoneAddress::Kind::Number);
    case 2:
        return joined(conversation.addresses, PhoneAddress::Kind::Email);
    default:
        return {};
    }
}

bool MessageItem::flag(int index) const
{
    return index == 0 && m_data.conversation(m_index).isDeleted;
}

qint64 MessageItem::id() const
{
    return m_index;
}

QDateTime MessageItem::date() const
{
    return PhoneTime::ofMs(m_data.conversation(m_index).lastDateMs);
}

QString MessageItem::source() const
{
    return u"HomeDomain/Library/SMS/sms.db"_s;
}

BkSMSChatGroup *MessageItem::detailContent() const
{
    return m_data.content(m_index);
}

} // namespace PhoneItems
