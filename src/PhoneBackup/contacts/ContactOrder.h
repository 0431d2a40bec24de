#ifndef PHONEBACKUP_CONTACTS_CONTACTORDER_H
#define PHONEBACKUP_CONTACTS_CONTACTORDER_H

#include "PhoneBackup/source/AddressBook.h"

#include <QLocale>

namespace PhoneBackup {

/*!
    The numbers of \a people in the order of the phone's own list, which goes by family name, then
    by given name. Who has no key there, because nothing made one, is put where the words of the
    language of \a locale place the name; of these, names that begin with no letter come behind the
    others, people without a name last.
*/
std::vector<int> contactOrder(const std::vector<AddressBook::Person> &people,
                              const QLocale &locale);

//! The language that the phone is set to, English when the backup does not tell.
QLocale phoneLocale(Source &source);

} // namespace PhoneBackup

#endif
