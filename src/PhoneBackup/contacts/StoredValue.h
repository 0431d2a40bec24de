#ifndef PHONEBACKUP_CONTACTS_STOREDVALUE_H
#define PHONEBACKUP_CONTACTS_STOREDVALUE_H

#include <QDate>
#include <QString>

//! What the address book stores in more than one way.
namespace PhoneBackup::StoredValue {

/*!
    The calendar day that \a stored (decimal seconds since 2001, or "2001-12-31") stands for;
    invalid for what is no day of the years 1 to 9999. New releases store noon in Greenwich, old
    ones midnight of where the phone was.
*/
QDate day(const QString &stored);

//! The part that a value of \a kind is when it has none but should; empty for other kinds.
QString partOfPlainValue(int kind);

//! The known spelling of the \a key of a part of an address or account.
QString partKey(const QString &key);

} // namespace PhoneBackup::StoredValue

#endif
