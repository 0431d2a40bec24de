#include "model/Handles.h"

#include "model/MessageWords.h"
#include "model/SmsDatabase.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

Handles::Handles(SmsDatabase &database)
{
    if (!database.hasColumn(u"handle"_s, u"id"_s))
        return;
    database.query(u"ROWID, id"_s, u"handle"_s, [this](const Statement &row) {
        const QString address = MessageWords::cleaned(row.text(1)).simplified();
        if (!address.isEmpty())
            m_byRow.insert(row.integer(0), intern(address));
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
