#ifndef SAMPLE_CALLSAMPLE_H
#define SAMPLE_CALLSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds the call history: calls of every kind, the last of them in the store for the time before
//! the phone was first unlocked.
void addCalls(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
