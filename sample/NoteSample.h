#ifndef SAMPLE_NOTESAMPLE_H
#define SAMPLE_NOTESAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Notes with lists, tables, links and files, in the store of Options::plannerRelease: from iOS 9
//! on packed records in one wide table, before that HTML.
void addNotes(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
