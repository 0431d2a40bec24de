#include "sample/Random.h"

#include <QUuid>

namespace Sample {

Random::Random(quint64 seed, const char *topic)
{
    quint64 hash = 14695981039346656037ULL ^ seed;
    for (const char *at = topic; *at != '\0'; ++at)
        hash = (hash ^ static_cast<unsigned char>(*at)) * 1099511628211ULL;
    m_engine.seed(hash);
}

int Random::below(int limit)
{
    return static_cast<int>((m_engine() >> 32) % static_cast<quint64>(limit));
}

double Random::real(double low, double high)
{
    constexpr double kSteps = 1 << 20;
    return low + (high - low) * static_cast<double>(m_engine() >> 44) / kSteps;
}

QByteArray Random::bytes(qsizetype sizeBytes)
{
    QByteArray result;
    result.reserve(sizeBytes + 8);
    while (result.size() < sizeBytes) {
        quint64 word = m_engine();
        for (int i = 0; i < 8; ++i, word >>= 8)
            result.append(static_cast<char>(word & 0xff));
    }
    result.truncate(sizeBytes);
    return result;
}

QString Random::uuid()
{
    QByteArray random = bytes(16);
    random[6] = static_cast<char>((random[6] & 0x0f) | 0x40); // Version 4, variant of the standard.
    random[8] = static_cast<char>((random[8] & 0x3f) | 0x80);
    return QUuid::fromRfc4122(random).toString(QUuid::WithoutBraces).toUpper();
}

} // namespace Sample
