#ifndef SAMPLE_INDEXROWSSAMPLE_H
#define SAMPLE_INDEXROWSSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds rows without content files, spread over the index as on a phone in long use.
void addIndexRows(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
