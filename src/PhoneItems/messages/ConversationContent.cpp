#include "PhoneItems/messages/ConversationContent.h"

#include "PhoneItems/messages/AttachmentLabel.h"

namespace PhoneItems {

void ConversationContent::clear()
{
    m_chats = {}; // not clear(), which keeps the room that a large conversation took
    m_names.clear();
    m_pieces.clear();
    m_lastRead = nullptr;
    m_extras.clear();
    m_all.clear();
    m_records.clear();
}

MessageChat::Extras &ConversationContent::extrasOf(MessageChat &chat)
{
    if (!chat.extras) {
        chat.extras = &m_extras.emplace_back();
        chat.extras->text = chat.record->text;
    }
    return *chat.extras;
}

void ConversationContent::addText(MessageChat &chat, const QString &text)
{
    extrasOf(chat).pieces.append(&m_pieces.emplace_back(text));
}

void ConversationContent::addFile(MessageChat &chat,
                                  const PhoneBackup::MessageAttachment &attachment,
                                  PhoneBackup::BackupFiles &files)
{
    const bool neverDownloaded = attachment.path.isEmpty();
    extrasOf(chat).pieces.append(&m_pieces.emplace_back(attachmentType(attachment),
                                                        files,
                                                        attachment.file,
                                                        attachment.name,
                                                        neverDownloaded,
                                                        &m_lastRead));
}

void ConversationContent::list()
{
    m_chats.reserve(qsizetype(m_all.size()));
    for (MessageChat &chat : m_all) {
        if (!chat.hidden)
            m_chats.append(&chat);
    }
}

} // namespace PhoneItems
