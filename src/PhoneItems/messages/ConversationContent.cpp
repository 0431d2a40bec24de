#include "PhoneItems/messages/ConversationContent.h"

#include <algorithm>

namespace PhoneBackup {

void ConversationContent::clear()
{
    m_chats = {}; // not clear(), which keeps the room that a large conversation took
    m_names.clear();
    m_pieces.clear();
    m_lastRead = nullptr;
    m_extras.clear();
    m_messages.clear();
}

Message &ConversationContent::addMessage()
{
    return m_messages.emplace_back();
}

Message::Extras &ConversationContent::extrasOf(Message &message)
{
    if (!message.extras)
        message.extras = &m_extras.emplace_back();
    return *message.extras;
}

void ConversationContent::addText(Message &message, const QString &text)
{
    extrasOf(message).pieces.append(&m_pieces.emplace_back(text));
}

void ConversationContent::addFile(Message &message,
                                  const QString &type,
                                  BackupFiles &files,
                                  FileIndex::Row row,
                                  const QString &name,
                                  bool neverDownloaded)
{
    extrasOf(message).pieces.append(
        &m_pieces.emplace_back(type, files, row, name, neverDownloaded, &m_lastRead));
}

void ConversationContent::list()
{
    m_chats.reserve(qsizetype(m_messages.size()));
    for (Message &message : m_messages) {
        if (!message.hidden)
            m_chats.append(&message);
    }
    const auto before = [](const BkSMSChat *a, const BkSMSChat *b) {
        const auto *first = static_cast<const Message *>(a);
        const auto *second = static_cast<const Message *>(b);
        return first->dateMs != second->dateMs ? first->dateMs < second->dateMs
                                               : first->row < second->row;
    };
    if (!std::is_sorted(m_chats.cbegin(), m_chats.cend(), before))
        std::sort(m_chats.begin(), m_chats.end(), before);
}

} // namespace PhoneBackup
