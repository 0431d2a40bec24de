#ifndef SAMPLE_RINGTONESAMPLE_H
#define SAMPLE_RINGTONESAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds ringtones with their names.
void addRingtones(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
