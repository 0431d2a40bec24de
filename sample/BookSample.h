#ifndef SAMPLE_BOOKSAMPLE_H
#define SAMPLE_BOOKSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds EPUB and PDF books of the reader, one of the EPUBs as a folder of files.
void addBooks(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
