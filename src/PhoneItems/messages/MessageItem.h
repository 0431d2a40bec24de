#ifndef PHONEITEMS_MESSAGES_MESSAGEITEM_H
#define PHONEITEMS_MESSAGES_MESSAGEITEM_H

#include "message/BkSMSItem.h"

namespace PhoneItems {

class MessageData;

//! A conversation of the data set; it knows its number only and asks the set for the rest.
class MessageItem final : public BkSMSItem
{
public:
    MessageItem(const MessageData &data, int index);

    const MessageData &data() const { return m_data; }

    QString value(int index) const override;
    bool flag(int index) const override;
    qint64 id() const override;
    QDateTime date() const override;
    QString source() const override;
    BkSMSChatGroup *detailContent() const override;

private:
    const MessageData &m_data;
    int m_index;
};

} // namespace PhoneItems

#endif
