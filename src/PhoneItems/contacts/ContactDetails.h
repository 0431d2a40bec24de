#ifndef PHONEITEMS_CONTACTS_CONTACTDETAILS_H
#define PHONEITEMS_CONTACTS_CONTACTDETAILS_H

#include "PhoneBackup/contacts/Contact.h"
#include "PhoneItems/contacts/ContactProperty.h"
#include "contact/BkContactPrivate.h"

#include <deque>
#include <functional>

namespace PhoneItems {

//! What is known of the contact that is open. Its photo is read when it is asked for.
class ContactDetails final : public BkContactPrivate
{
public:
    //! Shows \a contact from now on; \a readPhoto is kept and asked for its photo.
    void show(const PhoneBackup::Contact &contact, const std::function<QByteArray()> &readPhoto);

    QString namePrefix() const override { return m_contact.name.prefix; }
    QString givenName() const override { return m_contact.name.given; }
    QString additionalName() const override { return m_contact.name.middle; }
    QString familyName() const override { return m_contact.name.family; }
    QString nameSuffix() const override { return m_contact.name.suffix; }
    QString givenNameYomi() const override;
    QString familyNameYomi() const override { return m_contact.name.spokenFamily; }
    QString nickname() const override { return m_contact.nickname; }
    QString jobTitle() const override { return m_contact.jobTitle; }
    QString department() const override { return m_contact.department; }
    QString organization() const override { return m_contact.organization; }
    QString birthday() const override;
    QString notes() const override { return m_contact.note; }
    QByteArray photo() const override { return m_readPhoto ? m_readPhoto() : QByteArray(); }
    QList<BkContactProperty *> properties() const override { return m_list; }

private:
    PhoneBackup::Contact m_contact;
    std::function<QByteArray()> m_readPhoto;
    std::deque<ContactProperty> m_properties;
    QList<BkContactProperty *> m_list;
};

} // namespace PhoneItems

#endif
