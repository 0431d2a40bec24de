#include "Export/SoundToPlayable/WavFile.h"

#include <QtEndian>

namespace Export::SoundToPlayable {

namespace {

constexpr int kHeaderBytes = 44;
constexpr quint16 kPcm = 1;
constexpr int kBytesPerSample = 2;

template <class Number>
void append(QByteArray &out, Number number)
{
    char bytes[sizeof(Number)];
    qToLittleEndian(number, bytes);
    out.append(bytes, sizeof(Number));
}

} // namespace

QByteArray wavFile(const QByteArray &samples, int sampleRate, int channels)
{
    const int blockBytes = channels * kBytesPerSample;
    QByteArray out;
    out.reserve(kHeaderBytes + samples.size());
    out += "RIFF";
    append(out, quint32(kHeaderBytes - 8 + samples.size()));
    out += "WAVEfmt ";
    append(out, quint32(16));
    append(out, kPcm);
    append(out, quint16(channels));
    append(out, quint32(sampleRate));
    append(out, quint32(sampleRate * blockBytes));
    append(out, quint16(blockBytes));
    append(out, quint16(kBytesPerSample * 8));
    out += "data";
    append(out, quint32(samples.size()));
    return out + samples;
}

} // namespace Export::SoundToPlayable
