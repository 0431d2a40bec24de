#ifndef SAMPLE_LOSSLESSENCODER_H
#define SAMPLE_LOSSLESSENCODER_H

#include <QByteArray>
#include <QList>

namespace Sample {

/*!
    \brief Packs sound as lossless (ALAC) frames, one channel of 16 bits.

    The frames use the format's own way of storing samples as they are: what every player can read
    and nothing has to be modelled for.
*/
class LosslessEncoder
{
public:
    static constexpr int kSamplesPerFrame = 4096;

    explicit LosslessEncoder(int samplesPerSecond)
        : m_samplesPerSecond(samplesPerSecond)
    {
    }

    int samplesPerSecond() const { return m_samplesPerSecond; }

    //! What a player must know beforehand, for the file's header.
    QByteArray configuration() const;

    //! One frame; \a samples may be fewer than kSamplesPerFrame in the last one.
    QByteArray encode(const QList<qint16> &samples) const;

private:
    int m_samplesPerSecond;
};

} // namespace Sample

#endif
