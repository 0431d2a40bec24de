#ifndef PHONEITEMS_CONTACTS_CONTACTDETAILS_H
#define PHONEITEMS_CONTACTS_CONTACTDETAILS_H

#include "PhoneItems/contacts/ContactProperty.h"
#include "contact/BkContactPrivate.h"

#include <array>
#include <deque>
#include <functional>

namespace PhoneBackup {

//! What is known of the contact that is open. Its photo is read when it is asked for.
class ContactDetails final : public BkContactPrivate
{
public:
    //! Names come first.
    enum Field {
        NamePrefix,
        GivenName,
        AdditionalName,
        FamilyName,
        NameSuffix,
        GivenNameYomi,
        FamilyNameYomi,
        Nickname,
        JobTitle,
        Department,
        Organization,
        Birthday,
        Notes,
    };
    static constexpr int kNameCount = Nickname;
    static constexpr int kFieldCount = Notes + 1;

    //! Releases everything.
    void clear();

    QString &field(int field) { return m_fields[std::size_t(field)]; }
    void setPhotoSource(const std::function<QByteArray()> &read) { m_readPhoto = read; }

    template <class Value>
    void addProperty(int kind, const QString &label, const Value &value)
    {
        m_list.append(&m_properties.emplace_back(kind, label, value));
    }

    QString namePrefix() const override { return m_fields[NamePrefix]; }
    QString givenName() const override { return m_fields[GivenName]; }
    QString additionalName() const override { return m_fields[AdditionalName]; }
    QString familyName() const override { return m_fields[FamilyName]; }
    QString nameSuffix() const override { return m_fields[NameSuffix]; }
    QString givenNameYomi() const override { return m_fields[GivenNameYomi]; }
    QString familyNameYomi() const override { return m_fields[FamilyNameYomi]; }
    QString nickname() const override { return m_fields[Nickname]; }
    QString jobTitle() const override { return m_fields[JobTitle]; }
    QString department() const override { return m_fields[Department]; }
    QString organization() const override { return m_fields[Organization]; }
    QString birthday() const override { return m_fields[Birthday]; }
    QString notes() const override { return m_fields[Notes]; }
    QByteArray photo() const override { return m_readPhoto ? m_readPhoto() : QByteArray(); }
    QList<BkContactProperty *> properties() const override { return m_list; }

private:
    std::array<QString, kFieldCount> m_fields;
    std::function<QByteArray()> m_readPhoto;
    std::deque<ContactProperty> m_properties;
    QList<BkContactProperty *> m_list;
};

} // namespace PhoneBackup

#endif
