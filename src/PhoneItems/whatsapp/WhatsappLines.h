#ifndef PHONEITEMS_WHATSAPP_WHATSAPPLINES_H
#define PHONEITEMS_WHATSAPP_WHATSAPPLINES_H

#include "PhoneBackup/whatsapp/WhatsappChat.h"
#include "PhoneBackup/whatsapp/WhatsappMessage.h"
#include "PhoneItems/whatsapp/WhatsappRelations.h"

namespace PhoneBackup {
class Source;
}

namespace PhoneItems {

//! Makes the lines of one chat from its messages.
class WhatsappLines
{
public:
    //! \a content is empty; all are borrowed.
    WhatsappLines(PhoneBackup::Source &source,
                  const PhoneBackup::WhatsappChat &chat,
                  WhatsappContent &content);

    //! Reads the chat. \return false when there are messages and none could be read.
    bool read();

private:
    void addCreation();
    void add(PhoneBackup::WhatsappMessage &&message);
    void setFile(WhatsappLine &line, const PhoneBackup::WhatsappMessage &message) const;

    PhoneBackup::Source &m_source;
    const PhoneBackup::WhatsappChat &m_chat;
    WhatsappContent &m_content;
    WhatsappRelations m_relations;
    bool m_tellsCreation = false; // a message says who made the group
};

} // namespace PhoneItems

#endif
