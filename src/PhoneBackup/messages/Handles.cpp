#include "PhoneBackup/messages/Handles.h"

#include "PhoneBackup/messages/SmsDatabase.h"
#include "PhoneBackup/source/StoredText.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

Handles::Handles(SmsDatabase &database)
{
    if (!database.hasColumn(u"handle"_s, u"id"_s))
        return;
    const QString table = u"handle"_s;
    const QString what = u"ROWID, id, "_s + database.column(table, u"person_centric_id"_s);
    QHash<QString, QString> ofPerson;
    database.query(what, table, [&](const Statement &row) {
        const QString address = StoredText::cleaned(row.text(1)).simplified();
        if (address.isEmpty())
            return;
        m_byRow.insert(row.integer(0), intern(address));
        const QString person = row.text(2);
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
