#ifndef DATAEXPORT_MESSAGE_BKSMSDATA_H
#define DATAEXPORT_MESSAGE_BKSMSDATA_H

#include "backup/BkData.h"

/*!
    \brief The message data set of a backup; its items are BkSMSItem.

    Item model, implemented by the application. It adds no operation: the class tells that the set
    holds conversations.
*/
class DATAEXPORT_EXPORT BkSMSData : public BkData
{
public:
    ~BkSMSData() override;
};

#endif
