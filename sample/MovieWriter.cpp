#include "sample/MovieWriter.h"

#include "sample/BoxWriter.h"
#include "sample/LosslessEncoder.h"
#include "sample/PictureMaker.h"
#include "sample/Random.h"

#include <QtEndian>

#include <algorithm>

namespace Sample {

namespace {

constexpr quint32 kMovieTimescale = 600;

enum class Kind { Film, Sound, Sequence };

//! All that makes a file with one track.
struct Track
{
    Kind kind = Kind::Film;
    QSize size; //!< Of the picture; not used for sound.
    quint32 timescale = 0; //!< Units a second of \c sampleDuration.
    quint32 sampleDuration = 0;
    quint32 lastDuration = 0; //!< Of the last sample, which may be shorter.
    QByteArray sampleEntry; //!< The box that says how samples are coded.
    QList<QByteArray> samples;
    QDateTime created;

    quint32 duration() const
    {
        return sampleDuration * static_cast<quint32>(samples.size() - 1) + lastDuration;
    }
};

quint32 macTime(const QDateTime &moment)
{
    constexpr qint64 kUnixEpochIn1904Seconds = 2082844800;
    return static_cast<quint32>(moment.toSecsSinceEpoch() + kUnixEpochIn1904Seconds);
}

void putTimes(BoxWriter &out, const Track &track)
{
    out.put32(macTime(track.created));
    out.put32(macTime(track.created));
}

void putSampleTable(BoxWriter &out, const Track &track, quint32 dataOffset)
{
    const auto count = static_cast<quint32>(track.samples.size());
    out.begin("stbl");
    out.beginFull("stsd");
    out.put32(1);
    out.put(track.sampleEntry);
    out.end();
    out.beginFull("stts");
    out.put32(2);
    out.put32(count - 1);
    out.put32(track.sampleDuration);
    out.put32(1);
    out.put32(track.lastDuration);
    out.end();
    out.beginFull("stsc"); // All samples stand in one chunk.
    out.put32(1);
    out.put32(1);
    out.put32(count);
    out.put32(1);
    out.end();
    out.beginFull("stsz");
    out.put32(0);
    out.put32(count);
    for (const QByteArray &sample : track.samples)
        out.put32(static_cast<quint32>(sample.size()));
    out.end();
    out.beginFull("stco");
    out.put32(1);
    out.put32(dataOffset);
    out.end();
    out.end();
}

void putHandler(BoxWriter &out, const char *component, const char *type)
{
    out.beginFull("hdlr");
    out.put(QByteArray(component, 4));
    out.put(QByteArray(type, 4));
    out.zeros(13); // Maker, flags, mask and an empty name.
    out.end();
}

void putMedia(BoxWriter &out, const Track &track, quint32 dataOffset)
{
    out.begin("mdia");
    out.beginFull("mdhd");
    putTimes(out, track);
    out.put32(track.timescale);
    out.put32(track.duration());
    out.put16(0x55c4); // Language: undetermined.
    out.put16(0);
    out.end();
    const bool isFilm = track.kind == Kind::Film;
    const bool isSound = track.kind == Kind::Sound;
    // Only in a QuickTime file the component is more than a reserved field.
    putHandler(out, isFilm ? "mhlr" : "\0\0\0\0", isFilm ? "vide" : isSound ? "soun" : "pict");
    out.begin("minf");
    if (isSound) {
        out.beginFull("smhd");
        out.put32(0);
    } else {
        out.beginFull("vmhd", 0, 1);
        out.zeros(8);
    }
    out.end();
    if (isFilm)
        putHandler(out, "dhlr", "url ");
    out.begin("dinf");
    out.beginFull("dref");
    out.put32(1);
    out.beginFull("url ", 0, 1); // The samples stand in this very file.
    out.end();
    out.end();
    out.end();
    putSampleTable(out, track, dataOffset);
    out.end();
    out.end();
}

void putMovie(BoxWriter &out, const Track &track, quint32 dataOffset)
{
    const auto duration = static_cast<quint32>(static_cast<quint64>(track.duration())
                                               * kMovieTimescale / track.timescale);
    out.begin("moov");
    out.beginFull("mvhd");
    putTimes(out, track);
    out.put32(kMovieTimescale);
    out.put32(duration);
    out.put32(0x10000); // Speed 1.
    out.put16(0x100); // Full volume.
    out.zeros(10);
    out.putIdentityMatrix();
    out.zeros(24);
    out.put32(2); // The next track's number.
    out.end();
    out.begin("trak");
    out.beginFull("tkhd", 0, 0x7); // Enabled, in the film, in the preview.
    putTimes(out, track);
    out.put32(1);
    out.put32(0);
    out.put32(duration);
    out.zeros(12);
    out.put16(track.kind == Kind::Sound ? 0x100 : 0);
    out.put16(0);
    out.putIdentityMatrix();
    out.put32(static_cast<quint32>(std::max(0, track.size.width())) << 16);
    out.put32(static_cast<quint32>(std::max(0, track.size.height())) << 16);
    out.end();
    putMedia(out, track, dataOffset);
    out.end();
    out.end();
}

QByteArray movieFile(const Track &track)
{
    BoxWriter out;
    out.begin("ftyp");
    switch (track.kind) {
    case Kind::Film:
        out.put(QByteArray("qt  \0\0\0\0qt  ", 12));
        break;
    case Kind::Sound:
        out.put(QByteArray("M4A \0\0\0\0M4A mp42isom", 20));
        break;
    case Kind::Sequence:
        out.put(QByteArray("msf1\0\0\0\0msf1hevciso8", 20));
        break;
    }
    out.end();
    out.begin("mdat");
    const auto dataOffset = static_cast<quint32>(out.size());
    for (const QByteArray &sample : track.samples)
        out.put(sample);
    out.end();
    putMovie(out, track, dataOffset);
    return out.bytes();
}

// How pictures are coded; \a configuration are boxes of the coder's own.
QByteArray pictureSampleEntry(const char *coding,
                              const char *coder,
                              QSize size,
                              const QByteArray &configuration = {})
{
    constexpr quint32 kDotsPerInch72 = 0x480000;
    constexpr qsizetype kNameBytes = 32; // the first says how long it is
    const QByteArray name(coder);
    BoxWriter out;
    out.begin(coding);
    out.zeros(6);
    out.put16(1); // Data reference.
    out.zeros(16); // Maker, quality.
    out.put16(static_cast<quint16>(size.width()));
    out.put16(static_cast<quint16>(size.height()));
    out.put32(kDotsPerInch72);
    out.put32(kDotsPerInch72);
    out.put32(0);
    out.put16(1); // Frames a sample.
    out.put8(static_cast<quint8>(name.size()));
    out.put(name.leftJustified(kNameBytes - 1, '\0'));
    out.put16(24); // Colour depth, and no colour table.
    out.put16(0xffff);
    out.put(configuration);
    out.end();
    return out.bytes();
}

QByteArray losslessSampleEntry(const LosslessEncoder &encoder)
{
    BoxWriter out;
    out.begin("alac");
    out.zeros(6);
    out.put16(1); // Data reference.
    out.zeros(8);
    out.put16(1); // Channels.
    out.put16(16); // Bits a sample.
    out.zeros(4);
    out.put32(static_cast<quint32>(encoder.samplesPerSecond()) << 16);
    out.beginFull("alac");
    out.put(encoder.configuration());
    out.end();
    out.end();
    return out.bytes();
}

} // namespace

QByteArray quickTimeMovie(const QList<QByteArray> &jpegFrames,
                          QSize size,
                          int framesPerSecond,
                          const QDateTime &created)
{
    const quint32 duration = kMovieTimescale / static_cast<quint32>(framesPerSecond);
    Track track;
    track.size = size;
    track.timescale = kMovieTimescale;
    track.sampleDuration = duration;
    track.lastDuration = duration;
    track.sampleEntry = pictureSampleEntry("jpeg", "Photo - JPEG", size);
    track.samples = jpegFrames;
    track.created = created;
    return movieFile(track);
}

QByteArray heicSequence(const QList<QByteArray> &frames,
                        QSize size,
                        int framesPerSecond,
                        const QDateTime &created)
{
    const QByteArray &first = frames.first();
    const qsizetype configuration = first.indexOf("hvcC") - 4;
    const quint32 duration = kMovieTimescale / static_cast<quint32>(framesPerSecond);
    Track track;
    track.kind = Kind::Sequence;
    track.size = size;
    track.timescale = kMovieTimescale;
    track.sampleDuration = duration;
    track.lastDuration = duration;
    track.sampleEntry = pictureSampleEntry(
        "hvc1",
        "HEVC",
        size,
        first.sliced(configuration, qFromBigEndian<quint32>(first.constData() + configuration)));
    for (const QByteArray &frame : frames)
        track.samples.append(frame.sliced(frame.indexOf("mdat") + 4));
    track.created = created;
    return movieFile(track);
}

QByteArray soundFile(const QList<qint16> &samples, int samplesPerSecond, const QDateTime &created)
{
    constexpr qsizetype kFrame = LosslessEncoder::kSamplesPerFrame;
    const LosslessEncoder encoder(samplesPerSecond);
    Track track;
    track.kind = Kind::Sound;
    track.timescale = static_cast<quint32>(samplesPerSecond);
    track.sampleDuration = static_cast<quint32>(kFrame);
    track.sampleEntry = losslessSampleEntry(encoder);
    track.created = created;
    for (qsizetype at = 0; at < samples.size(); at += kFrame) {
        const QList<qint16> frame = samples.mid(at, kFrame);
        track.samples.append(encoder.encode(frame));
        track.lastDuration = static_cast<quint32>(frame.size());
    }
    return movieFile(track);
}

QByteArray landscapeMovie(Random &random, QSize size, int frames, const QDateTime &created)
{
    constexpr int kFramesPerSecond = 10;
    constexpr int kQuality = 70;
    // Each frame is the same landscape drawn anew, so each begins with the same numbers.
    const Random start = random;
    QList<QByteArray> jpegFrames;
    for (int i = 0; i < frames; ++i) {
        random = start;
        const double moment = static_cast<double>(i) / frames;
        jpegFrames.append(encodeJpeg(drawLandscape(random, size, moment), kQuality));
    }
    return quickTimeMovie(jpegFrames, size, kFramesPerSecond, created);
}

} // namespace Sample
