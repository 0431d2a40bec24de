#include "PhoneBackup/source/AudioDuration.h"

#include "PhoneBackup/source/MovieBoxes.h"

#include <QtEndian>

#include <array>
#include <bit>
#include <cmath>

namespace PhoneBackup {

namespace {

constexpr int kUnknown = -1;
constexpr double kLongest = 7 * 24 * 3600;

int rounded(double seconds)
{
    return seconds > 0 && seconds < kLongest ? int(std::lround(seconds)) : kUnknown;
}

// Zero beyond the end.
template <class T>
T bigEndian(QByteArrayView data, qsizetype offset)
{
    return offset >= 0 && data.size() >= qsizetype(sizeof(T))
            && offset <= data.size() - qsizetype(sizeof(T))
        ? qFromBigEndian<T>(data.data() + offset)
        : T(0);
}

// Chunks of a Core Audio file: "desc" is a rate (64-bit floating point), format, flags, bytes and
// frames of a packet; "pakt" counts packets, then frames, of packets that differ in size.
int cafDuration(QByteArrayView file)
{
    double rate = 0;
    quint32 bytesPerPacket = 0;
    quint32 framesPerPacket = 0;
    qsizetype offset = 8;
    while (offset <= file.size() - 12) {
        const QByteArrayView type = file.sliced(offset, 4);
        const qint64 size = bigEndian<qint64>(file, offset + 4);
        const qsizetype body = offset + 12;
        if (type == "desc") {
            rate = std::bit_cast<double>(bigEndian<quint64>(file, body));
            bytesPerPacket = bigEndian<quint32>(file, body + 16);
            framesPerPacket = bigEndian<quint32>(file, body + 20);
        } else if (type == "pakt" && rate > 0) {
            return rounded(double(bigEndian<qint64>(file, body + 8)) / rate);
        } else if (type == "data" && rate > 0 && bytesPerPacket > 0) {
            const qint64 bytes = size < 0 ? file.size() - body : size; // -1: to the end
            return rounded(double(bytes) / bytesPerPacket * framesPerPacket / rate);
        }
        if (size < 0 || size > file.size() - body)
            break;
        offset = body + qsizetype(size);
    }
    return kUnknown;
}

int amrDuration(QByteArrayView file)
{
    const bool wide = file.startsWith("#!AMR-WB\n");
    // RFC 4867, 5.3: bytes of a frame's speech by its mode, which is in bits 3 to 6 of the byte
    // before them; a frame is 20 ms.
    static constexpr std::array<quint8, 16> kNarrow { 12, 13, 15, 17, 19, 20, 26, 31,
                                                      5,  0,  0,  0,  0,  0,  0,  0 };
    static constexpr std::array<quint8, 16> kWide { 17, 23, 32, 36, 40, 46, 50, 58,
                                                    60, 5,  0,  0,  0,  0,  0,  0 };
    const auto &sizes = wide ? kWide : kNarrow;
    int frames = 0;
    for (qsizetype offset = wide ? 9 : 6; offset < file.size(); ++frames)
        offset += 1 + sizes[(uchar(file[offset]) >> 3) & 0x0F];
    return rounded(frames * 0.02);
}

// ISO/IEC 14496-12, 8.2.2: version and flags, two dates, ticks a second, ticks; since version 1
// dates and ticks have 64 bits.
int movieDuration(QByteArrayView file)
{
    const QByteArrayView header = MovieBoxes::first(MovieBoxes::first(file, "moov"), "mvhd");
    const bool isLong = !header.isEmpty() && header.front() == 1;
    const quint32 scale = bigEndian<quint32>(header, isLong ? 20 : 12);
    const double length =
        isLong ? double(bigEndian<quint64>(header, 24)) : double(bigEndian<quint32>(header, 16));
    return scale == 0 ? kUnknown : rounded(length / scale);
}

} // namespace

int audioDurationSeconds(QByteArrayView file)
{
    if (file.startsWith("caff"))
        return cafDuration(file);
    if (file.startsWith("#!AMR"))
        return amrDuration(file);
    return movieDuration(file);
}

} // namespace PhoneBackup
