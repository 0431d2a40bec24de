#ifndef SAMPLE_CONTACTSAMPLE_H
#define SAMPLE_CONTACTSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds the address book with its pictures; without contacts there is none.
void addContacts(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
