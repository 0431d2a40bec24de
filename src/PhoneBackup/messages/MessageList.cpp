#include "PhoneBackup/messages/MessageList.h"

#include "PhoneBackup/messages/MessageRelations.h"

#include <algorithm>

namespace PhoneBackup {

void MessageList::complete()
{
    const auto isBefore = [](const Message &a, const Message &b) {
        return a.dateMs != b.dateMs ? a.dateMs < b.dateMs : a.row < b.row;
    };
    if (!std::is_sorted(m_messages.cbegin(), m_messages.cend(), isBefore))
        std::sort(m_messages.begin(), m_messages.end(), isBefore);
    MessageRelations(m_messages, m_extras).resolve();
}

} // namespace PhoneBackup
