#ifndef EXPORT_SOUNDTOPLAYABLE_AMRSOUND_H
#define EXPORT_SOUNDTOPLAYABLE_AMRSOUND_H

#include <QByteArray>

//! Speech in AMR, as in RFC 4867, section 5: a mark, and frames of 20 ms with a byte before each.
namespace Export::SoundToPlayable::AmrSound {

//! Whether \a bytes begin as such a file does.
bool isAmr(QByteArrayView bytes);

//! The file \a amr as WAV; of one that is cut off, what is there. Empty when there is no frame.
QByteArray toWav(QByteArrayView amr);

} // namespace Export::SoundToPlayable::AmrSound

#endif
