#ifndef SAMPLE_ADDRESSBOOKSAMPLE_H
#define SAMPLE_ADDRESSBOOKSAMPLE_H

#include "sample/People.h"

namespace Sample {

class BackupWriter;

//! Adds the address book with \a contacts in it.
void addAddressBook(BackupWriter &writer, const QList<Person> &contacts);

} // namespace Sample

#endif
