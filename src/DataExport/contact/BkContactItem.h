#ifndef DATAEXPORT_CONTACT_BKCONTACTITEM_H
#define DATAEXPORT_CONTACT_BKCONTACTITEM_H

#include "backup/BkAbstractItem.h"

class BkContactPrivate;

/*!
    \brief One contact.

    Its text is value(0), the name that it is shown under; empty when it has none. flag(0) tells
    that the contact was deleted on the phone.
*/
class DATAEXPORT_EXPORT BkContactItem : public BkAbstractItem
{
public:
    ~BkContactItem() override;

    /*!
        The details, null when they cannot be read: then the contact is left out and the report
        told. Asked several times in a row for one item. They need to stay valid only until the
        detailContent() of another item is asked, so that a model may load one contact at a time.
    */
    virtual BkContactPrivate *detailContent() const = 0;
};

#endif
