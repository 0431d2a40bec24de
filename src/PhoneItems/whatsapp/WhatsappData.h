#ifndef PHONEITEMS_WHATSAPP_WHATSAPPDATA_H
#define PHONEITEMS_WHATSAPP_WHATSAPPDATA_H

#include "PhoneBackup/whatsapp/WhatsappChat.h"
#include "PhoneItems/DataTypes.h"
#include "PhoneItems/shared/ItemData.h"
#include "PhoneItems/whatsapp/WhatsappItem.h"

#include <memory>
#include <vector>

namespace PhoneItems {

class WhatsappContent;

/*!
    \brief Data type 11: the chats of WhatsApp and its business edition; all of them are selected.

    \par Memory
    A light object a chat, 8 bytes a message, and the one chat whose content was asked for last.
    \par Owner
    The source is borrowed and must outlive the set.
*/
class WhatsappData final : public ItemData<WhatsappItem>
{
public:
    explicit WhatsappData(PhoneBackup::Source &source);
    ~WhatsappData() override;

    const PhoneBackup::WhatsappChat &chat(int index) const { return m_chats[std::size_t(index)]; }

    //! How many messages there are that the filter accepts.
    qint64 messageCount() const;

    //! The messages of a chat, valid until those of the next are asked for; null when none could be
    //! read.
    WhatsappContent *content(int index) const;

private:
    bool isEmpty(const PhoneBackup::WhatsappChat &chat);

    PhoneBackup::Source &m_source;
    std::vector<std::unique_ptr<PhoneBackup::WhatsappStore>> m_stores;
    std::unique_ptr<WhatsappContent> m_content;
    std::vector<PhoneBackup::WhatsappChat> m_chats;
    mutable int m_current = -1;
};

//! Reads data type 11.
void readWhatsapp(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
