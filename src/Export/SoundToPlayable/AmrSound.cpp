#include "Export/SoundToPlayable/AmrSound.h"

#include "Export/SoundToPlayable/WavFile.h"

#include <algorithm>
#include <array>
#include <memory>
#include <opencore-amrnb/interf_dec.h>
#include <opencore-amrwb/dec_if.h>

namespace Export::SoundToPlayable::AmrSound {

namespace {

constexpr QByteArrayView kNarrow = "#!AMR\n";
constexpr QByteArrayView kWide = "#!AMR-WB\n";

// Bytes of a frame by its type, the four bits in the middle of the byte before it (RFC 4867, tables
// of section 3.6); -1 for types that there are not.
constexpr std::array kNarrowBytes { 12, 13, 15, 17, 19, 20, 26, 31, 5, -1, -1, -1, -1, -1, -1, 0 };
constexpr std::array kWideBytes { 17, 23, 32, 36, 40, 46, 50, 58, 60, 5, -1, -1, -1, -1, 0, 0 };

using Decoder = std::unique_ptr<void, void (*)(void *)>;

// The longest is an hour and a half: what lasts longer is none of a phone's.
constexpr qsizetype kMostFrames = 270'000;

struct Kind
{
    QByteArrayView mark;
    const std::array<int, 16> &frameBytes;
    int sampleRate;
    int samplesPerFrame;
};

template <class Decode>
QByteArray samplesOf(QByteArrayView amr, const Kind &kind, const Decode &decode)
{
    QByteArray samples;
    std::array<short, 320> frame {};
    amr = amr.sliced(kind.mark.size());
    for (qsizetype count = 0; !amr.isEmpty() && count < kMostFrames; ++count) {
        const int bytes = kind.frameBytes[std::size_t(amr.front() >> 3 & 0xF)];
        if (bytes < 0 || amr.size() <= bytes)
            break;
        // The decoder reads as many bytes as the longest frame has.
        std::array<unsigned char, 64> input {};
        std::copy_n(amr.begin(), 1 + bytes, input.begin());
        decode(input.data(), frame.data());
        samples.append(reinterpret_cast<const char *>(frame.data()),
                       kind.samplesPerFrame * qsizetype(sizeof(short)));
        amr = amr.sliced(1 + bytes);
    }
    return samples;
}

} // namespace

bool isAmr(QByteArrayView bytes)
{
    return bytes.startsWith(kNarrow) || bytes.startsWith(kWide);
}

QByteArray toWav(QByteArrayView amr)
{
    QByteArray samples;
    const Kind narrow { kNarrow, kNarrowBytes, 8000, 160 };
    const Kind wide { kWide, kWideBytes, 16000, 320 };
    if (amr.startsWith(kWide)) {
        const Decoder decoder(D_IF_init(), &D_IF_exit);
        samples = samplesOf(amr, wide, [&](const unsigned char *in, short *out) {
            D_IF_decode(decoder.get(), in, out, 0);
        });
    } else {
        const Decoder decoder(Decoder_Interface_init(), &Decoder_Interface_exit);
        samples = samplesOf(amr, narrow, [&](const unsigned char *in, short *out) {
            Decoder_Interface_Decode(decoder.get(), in, out, 0);
        });
    }
    const int sampleRate = amr.startsWith(kWide) ? wide.sampleRate : narrow.sampleRate;
    return samples.isEmpty() ? QByteArray() : wavFile(samples, sampleRate, 1);
}

} // namespace Export::SoundToPlayable::AmrSound
