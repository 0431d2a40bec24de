#include "PhoneItems/whatsapp/WhatsappItem.h"

#include "PhoneBackup/whatsapp/WhatsappStore.h"
#include "PhoneItems/whatsapp/WhatsappContent.h"
#include "PhoneItems/whatsapp/WhatsappData.h"
#include "PhoneItems/whatsapp/WhatsappWords.h"

namespace PhoneItems {

using namespace PhoneBackup;

WhatsappItem::WhatsappItem(const WhatsappData &data, int index)
    : m_data(data)
    , m_index(index)
{
}

QString WhatsappItem::value(int index) const
{
    const WhatsappChat &chat = m_data.chat(m_index);
    switch (index) {
    case 0:
        return WhatsappWords::title(chat);
    case 1:
        return chat.isWithPerson() ? WhatsappWords::name(chat.partner) : QString();
    case 2:
        return chat.partner.number;
    default:
        return {};
    }
}

bool WhatsappItem::flag(int index) const
{
    return index == 0 && m_data.chat(m_index).isRemoved;
}

qint64 WhatsappItem::id() const
{
    return m_index;
}

QDateTime WhatsappItem::date() const
{
    return PhoneTime::ofMs(m_data.chat(m_index).lastDateMs);
}

QString WhatsappItem::source() const
{
    return m_data.chat(m_index).store->name();
}

BkWhatsappChat *WhatsappItem::detailContent() const
{
    return m_data.content(m_index);
}

} // namespace PhoneItems
