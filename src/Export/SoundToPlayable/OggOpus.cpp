#include "Export/SoundToPlayable/OggOpus.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace Export::SoundToPlayable {

namespace {

constexpr int kMostSegments = 255; // of a page, and bytes of a segment
constexpr quint32 kSerial = 1;
constexpr quint8 kFirst = 2;
constexpr quint8 kLast = 4;
constexpr qsizetype kChecksumAt = 22;

template <class Number>
void append(QByteArray &out, Number number)
{
    char bytes[sizeof(Number)];
    qToLittleEndian(number, bytes);
    out.append(bytes, sizeof(Number));
}

// The generator polynomial is that of RFC 3533, section 6; nothing is reflected or inverted.
quint32 checksum(QByteArrayView page)
{
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> rows {};
        for (quint32 i = 0; i < rows.size(); ++i) {
            quint32 row = i << 24;
            for (int bit = 0; bit < 8; ++bit)
                row = (row & 0x80000000) != 0 ? row << 1 ^ 0x04C11DB7 : row << 1;
            rows[i] = row;
        }
        return rows;
    }();
    quint32 sum = 0;
    for (const char byte : page)
        sum = sum << 8 ^ table[(sum >> 24 ^ static_cast<unsigned char>(byte)) & 0xFF];
    return sum;
}

class OggWriter
{
public:
    //! Writes a page of whole packets.
    void page(const QByteArray &segments, const QByteArray &content, qint64 granule, quint8 kind)
    {
        QByteArray page("OggS");
        page += '\0';
        page += char(kind);
        append(page, granule);
        append(page, kSerial);
        append(page, m_number++);
        append(page, quint32(0));
        page += char(segments.size());
        page += segments + content;
        qToLittleEndian(checksum(page), page.data() + kChecksumAt);
        m_out += page;
    }

    //! Writes a page of one packet that is short.
    void header(const QByteArray &packet, quint8 kind)
    {
        page(QByteArray(1, char(packet.size())), packet, 0, kind);
    }

    const QByteArray &bytes() const { return m_out; }

private:
    QByteArray m_out;
    quint32 m_number = 0;
};

} // namespace

QByteArray oggOpus(const OpusSound &sound)
{
    OggWriter ogg;
    QByteArray head("OpusHead\x01");
    head += char(sound.channels);
    append(head, quint16(sound.skippedFrames));
    append(head, sound.sampleRate);
    append(head, quint16(0)); // gain
    head += '\0'; // one or two channels
    ogg.header(head, kFirst);
    QByteArray tags("OpusTags");
    const QByteArray vendor("dataexport");
    append(tags, quint32(vendor.size()));
    tags += vendor;
    append(tags, quint32(0));
    ogg.header(tags, 0);

    QByteArray segments;
    QByteArray content;
    qint64 granule = 0;
    for (const OpusSound::Packet &packet : sound.packets) {
        const qsizetype count = packet.bytes.size() / kMostSegments + 1;
        if (count > kMostSegments)
            continue; // no packet of Opus is that long
        if (segments.size() + count > kMostSegments) {
            ogg.page(segments, content, granule, 0);
            segments.clear();
            content.clear();
        }
        segments.append(count - 1, char(kMostSegments));
        segments += char(packet.bytes.size() % kMostSegments);
        content.append(packet.bytes.data(), packet.bytes.size());
        granule += packet.frames;
    }
    if (sound.playedFrames >= 0)
        granule = std::min(granule, sound.skippedFrames + sound.playedFrames);
    ogg.page(segments, content, granule, kLast);
    return ogg.bytes();
}

} // namespace Export::SoundToPlayable
