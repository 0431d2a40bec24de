#ifndef EXPORT_SOUNDTOPLAYABLE_OGGOPUS_H
#define EXPORT_SOUNDTOPLAYABLE_OGGOPUS_H

#include <QByteArray>
#include <QList>

namespace Export::SoundToPlayable {

//! Opus packets, and what there is to know to play them.
struct OpusSound
{
    struct Packet
    {
        QByteArrayView bytes;
        qint64 frames; //!< At 48,000 per second, however it was recorded.
    };

    int channels = 1; //!< 1 or 2.
    quint32 sampleRate = 48000; //!< Of what was recorded.
    qint64 skippedFrames = 0; //!< At its beginning, at 48,000 per second.
    qint64 playedFrames = -1; //!< Without those; less than 0: all.
    QList<Packet> packets;
};

//! An Ogg file of \a sound (RFC 3533 and RFC 7845).
QByteArray oggOpus(const OpusSound &sound);

} // namespace Export::SoundToPlayable

#endif
