#ifndef EXPORT_SOUNDTOPLAYABLE_WAVFILE_H
#define EXPORT_SOUNDTOPLAYABLE_WAVFILE_H

#include <QByteArray>

namespace Export::SoundToPlayable {

//! A WAV file of \a samples: 16 bits each, little-endian, the channels in turn.
QByteArray wavFile(const QByteArray &samples, int sampleRate, int channels);

} // namespace Export::SoundToPlayable

#endif
