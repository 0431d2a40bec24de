#ifndef PHONEITEMS_CONTACTS_CONTACTWORDS_H
#define PHONEITEMS_CONTACTS_CONTACTWORDS_H

#include <QDate>
#include <QString>

//! What the address book stores, as the item model wants it.
namespace PhoneItems::ContactWords {

/*!
    The label \a stored. The phone's tokens that exports have words for stay as they are, as do the
    user's own labels; of any other token the words inside it: "_$!<YoungerSister>!$_" gives
    "younger sister".
*/
QString label(const QString &stored);

/*!
    \a day as seconds since 2001, as the same for a moment that lies on that day both in Greenwich
    and in local time; empty for an invalid one.
*/
QString day(const QDate &day);

} // namespace PhoneItems::ContactWords

#endif
