#ifndef SAMPLE_VOICEMAILSAMPLE_H
#define SAMPLE_VOICEMAILSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! Adds voicemail, with one trashed, one whose sound was never fetched, and a greeting. The newest
//! rows stand in the database's write-ahead log only.
void addVoicemails(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
