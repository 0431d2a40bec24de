#ifndef TESTS_SUPPORT_FAKECONTACT_H
#define TESTS_SUPPORT_FAKECONTACT_H

#include "contact/BkContactData.h"
#include "contact/BkContactItem.h"
#include "contact/BkContactPrivate.h"
#include "contact/BkContactProperty.h"

#include <QMap>

#include <memory>
#include <vector>

class FakeContactProperty : public BkContactProperty
{
public:
    int propType() const override { return type; }
    QString propLabel() const override { return label; }
    QString propValue() const override { return value; }
    QMap<QString, QString> propValueEntry() const override { return parts; }

    int type = 0;
    QString label;
    QString value;
    QMap<QString, QString> parts;
};

//! A contact with the fields that it is told by their names ("givenName").
class FakeContact : public BkContactItem, public BkContactPrivate
{
public:
    explicit FakeContact(const QString &name)
        : m_name(name)
    {
    }
    QString value(int index) const override { return index == 0 ? m_name : QString(); }
    bool flag(int index) const override { return index == 0 && deleted; }
    BkContactPrivate *detailContent() const override
    {
        return readable ? const_cast<FakeContact *>(this) : nullptr;
    }

    QString namePrefix() const override { return field("namePrefix"); }
    QString givenName() const override { return field("givenName"); }
    QString additionalName() const override { return field("additionalName"); }
    QString familyName() const override { return field("familyName"); }
    QString nameSuffix() const override { return field("nameSuffix"); }
    QString givenNameYomi() const override { return field("givenNameYomi"); }
    QString familyNameYomi() const override { return field("familyNameYomi"); }
    QString nickname() const override { return field("nickname"); }
    QString jobTitle() const override { return field("jobTitle"); }
    QString department() const override { return field("department"); }
    QString organization() const override { return field("organization"); }
    QString birthday() const override { return field("birthday"); }
    QString notes() const override { return field("notes"); }
    QByteArray photo() const override { return photoBytes; }
    QList<BkContactProperty *> properties() const override { return m_properties; }

    FakeContactProperty &add(int type,
                             const QString &label,
                             const QString &value,
                             const QMap<QString, QString> &parts = {})
    {
        m_owned.push_back(std::make_unique<FakeContactProperty>());
        FakeContactProperty &property = *m_owned.back();
        property.type = type;
        property.label = label;
        property.value = value;
        property.parts = parts;
        m_properties.append(&property);
        return property;
    }
    void addNull() { m_properties.append(nullptr); }

    QMap<QString, QString> fields;
    QByteArray photoBytes;
    bool deleted = false;
    bool readable = true; //!< false: there is no detailContent().

private:
    QString field(const char *name) const { return fields.value(QLatin1String(name)); }

    QString m_name;
    std::vector<std::unique_ptr<FakeContactProperty>> m_owned;
    QList<BkContactProperty *> m_properties;
};

//! Contact set that owns its contacts; all entries are selected, unless told otherwise.
class FakeContactData : public BkContactData
{
public:
    int dataType() const override { return 8; }
    int recoverCount() const override { return static_cast<int>(recoverList().size()); }
    QList<int> recoverList() const override
    {
        QList<int> selected;
        for (int i = 0; i < m_items.size(); ++i) {
            if (!unselected.contains(i))
                selected.append(i);
        }
        return selected;
    }
    BkAbstractItem *at(int index, bool original) const override
    {
        return original ? m_items.value(index) : nullptr;
    }
    int count(int kind) const override { return kind == 1 ? static_cast<int>(m_items.size()) : 0; }
    bool recover(BkAbstractItem *item) const override
    {
        return !unselected.contains(static_cast<int>(m_items.indexOf(item)));
    }

    FakeContact &addContact(const QString &name)
    {
        m_owned.push_back(std::make_unique<FakeContact>(name));
        m_items.append(m_owned.back().get());
        return *m_owned.back();
    }
    //! An entry that is null or of another class; borrowed.
    void addForeign(BkAbstractItem *item) { m_items.append(item); }

    QList<int> unselected; //!< Indices that are not to be exported.

private:
    std::vector<std::unique_ptr<FakeContact>> m_owned;
    QList<BkAbstractItem *> m_items;
};

#endif
