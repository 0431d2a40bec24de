#include "Export/SoundToPlayable/CafFile.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>

namespace Export::SoundToPlayable {

namespace {

constexpr QByteArrayView kMark = "caff";
constexpr qsizetype kFileHeaderBytes = 8;
constexpr qsizetype kChunkHeaderBytes = 12;
constexpr qsizetype kDescriptionBytes = 32;
constexpr qsizetype kTableHeaderBytes = 24;
constexpr qsizetype kEditCountBytes = 4;
constexpr int kMostChannels = 8;
constexpr double kHighestRate = 384'000;

template <class Number>
Number number(QByteArrayView bytes, qsizetype at)
{
    return qFromBigEndian<Number>(bytes.data() + at);
}

// A number in groups of seven bits, the highest first; -1 at the end of \a table.
qint64 takeNumber(QByteArrayView &table)
{
    qint64 value = 0;
    for (int groups = 0; groups < 5 && !table.isEmpty(); ++groups) {
        const auto byte = static_cast<unsigned char>(table.front());
        table = table.sliced(1);
        value = value << 7 | (byte & 0x7F);
        if ((byte & 0x80) == 0)
            return value;
    }
    return -1;
}

} // namespace

bool CafFile::isCaf(QByteArrayView bytes)
{
    return bytes.startsWith(kMark);
}

CafFile::CafFile(const QByteArray &file)
    : m_file(file)
{
    QByteArrayView rest(m_file);
    if (!isCaf(rest) || rest.size() < kFileHeaderBytes)
        return;
    rest = rest.sliced(kFileHeaderBytes);
    while (rest.size() >= kChunkHeaderBytes) {
        const QByteArrayView type = rest.first(4);
        const auto stated = number<qint64>(rest, 4);
        rest = rest.sliced(kChunkHeaderBytes);
        // -1, and more than there is: up to the end.
        const qsizetype size =
            stated < 0 ? rest.size() : qsizetype(std::min<qint64>(stated, rest.size()));
        const QByteArrayView content = rest.first(size);
        if (type == "desc" && size >= kDescriptionBytes) {
            readDescription(content);
        } else if (type == "kuki") {
            m_cookie = content;
        } else if (type == "data" && size > kEditCountBytes) {
            m_data = content.sliced(kEditCountBytes);
        } else if (type == "pakt" && size >= kTableHeaderBytes) {
            m_valid = number<qint64>(content, 8);
            m_priming = std::max(0, number<qint32>(content, 16));
            m_table = content.sliced(kTableHeaderBytes);
        }
        rest = rest.sliced(size);
    }
}

void CafFile::readDescription(QByteArrayView content)
{
    const auto rate = std::bit_cast<double>(number<quint64>(content, 0));
    const auto channels = number<quint32>(content, 24);
    if (!std::isfinite(rate) || rate < 1 || rate > kHighestRate || channels < 1
        || channels > kMostChannels)
        return;
    m_sampleRate = rate;
    m_codec = content.sliced(8, 4);
    m_flags = number<quint32>(content, 12);
    m_bytesPerPacket = number<quint32>(content, 16);
    m_framesPerPacket = number<quint32>(content, 20);
    m_channels = int(channels);
    m_bits = int(std::min<quint32>(number<quint32>(content, 28), 64));
}

QList<CafFile::Packet> CafFile::packets() const
{
    QList<Packet> packets;
    QByteArrayView table = m_table;
    QByteArrayView data = m_data;
    while (!data.isEmpty()) {
        const qint64 size = m_bytesPerPacket > 0 ? m_bytesPerPacket : takeNumber(table);
        const qint64 frames = m_framesPerPacket > 0 ? m_framesPerPacket : takeNumber(table);
        if (size <= 0 || size > data.size() || frames < 0)
            break;
        packets.append({ data.first(qsizetype(size)), frames });
        data = data.sliced(qsizetype(size));
    }
    return packets;
}

} // namespace Export::SoundToPlayable
