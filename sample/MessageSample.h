#ifndef SAMPLE_MESSAGESAMPLE_H
#define SAMPLE_MESSAGESAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds conversations, the files sent in them, and the address book with the people's names.
void addMessages(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
