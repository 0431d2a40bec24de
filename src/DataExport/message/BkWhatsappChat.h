#ifndef DATAEXPORT_MESSAGE_BKWHATSAPPCHAT_H
#define DATAEXPORT_MESSAGE_BKWHATSAPPCHAT_H

#include "DataExport_global.h"

#include <QList>

class BkWhatsappMsg;

/*!
    \brief The content of one WhatsApp chat.

    Item model, implemented by the application, which owns the messages. References and messages
    live as long as the chat.
*/
class DATAEXPORT_EXPORT BkWhatsappChat
{
public:
    BkWhatsappChat() = default;
    virtual ~BkWhatsappChat();

    BkWhatsappChat(const BkWhatsappChat &) = delete;
    BkWhatsappChat &operator=(const BkWhatsappChat &) = delete;

    //! The messages in the order of display. Null entries are skipped.
    virtual const QList<BkWhatsappMsg *> &messages() const = 0;
};

#endif
