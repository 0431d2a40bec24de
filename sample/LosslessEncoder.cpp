#include "sample/LosslessEncoder.h"

#include "sample/BoxWriter.h"

namespace Sample {

namespace {

class BitWriter
{
public:
    void put(quint32 value, int bits)
    {
        for (int bit = bits - 1; bit >= 0; --bit) {
            m_current = static_cast<quint8>(quint32(m_current) << 1 | ((value >> bit) & 1));
            if (++m_filled == 8)
                flushByte();
        }
    }

    QByteArray aligned()
    {
        while (m_filled != 0)
            put(0, 1);
        return m_bytes;
    }

private:
    void flushByte()
    {
        m_bytes.append(static_cast<char>(m_current));
        m_current = 0;
        m_filled = 0;
    }

    QByteArray m_bytes;
    quint8 m_current = 0;
    int m_filled = 0;
};

} // namespace

QByteArray LosslessEncoder::configuration() const
{
    BoxWriter out;
    out.put32(kSamplesPerFrame);
    out.put8(0); // Compatible version.
    out.put8(16); // Bits a sample.
    out.put8(40); // Three parameters of the model, at their usual values.
    out.put8(10);
    out.put8(14);
    out.put8(1); // Channels.
    out.put16(255);
    out.put32(0); // Longest frame and mean rate: unknown.
    out.put32(0);
    out.put32(static_cast<quint32>(m_samplesPerSecond));
    return out.bytes();
}

QByteArray LosslessEncoder::encode(const QList<qint16> &samples) const
{
    constexpr quint32 kSingleChannel = 0;
    constexpr quint32 kEnd = 7;
    const bool isPartial = samples.size() != kSamplesPerFrame;
    BitWriter out;
    out.put(kSingleChannel, 3);
    out.put(0, 4 + 12); // Number of the element, then unused bits.
    out.put(isPartial ? 1 : 0, 1);
    out.put(0, 2); // No bytes are shifted out of the samples.
    out.put(1, 1); // Stored as they are.
    if (isPartial)
        out.put(static_cast<quint32>(samples.size()), 32);
    for (const qint16 sample : samples)
        out.put(static_cast<quint16>(sample), 16);
    out.put(kEnd, 3);
    return out.aligned();
}

} // namespace Sample
