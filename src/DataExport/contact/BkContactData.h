#ifndef DATAEXPORT_CONTACT_BKCONTACTDATA_H
#define DATAEXPORT_CONTACT_BKCONTACTDATA_H

#include "backup/BkData.h"

/*!
    \brief The contact data set of a backup; its items are BkContactItem.

    Item model, implemented by the application. It adds no operation: the class tells that the set
    holds contacts. The CSV pass asks for every contact twice: once to size the columns, by count()
    and recover(), and once to write it, by recoverList().
    \see BkData
*/
class DATAEXPORT_EXPORT BkContactData : public BkData
{
public:
    ~BkContactData() override;
};

#endif
