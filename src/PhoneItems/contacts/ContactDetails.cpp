#include "PhoneItems/contacts/ContactDetails.h"

#include "PhoneItems/contacts/ContactWords.h"

namespace PhoneItems {

using PhoneBackup::Contact;

void ContactDetails::show(const Contact &contact, const std::function<QByteArray()> &readPhoto)
{
    m_contact = contact;
    m_readPhoto = readPhoto;
    m_list.clear();
    m_properties.clear();
    for (const Contact::Value &value : contact.values) {
        const QString label = ContactWords::label(value.label);
        const QString text = value.day.isValid() ? ContactWords::day(value.day) : value.text;
        m_list.append(value.parts.isEmpty()
                          ? &m_properties.emplace_back(value.kind, label, text)
                          : &m_properties.emplace_back(value.kind, label, value.parts));
    }
}

// The item model has no place of its own for what is spoken of the middle name.
QString ContactDetails::givenNameYomi() const
{
    const Contact::Name &name = m_contact.name;
    const bool hasBoth = !name.spokenGiven.isEmpty() && !name.spokenMiddle.isEmpty();
    return name.spokenGiven + (hasBoth ? QStringLiteral(" ") : QString()) + name.spokenMiddle;
}

QString ContactDetails::birthday() const
{
    return ContactWords::day(m_contact.birthday);
}

} // namespace PhoneItems
