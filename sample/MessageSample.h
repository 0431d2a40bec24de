#ifndef SAMPLE_MESSAGESAMPLE_H
#define SAMPLE_MESSAGESAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds conversations and the files sent in them. The people's names are in the address book.
void addMessages(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
