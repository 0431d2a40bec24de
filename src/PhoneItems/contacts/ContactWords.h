#ifndef PHONEITEMS_CONTACTS_CONTACTWORDS_H
#define PHONEITEMS_CONTACTS_CONTACTWORDS_H

#include <QString>

//! What the address book stores, as the item model wants it.
namespace PhoneBackup::ContactWords {

/*!
    The label \a stored. The phone's tokens that exports have words for stay as they are, as do the
    user's own labels; of any other token the words inside it: "_$!<YoungerSister>!$_" gives
    "younger sister".
*/
QString label(const QString &stored);

/*!
    The calendar day that \a stored (decimal seconds since 2001, or "2001-12-31") stands for, as the
    same for a moment that lies on that day both in Greenwich and in local time. Empty for what is
    no day of the years 1 to 9999. Old releases stored midnight of where the phone was.
*/
QString day(const QString &stored);

//! The part that a value of \a kind is when it has none but should; empty for other kinds.
QString partOfPlainValue(int kind);

//! The known spelling of the \a key of a part of an address or account.
QString partKey(const QString &key);

} // namespace PhoneBackup::ContactWords

#endif
