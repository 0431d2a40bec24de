#ifndef SAMPLE_WHATSAPPSAMPLE_H
#define SAMPLE_WHATSAPPSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

//! WhatsApp's chats: the showcase, or as many messages as \a options ask for.
void addWhatsapp(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
