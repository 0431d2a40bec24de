#include "export/PngChunks_p.h"

#include <QIODevice>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace {

// Layout: RFC 2083, section 3.
constexpr qint64 kSignatureBytes = 8;
constexpr qint64 kTypeBytes = 4;
constexpr quint32 kMaxChunkBytes = std::numeric_limits<qint32>::max();

std::optional<quint32> number(QIODevice &source)
{
    std::array<char, sizeof(quint32)> bytes {};
    if (source.read(bytes.data(), bytes.size()) != qint64(bytes.size()))
        return std::nullopt;
    return qFromBigEndian<quint32>(bytes.data());
}

// Whether so many bytes and a check sum are there; \a isRight tells whether that is the one of \a
// sum and the bytes.
bool readRest(QIODevice &source, quint32 length, uLong sum, bool &isRight)
{
    std::array<char, 16384> buffer {};
    for (qint64 left = length; left > 0;) {
        const qint64 count = source.read(buffer.data(), std::min<qint64>(left, buffer.size()));
        if (count <= 0)
            return false;
        sum = ::crc32(sum, reinterpret_cast<const Bytef *>(buffer.data()), uInt(count));
        left -= count;
    }
    const std::optional<quint32> stated = number(source);
    isRight = stated == sum;
    return stated.has_value();
}

} // namespace

PngChunks PngChunks::read(QIODevice &source)
{
    const qint64 start = source.pos();
    PngChunks chunks;
    source.seek(start + kSignatureBytes);
    while (chunks.state != State::Whole) {
        const std::optional<quint32> length = number(source);
        std::array<char, kTypeBytes> type {};
        if (!length || *length > kMaxChunkBytes
            || source.read(type.data(), type.size()) != kTypeBytes)
            break;
        const bool isImageData = std::equal(type.begin(), type.end(), "IDAT");
        const bool isEnd = std::equal(type.begin(), type.end(), "IEND");
        bool isRight = false;
        const uLong sum =
            ::crc32(0, reinterpret_cast<const Bytef *>(type.data()), uInt(type.size()));
        if (!readRest(source, *length, sum, isRight)) {
            if (isImageData)
                chunks.state = State::CutOff;
            break;
        }
        if (isImageData && isRight) {
            chunks.state = State::DamagedEnd; // until more is seen
            chunks.endOfPicture = source.pos() - start;
        } else if (!isRight && chunks.state == State::DamagedEnd && !isImageData) {
            break;
        } else if (isImageData || (isEnd && isRight)) {
            chunks.state = State::Whole;
        }
    }
    source.seek(start);
    return chunks;
}
