#ifndef DATAEXPORT_MESSAGE_BKSMSITEM_H
#define DATAEXPORT_MESSAGE_BKSMSITEM_H

#include "backup/BkAbstractItem.h"

class BkSMSChatGroup;

/*!
    \brief One conversation: SMS, MMS and iMessages with the same people.

    Its texts are value(0) name, value(1) phone number, value(2) e-mail address; flag(0) tells that
    the whole conversation was deleted on the phone.
*/
class DATAEXPORT_EXPORT BkSMSItem : public BkAbstractItem
{
public:
    ~BkSMSItem() override;

    /*!
        The messages, null when they cannot be read. Asked once an item and pass. They need to stay
        valid only until the detailContent() of the next item is asked, so that a model may load one
        conversation at a time.
    */
    virtual BkSMSChatGroup *detailContent() const = 0;
};

#endif
