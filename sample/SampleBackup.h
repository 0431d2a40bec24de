#ifndef SAMPLE_SAMPLEBACKUP_H
#define SAMPLE_SAMPLEBACKUP_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds everything that \a options asks for; finishing is left to the caller.
void addSampleContents(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
