#ifndef PHONEITEMS_CONTACTS_CONTACTPROPERTY_H
#define PHONEITEMS_CONTACTS_CONTACTPROPERTY_H

#include "contact/BkContactProperty.h"

namespace PhoneItems {

//! A number, address, date … of the contact that is open.
class ContactProperty final : public BkContactProperty
{
public:
    ContactProperty(int kind, const QString &label, const QString &value)
        : m_kind(kind)
        , m_label(label)
        , m_value(value)
    {
    }
    ContactProperty(int kind, const QString &label, const QMap<QString, QString> &parts)
        : m_kind(kind)
        , m_label(label)
        , m_parts(parts)
    {
    }

    int propType() const override { return m_kind; }
    QString propLabel() const override { return m_label; }
    QString propValue() const override { return m_value; }
    QMap<QString, QString> propValueEntry() const override { return m_parts; }

private:
    int m_kind;
    QString m_label;
    QString m_value;
    QMap<QString, QString> m_parts;
};

} // namespace PhoneItems

#endif
