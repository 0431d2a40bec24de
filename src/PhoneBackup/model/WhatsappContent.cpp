#include "model/WhatsappContent.h"

namespace PhoneBackup {

void WhatsappContent::clear()
{
    m_list = {}; // not clear(), which keeps the room that a large chat took
    m_messages.clear();
}

WhatsappMessage &WhatsappContent::addMessage()
{
    WhatsappMessage &message = m_messages.emplace_back();
    m_list.append(&message);
    return message;
}

void WhatsappContent::removeLast()
{
    m_list.removeLast();
    m_messages.pop_back();
}

} // namespace PhoneBackup
