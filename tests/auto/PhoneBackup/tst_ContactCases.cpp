#include "ContactFixture.h"
#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/contacts/ContactOrder.h"
#include "PhoneBackup/contacts/ContactReader.h"
#include "support/CaseFile.h"

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

// What the item model shows: "name", then as ContactFixture::lines().
QStringList items(PhoneItems::Backup &backup, const QString & /*what*/)
{
    QStringList all;
    const BkData *data = backup.getBkData(DataType::Contacts);
    for (const int index : data->recoverList()) {
        auto *item = dynamic_cast<BkContactItem *>(data->at(index, true));
        all +=
            item->value(0) + u": "_s + ContactFixture::lines(item->detailContent()).join(u" | "_s);
    }
    return all;
}

QJsonObject json(const QString &name, const Contact &contact)
{
    QJsonArray values;
    for (const Contact::Value &value : contact.values) {
        QJsonArray one { value.kind, value.label };
        if (value.parts.isEmpty())
            one.append(value.day.isValid() ? value.day.toString(Qt::ISODate) : value.text);
        for (auto part = value.parts.cbegin(); part != value.parts.cend(); ++part)
            one.append(part.key() + u'=' + part.value());
        values.append(one);
    }
    return CaseFile::filled({
        { u"name"_s, name },
        { u"row"_s, contact.row },
        { u"guid"_s, contact.guid },
        { u"isOrganization"_s, contact.isOrganization },
        { u"prefix"_s, contact.name.prefix },
        { u"given"_s, contact.name.given },
        { u"middle"_s, contact.name.middle },
        { u"family"_s, contact.name.family },
        { u"suffix"_s, contact.name.suffix },
        { u"spokenGiven"_s, contact.name.spokenGiven },
        { u"spokenMiddle"_s, contact.name.spokenMiddle },
        { u"spokenFamily"_s, contact.name.spokenFamily },
        { u"formerFamily"_s, contact.name.formerFamily },
        { u"nickname"_s, contact.nickname },
        { u"jobTitle"_s, contact.jobTitle },
        { u"department"_s, contact.department },
        { u"organization"_s, contact.organization },
        { u"spokenOrganization"_s, contact.spokenOrganization },
        { u"birthday"_s, contact.birthday.toString(Qt::ISODate) },
        { u"note"_s, contact.note },
        { u"created"_s, CaseFile::text(contact.created) },
        { u"modified"_s, CaseFile::text(contact.modified) },
        { u"values"_s, values },
        { u"groups"_s, QJsonArray::fromStringList(contact.groups) },
    });
}

CaseFile::Records records(Source &source, const QString & /*what*/)
{
    CaseFile::Records all;
    const AddressBook &book = source.addressBook();
    reportContactLosses(source);
    if (!book.database())
        return all;
    ContactReader reader(source, book);
    for (const int person : contactOrder(book.people(), phoneLocale(source))) {
        const AddressBook::Person &about = book.people()[std::size_t(person)];
        Contact contact;
        all.append(reader.read(about, contact) ? json(about.name, contact) : QJsonObject());
    }
    return all;
}

} // namespace

class tst_ContactCases : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data() { CaseFile::addRows(u"contacts"_s); }
    void reads();
};

void tst_ContactCases::reads()
{
    QFETCH(QString, path);
    const QByteArray difference = CaseFile::difference(path, &records, &items);
    QVERIFY2(difference.isEmpty(), difference.constData());
}

QTEST_GUILESS_MAIN(tst_ContactCases)
#include "tst_ContactCases.moc"
