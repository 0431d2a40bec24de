#ifndef PHONEITEMS_CONTACTS_CONTACTITEM_H
#define PHONEITEMS_CONTACTS_CONTACTITEM_H

#include "contact/BkContactItem.h"

namespace PhoneItems {

class ContactData;

//! A contact of the data set; it knows its number only and asks the set for the rest.
class ContactItem final : public BkContactItem
{
public:
    ContactItem(const ContactData &data, int index);

    const ContactData &data() const { return m_data; }

    QString value(int index) const override;
    bool flag(int index) const override;
    qint64 id() const override;
    QString source() const override;
    BkContactPrivate *detailContent() const override;

private:
    const ContactData &m_data;
    int m_index;
};

} // namespace PhoneItems

#endif
