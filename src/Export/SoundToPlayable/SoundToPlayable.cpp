#include "Export/SoundToPlayable/SoundToPlayable.h"

#include "Export/SoundToPlayable/AmrSound.h"
#include "Export/SoundToPlayable/CafFile.h"
#include "Export/SoundToPlayable/OggOpus.h"
#include "Export/SoundToPlayable/WavFile.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Export::SoundToPlayable {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kStartBytes = 16;

// Hours of speech; longer sound does not come in these formats.
constexpr qint64 kLongestFile = qint64(256) << 20;

constexpr int kOpusRate = 48000;

// Of the letters of G.711, sign, three bits of exponent and four of mantissa; the bits of µ-law are
// inverted, every other one of A-law.
qint16 muLaw(quint8 letter)
{
    const int bits = ~letter & 0xFF;
    const int exponent = bits >> 4 & 7;
    const int value = ((((bits & 0xF) << 3) + 0x84) << exponent) - 0x84;
    return qint16((bits & 0x80) != 0 ? -value : value);
}

qint16 aLaw(quint8 letter)
{
    const int bits = letter ^ 0x55;
    const int exponent = bits >> 4 & 7;
    const int mantissa = (bits & 0xF) << 4;
    const int value = exponent == 0 ? mantissa + 8 : (mantissa + 0x108) << (exponent - 1);
    return qint16((bits & 0x80) != 0 ? value : -value);
}

template <class Decode>
QByteArray decoded(QByteArrayView letters, const Decode &decode)
{
    QByteArray samples(letters.size() * 2, Qt::Uninitialized);
    char *to = samples.data();
    for (const char letter : letters) {
        qToLittleEndian(decode(quint8(letter)), to);
        to += 2;
    }
    return samples;
}

// Linear samples of 8 to 32 bits, or of a float, in either order of bytes.
QByteArray linear(const CafFile &caf)
{
    constexpr quint32 kIsFloat = 1;
    constexpr quint32 kIsLittleEndian = 2;
    const int bytes = caf.bitsPerChannel() / 8;
    const bool isFloat = (caf.flags() & kIsFloat) != 0;
    const bool isLittle = (caf.flags() & kIsLittleEndian) != 0;
    if (bytes < 1 || bytes > 4 || (isFloat && bytes != 4))
        return {};
    QByteArray samples;
    samples.reserve(caf.data().size() / bytes * 2);
    for (qsizetype at = 0; at + bytes <= caf.data().size(); at += bytes) {
        quint32 value = 0; // the highest byte first
        for (int i = 0; i < bytes; ++i)
            value |= quint32(quint8(caf.data()[at + i])) << 8 * (isLittle ? 4 - bytes + i : 3 - i);
        auto sample = qint16(value >> 16);
        if (isFloat) {
            float number;
            std::memcpy(&number, &value, sizeof number);
            sample = std::isfinite(number)
                ? qint16(std::lround(std::clamp(number, -1.0F, 1.0F) * 32767))
                : qint16(0);
        }
        char little[2];
        qToLittleEndian(sample, little);
        samples.append(little, 2);
    }
    return samples;
}

Conversion opus(const CafFile &caf)
{
    const double scale = kOpusRate / caf.sampleRate();
    OpusSound sound;
    sound.channels = std::min(caf.channels(), 2);
    sound.sampleRate = quint32(caf.sampleRate());
    sound.skippedFrames = std::min<qint64>(qint64(double(caf.primingFrames()) * scale), 0xFFFF);
    if (caf.validFrames() >= 0)
        sound.playedFrames = qint64(double(caf.validFrames()) * scale);
    for (const CafFile::Packet &packet : caf.packets())
        sound.packets.append({ packet.bytes, qint64(double(packet.frames) * scale) });
    if (sound.packets.isEmpty())
        return { {}, {}, u"It holds no sound"_s };
    return { oggOpus(sound), u".ogg"_s, {} };
}

// The two bytes that tell profile, rate and channels of AAC (ISO 14496-3, 1.6.2.1), in the
// descriptor 5 of what a decoder needs to know.
quint16 aacConfiguration(QByteArrayView cookie)
{
    constexpr char kDecoderSpecific = 5;
    for (qsizetype at = 0; at + 4 < cookie.size(); ++at) {
        if (cookie[at] != kDecoderSpecific)
            continue;
        qsizetype next = at + 1;
        while (next < at + 4 && static_cast<unsigned char>(cookie[next]) == 0x80)
            ++next;
        if (next + 2 < cookie.size() && cookie[next] >= 2 && cookie[next] <= 16)
            return qFromBigEndian<quint16>(cookie.data() + next + 1);
    }
    return 0;
}

// Each packet with a header of its own (ISO 14496-3, 1.A.3.2).
Conversion aac(const CafFile &caf)
{
    constexpr qsizetype kHeaderBytes = 7;
    constexpr qsizetype kLongestPacket = 0x1FFF - kHeaderBytes;
    const quint16 configuration = aacConfiguration(caf.cookie());
    const int profile = configuration >> 11; // 2: low complexity
    const int rate = configuration >> 7 & 0xF;
    const int channels = configuration >> 3 & 0xF;
    if (profile < 1 || profile > 4 || rate > 12 || channels < 1 || channels > 7)
        return { {}, {}, u"It does not say how its AAC is coded"_s };
    QByteArray out;
    for (const CafFile::Packet &packet : caf.packets()) {
        if (packet.bytes.size() > kLongestPacket)
            continue;
        const auto length = int(packet.bytes.size() + kHeaderBytes);
        const int header[] = { 0xFF,
                               0xF1,
                               (profile - 1) << 6 | rate << 2 | channels >> 2,
                               (channels & 3) << 6 | length >> 11,
                               length >> 3 & 0xFF,
                               (length & 7) << 5 | 0x1F,
                               0xFC };
        for (const int byte : header)
            out += char(byte);
        out.append(packet.bytes.data(), packet.bytes.size());
    }
    if (out.isEmpty())
        return { {}, {}, u"It holds no sound"_s };
    return { out, u".aac"_s, {} };
}

Conversion ofCaf(const QByteArray &file)
{
    const CafFile caf(file);
    if (!caf.isReadable())
        return { {}, {}, u"It is damaged"_s };
    const QByteArrayView codec = caf.codec();
    if (codec == "opus")
        return opus(caf);
    if (codec == "aac ")
        return aac(caf);
    QByteArray wav;
    if (codec == "samr")
        wav = AmrSound::toWav("#!AMR\n" + caf.data().toByteArray());
    QByteArray samples;
    if (codec == "lpcm")
        samples = linear(caf);
    else if (codec == "ulaw")
        samples = decoded(caf.data(), &muLaw);
    else if (codec == "alaw")
        samples = decoded(caf.data(), &aLaw);
    if (!samples.isEmpty())
        wav = wavFile(samples, int(caf.sampleRate()), caf.channels());
    if (wav.isEmpty())
        return { {}, {}, u"Its coding “%1” is not supported"_s.arg(QString::fromLatin1(codec)) };
    return { wav, u".wav"_s, {} };
}

} // namespace

bool isWanted(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray start = file.read(kStartBytes);
    return AmrSound::isAmr(start) || CafFile::isCaf(start);
}

Conversion convert(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return { {}, {}, file.errorString() };
    if (file.size() > kLongestFile)
        return { {}, {}, u"It is too large"_s };
    const QByteArray bytes = file.readAll();
    if (!AmrSound::isAmr(bytes))
        return ofCaf(bytes);
    const QByteArray wav = AmrSound::toWav(bytes);
    return wav.isEmpty() ? Conversion { {}, {}, u"It holds no sound"_s }
                         : Conversion { wav, u".wav"_s, {} };
}

} // namespace Export::SoundToPlayable
