#ifndef SAMPLE_INDEXROWSSAMPLE_H
#define SAMPLE_INDEXROWSSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds about that many rows, folders among them, as on a phone in long use, but no content files.
void addIndexRows(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
