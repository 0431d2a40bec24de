#ifndef PHONEBACKUP_MODEL_CONTACTORDER_H
#define PHONEBACKUP_MODEL_CONTACTORDER_H

#include "model/AddressBook.h"

#include <QLocale>

namespace PhoneBackup {

/*!
    The numbers of \a people in the order of a list: by family name, then by given name, as words
   are ordered in the language of \a locale. Names that begin with no letter come behind the others,
    people without a name last.
*/
std::vector<int> contactOrder(const std::vector<AddressBook::Person> &people,
                              const QLocale &locale);

//! The language that the phone is set to, English when the backup does not tell.
QLocale phoneLocale(Source &source);

} // namespace PhoneBackup

#endif
