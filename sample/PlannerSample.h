#ifndef SAMPLE_PLANNERSAMPLE_H
#define SAMPLE_PLANNERSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Events of the calendar, and reminders in the store of Options::plannerRelease: the calendar
//! until iOS 12, then stores of their own.
void addPlanner(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
