#ifndef SAMPLE_VOICEMESSAGE_H
#define SAMPLE_VOICEMESSAGE_H

#include <QByteArray>

namespace Sample {

class Random;

//! What the phone records for a voice message (.caf): a hum of \a seconds.
QByteArray voiceMessage(Random &random, int seconds);

} // namespace Sample

#endif
