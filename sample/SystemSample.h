#ifndef SAMPLE_SYSTEMSAMPLE_H
#define SAMPLE_SYSTEMSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds what every phone has besides: settings, caches of the system, empty folders.
void addSystemFiles(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
