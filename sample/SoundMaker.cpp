#include "sample/SoundMaker.h"

#include "sample/MovieWriter.h"
#include "sample/Random.h"

#include <array>

namespace Sample {

namespace {

constexpr int kSamplesPerSecond = 16000;

// Whole numbers all the way: the sine of the C library may differ in its last digit.
int sine(quint32 phase)
{
    // Two parabolas for the two halves of the wave; 16 bits of phase are one turn.
    const int x = static_cast<int>(phase & 0x7fff);
    const int bow = static_cast<int>(static_cast<qint64>(x) * (0x8000 - x) >> 13);
    return (phase & 0x8000) != 0 ? -bow : bow;
}

//! Swells in and dies away, so that notes do not click.
int envelope(int at, int length)
{
    const int attack = length / 10;
    return at < attack ? at * 256 / attack : (length - at) * 256 / (length - attack);
}

} // namespace

QByteArray tuneFile(Random &random, int seconds, const QDateTime &created)
{
    // The five black keys from F sharp on, in hertz: whatever their order, it sounds well.
    constexpr std::array kHertz { 185, 208, 233, 277, 311, 370, 415, 466, 554, 622 };
    constexpr int kNoteLength = kSamplesPerSecond / 2;

    QList<qint16> samples;
    const int notes = seconds * kSamplesPerSecond / kNoteLength;
    samples.reserve(qsizetype(notes) * kNoteLength);
    for (int note = 0; note < notes; ++note) {
        const quint32 step = static_cast<quint32>(random.pick(kHertz)) * 65536 / kSamplesPerSecond;
        for (int i = 0; i < kNoteLength; ++i) {
            const quint32 phase = step * static_cast<quint32>(i);
            const int wave = sine(phase) + sine(phase * 2) / 4;
            samples.append(static_cast<qint16>(wave * envelope(i, kNoteLength) / 256 / 5));
        }
    }
    return soundFile(samples, kSamplesPerSecond, created);
}

QByteArray amrFile(Random &random, int seconds)
{
    constexpr char kMode475 = 0x04; // 4.75 kbit/s, good quality: 12 bytes a frame.
    constexpr int kFramesPerSecond = 50;
    QByteArray file("#!AMR\n");
    for (int i = 0; i < seconds * kFramesPerSecond; ++i) {
        file.append(kMode475);
        file.append(random.bytes(12));
    }
    return file;
}

} // namespace Sample
