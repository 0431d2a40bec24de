#ifndef PHONEITEMS_WHATSAPP_WHATSAPPITEM_H
#define PHONEITEMS_WHATSAPP_WHATSAPPITEM_H

#include "message/BkWhatsappItem.h"

namespace PhoneItems {

class WhatsappData;

//! A chat of the data set; it knows its number only and asks the set for the rest.
class WhatsappItem final : public BkWhatsappItem
{
public:
    WhatsappItem(const WhatsappData &data, int index);

    const WhatsappData &data() const { return m_data; }

    QString value(int index) const override;
    bool flag(int index) const override;
    qint64 id() const override;
    QDateTime date() const override;
    QString source() const override;
    BkWhatsappChat *detailContent() const override;

private:
    const WhatsappData &m_data;
    int m_index;
};

} // namespace PhoneItems

#endif
