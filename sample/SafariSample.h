#ifndef SAMPLE_SAFARISAMPLE_H
#define SAMPLE_SAFARISAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds bookmarks in nested folders, a reading list and the history of the browser.
void addBrowserData(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
