#ifndef SAMPLE_MOVIEWRITER_H
#define SAMPLE_MOVIEWRITER_H

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QSize>

namespace Sample {

class Random;

//! A QuickTime film of one track whose frames are JPEG files of \a size.
QByteArray quickTimeMovie(const QList<QByteArray> &jpegFrames,
                          QSize size,
                          int framesPerSecond,
                          const QDateTime &created);

/*!
    A picture that moves (.heics), as stickers do. \a frames are HEIC files of one picture each,
    of one \a size, that nothing belongs to.
*/
QByteArray heicSequence(const QList<QByteArray> &frames,
                        QSize size,
                        int framesPerSecond,
                        const QDateTime &created);

//! A sound file (.m4a, .m4r) with one lossless track of \a samples, one channel.
QByteArray soundFile(const QList<qint16> &samples, int samplesPerSecond, const QDateTime &created);

//! A short film of a landscape in which boats, clouds and birds move.
QByteArray landscapeMovie(Random &random, QSize size, int frames, const QDateTime &created);

} // namespace Sample

#endif
