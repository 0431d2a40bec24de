#include "CodedSize.h"

#include <QByteArray>

#include <algorithm>
#include <utility>

namespace {

// Takes bits from the front; once there are too few, all are zero.
class BitReader
{
public:
    explicit BitReader(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
    }
    bool isOk() const { return m_isOk; }
    quint32 bits(int count)
    {
        m_isOk = m_isOk && count <= m_bytes.size() * 8 - m_at;
        quint32 value = 0;
        for (; m_isOk && count > 0; --count, ++m_at)
            value = value << 1 | ((static_cast<uchar>(m_bytes.at(m_at / 8)) >> (7 - m_at % 8)) & 1);
        return value;
    }
    void skip(int count)
    {
        for (; count > 0; --count)
            bits(1);
    }
    // Exponential Golomb code.
    quint32 golomb()
    {
        int zeros = 0;
        while (m_isOk && zeros < 31 && bits(1) == 0)
            ++zeros;
        return (1U << zeros) - 1 + bits(zeros);
    }

private:
    QByteArray m_bytes;
    qsizetype m_at = 0;
    bool m_isOk = true;
};

// Invalid when it is beyond any picture.
QSize sizeOf(quint32 width, quint32 height)
{
    constexpr quint32 kMaxSide = 0x10000;
    return width <= kMaxSide && height <= kMaxSide
        ? QSize(static_cast<int>(width), static_cast<int>(height))
        : QSize();
}

// Whether the parameters of a sequence that follow its size hold together with it. The decoder
// would write to standard error that they do not.
bool holdTogether(BitReader &reader, int layers, quint32 width, quint32 height)
{
    constexpr quint32 kMaxLog2 = 16; // far beyond any block
    if (reader.bits(1) != 0) { // a window
        for (int side = 0; side < 4; ++side)
            reader.golomb();
    }
    constexpr quint32 kMaxFurtherDepth = 8; // besides the 8 bits that a sample has at least
    const bool areDepthsKnown =
        reader.golomb() <= kMaxFurtherDepth && reader.golomb() <= kMaxFurtherDepth;
    reader.golomb(); // bits of a place in the order
    for (int layer = reader.bits(1) != 0 ? 0 : layers; layer <= layers; ++layer) {
        for (int number = 0; number < 3; ++number)
            reader.golomb();
    }
    const quint32 smallestBlock = std::min(reader.golomb(), kMaxLog2) + 3; // as powers of two
    const quint32 largestBlock = smallestBlock + std::min(reader.golomb(), kMaxLog2);
    const quint32 smallestTransform = std::min(reader.golomb(), kMaxLog2) + 2;
    const quint32 largestTransform = smallestTransform + std::min(reader.golomb(), kMaxLog2);
    constexpr quint32 kLargestTransform = 5;
    const auto isDeep = [&](quint32 depth) { return smallestTransform + depth > largestBlock; };
    const bool areTooDeep =
        isDeep(std::min(reader.golomb(), kMaxLog2)) || isDeep(std::min(reader.golomb(), kMaxLog2));
    const quint32 outside = (1U << smallestBlock) - 1;
    return reader.isOk() && areDepthsKnown && !areTooDeep && (width & outside) == 0
        && (height & outside) == 0 && smallestTransform <= smallestBlock
        && largestTransform <= std::min(largestBlock, kLargestTransform);
}

} // namespace

QSize CodedSize::ofHevc(QByteArrayView header)
{
    QByteArray plain = header.toByteArray();
    for (qsizetype at = 0; (at = plain.indexOf(QByteArrayView("\0\0\3", 3), at)) >= 0; at += 2)
        plain.remove(at + 2, 1); // keeps start codes from arising by chance
    BitReader reader(plain);
    reader.skip(16 + 4); // kind of unit, outer parameters
    const auto layers = static_cast<int>(reader.bits(3));
    reader.skip(1 + 88 + 8); // nesting, profile and level
    int layerBits = 0;
    for (int i = 0; i < layers; ++i)
        layerBits += (reader.bits(1) != 0 ? 88 : 0) + (reader.bits(1) != 0 ? 8 : 0);
    if (layers > 0)
        reader.skip((8 - layers) * 2);
    reader.skip(layerBits);
    reader.golomb(); // number of the parameters
    constexpr quint32 kChroma444 = 3;
    if (reader.golomb() == kChroma444)
        reader.skip(1);
    const quint32 width = reader.golomb();
    const quint32 height = reader.golomb();
    return holdTogether(reader, layers, width, height) ? sizeOf(width, height) : QSize();
}

QSize CodedSize::ofAv1(QByteArrayView header)
{
    BitReader reader(header.toByteArray());
    reader.skip(3 + 1); // profile, still
    const bool isReduced = reader.bits(1) != 0;
    if (isReduced) {
        reader.skip(5); // level
    } else {
        if (reader.bits(1) != 0)
            return {}; // timing, which no picture needs
        const bool hasDelays = reader.bits(1) != 0;
        for (int points = static_cast<int>(reader.bits(5)); points >= 0; --points) {
            reader.skip(12);
            if (reader.bits(5) > 7) // level
                reader.skip(1);
            if (hasDelays && reader.bits(1) != 0)
                reader.skip(4);
        }
    }
    const auto widthBits = static_cast<int>(reader.bits(4)) + 1;
    const auto heightBits = static_cast<int>(reader.bits(4)) + 1;
    const quint32 width = reader.bits(widthBits);
    const quint32 height = reader.bits(heightBits);
    // Frames of an unreduced stream give their own sizes, in as many bits.
    const bool isTight = (widthBits == 1 || width >> (widthBits - 1) != 0)
        && (heightBits == 1 || height >> (heightBits - 1) != 0);
    return reader.isOk() && (isReduced || isTight) ? sizeOf(width + 1, height + 1) : QSize();
}
