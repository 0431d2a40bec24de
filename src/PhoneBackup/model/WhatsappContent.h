#ifndef PHONEBACKUP_MODEL_WHATSAPPCONTENT_H
#define PHONEBACKUP_MODEL_WHATSAPPCONTENT_H

#include "message/BkWhatsappChat.h"
#include "model/WhatsappMessage.h"

#include <deque>

namespace PhoneBackup {

//! The messages of the chat that is open.
class WhatsappContent final : public BkWhatsappChat
{
public:
    const QList<BkWhatsappMsg *> &messages() const override { return m_list; }

    //! Releases everything.
    void clear();

    //! Adds a message behind the others; and takes back the one that was added last.
    WhatsappMessage &addMessage();
    void removeLast();

private:
    std::deque<WhatsappMessage> m_messages;
    QList<BkWhatsappMsg *> m_list;
};

} // namespace PhoneBackup

#endif
