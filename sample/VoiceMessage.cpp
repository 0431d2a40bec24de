#include "sample/VoiceMessage.h"

#include "sample/Random.h"

#include <QtEndian>

#include <array>

namespace Sample {

namespace {

constexpr int kSamplesPerSecond = 8000;

template <class T>
void append(QByteArray &file, T value)
{
    std::array<char, sizeof(T)> bytes = {};
    qToBigEndian(value, bytes.data());
    file.append(bytes.data(), bytes.size());
}

void beginChunk(QByteArray &file, const char *type, qint64 sizeBytes)
{
    file.append(type, 4);
    append(file, sizeBytes);
}

} // namespace

QByteArray voiceMessage(Random &random, int seconds)
{
    const qint64 samples = qint64(seconds) * kSamplesPerSecond;
    QByteArray file("caff");
    append<quint16>(file, 1); // version
    append<quint16>(file, 0);

    beginChunk(file, "desc", 32);
    append<double>(file, kSamplesPerSecond);
    file.append("ulaw");
    append<quint32>(file, 0); // format flags
    append<quint32>(file, 1); // bytes a packet
    append<quint32>(file, 1); // samples a packet
    append<quint32>(file, 1); // channels
    append<quint32>(file, 8); // bits a sample

    beginChunk(file, "data", 4 + samples);
    append<quint32>(file, 0); // number of edits
    constexpr int kSwingSamples = 40;
    const int pitch = random.between(0, 9);
    for (qint64 i = 0; i < samples; ++i) {
        // In this law silence is all ones, and a step of the code is a step in loudness.
        const auto swing = static_cast<int>(i % (kSwingSamples + pitch));
        const bool isUpper = swing * 2 < kSwingSamples + pitch;
        file.append(static_cast<char>(isUpper ? 0xe0 : 0x60));
    }
    return file;
}

} // namespace Sample
