#ifndef DATAEXPORT_MESSAGE_BKWHATSAPPITEM_H
#define DATAEXPORT_MESSAGE_BKWHATSAPPITEM_H

#include "backup/BkAbstractItem.h"

class BkWhatsappChat;

/*!
    \brief One WhatsApp chat: with a person, in a group, or with the people of a list.

    Its texts are value(0) name of the chat, value(1) name of the person, value(2) phone number;
    flag(0) tells that the whole chat was deleted on the phone.
*/
class DATAEXPORT_EXPORT BkWhatsappItem : public BkAbstractItem
{
public:
    ~BkWhatsappItem() override;

    /*!
        The messages, null when they cannot be read. Asked once an item and pass. They need to stay
        valid only until the detailContent() of the next item is asked, so that a model may load one
        chat at a time.
    */
    virtual BkWhatsappChat *detailContent() const = 0;
};

#endif
