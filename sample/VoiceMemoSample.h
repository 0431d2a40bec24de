#ifndef SAMPLE_VOICEMEMOSAMPLE_H
#define SAMPLE_VOICEMEMOSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds recordings, with one recently deleted and one that the database does not know.
void addVoiceMemos(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
