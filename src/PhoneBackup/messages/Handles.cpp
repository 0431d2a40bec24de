#include "PhoneBackup/messages/Handles.h"

#include "PhoneBackup/messages/SmsDatabase.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/Table.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

Handles::Handles(SmsDatabase &database)
{
    Table table(database, u"handle"_s);
    const auto [id, personId] = table.columns(u"id"_s, u"person_centric_id"_s);
    QHash<QString, QString> ofPerson;
    table.forEach([&, id = id, personId = personId](const Table::Row &row) {
        const QString address = StoredText::cleaned(row.text(id)).simplified();
        if (address.isEmpty())
            return;
        m_byRow.insert(row.id(), intern(address));
        const QString person = row.text(personId);
        if (person.isEmpty())
            return;
        const QString first = ofPerson.value(person);
        if (first.isEmpty())
            ofPerson.insert(person, address);
        else if (first != address)
            m_pairs.append({ first, address });
    });
}

const QString *Handles::intern(const QString &address)
{
    const QString *&known = m_byText[address];
    if (!known)
        known = &m_addresses.emplace_back(address);
    return known;
}

} // namespace PhoneBackup
