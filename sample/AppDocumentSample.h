#ifndef SAMPLE_APPDOCUMENTSAMPLE_H
#define SAMPLE_APPDOCUMENTSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds invented apps with documents, files that are not for people, and the Files app's own
//! storage.
void addAppDocuments(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
