#include "plist/BinaryPlistCheck.h"

#include <QVarLengthArray>

#include <algorithm>

namespace PhoneBackup {

namespace {

// The parser recurses once a level, and so does the release of its tree.
constexpr int kMaxDepth = 128;
constexpr quint64 kMaxNodes = 4'000'000;
constexpr quint64 kMaxBytes = quint64(512) << 20;

constexpr quint64 kHeaderSize = 8;
constexpr quint64 kTrailerSize = 32;

// What the upper half of an object's first byte says.
constexpr quint8 kData = 0x4;
constexpr quint8 kAscii = 0x5;
constexpr quint8 kUtf16 = 0x6;
constexpr quint8 kUtf8 = 0x7;
constexpr quint8 kArray = 0xA;
constexpr quint8 kOrderedSet = 0xB;
constexpr quint8 kSet = 0xC;
constexpr quint8 kDict = 0xD;

quint64 bigEndian(const uchar *bytes, int size)
{
    quint64 value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | bytes[i];
    return value;
}

// What one object comes to when every reference in it is followed.
struct Cost
{
    quint64 nodes = 0;
    quint64 bytes = 0;
    int depth = 0; // 0: not known yet
    bool open = false; // on the path that is being followed: met again, it is a cycle
};

class Checker
{
public:
    explicit Checker(QByteArrayView data)
        : m_data(reinterpret_cast<const uchar *>(data.data()))
        , m_size(quint64(data.size()))
    {
    }

    bool check()
    {
        if (m_size < kHeaderSize + kTrailerSize)
            return false;
        const uchar *trailer = m_data + m_size - kTrailerSize;
        m_offsetSize = trailer[6];
        m_refSize = trailer[7];
        m_count = bigEndian(trailer + 8, 8);
        const quint64 top = bigEndian(trailer + 16, 8);
        m_table = bigEndian(trailer + 24, 8);
        const auto validSize = [](int size) { return size >= 1 && size <= 8; };
        if (!validSize(m_offsetSize) || !validSize(m_refSize) || m_table < kHeaderSize
            || m_table > m_size - kTrailerSize || top >= m_count || m_count > kMaxNodes
            || m_count > (m_size - kTrailerSize - m_table) / quint64(m_offsetSize))
            return false;
        m_costs.resize(qsizetype(m_count));
        return follow(top, 1);
    }

private:
    Cost &cost(quint64 object) { return m_costs[qsizetype(object)]; }

    bool follow(quint64 object, int level)
    {
        Cost &own = cost(object);
        if (own.depth > 0)
            return level + own.depth - 1 <= kMaxDepth;
        if (own.open || level > kMaxDepth)
            return false;
        own.open = true;
        quint64 nodes = 1;
        quint64 bytes = 0;
        int depth = 1;

        const quint64 offset =
            bigEndian(m_data + m_table + object * quint64(m_offsetSize), m_offsetSize);
        if (offset >= m_table)
            return false;
        const auto kind = quint8(m_data[offset] >> 4);
        quint64 length = m_data[offset] & 0x0F;
        quint64 position = offset + 1;
        const bool sized = (kind >= kData && kind <= kUtf8) || (kind >= kArray && kind <= kDict);
        if (sized && length == 0x0F && !readLength(position, length))
            return false;

        if (kind >= kArray && kind <= kDict) {
            if (length > m_table)
                return false;
            const quint64 references = kind == kDict ? length * 2 : length;
            if (references > (m_table - position) / quint64(m_refSize))
                return false;
            for (quint64 i = 0; i < references; ++i) {
                const quint64 child =
                    bigEndian(m_data + position + i * quint64(m_refSize), m_refSize);
                if (child >= m_count || !follow(child, level + 1))
                    return false;
                nodes += cost(child).nodes;
                bytes += cost(child).bytes;
                depth = std::max(depth, 1 + cost(child).depth);
                if (nodes > kMaxNodes || bytes > kMaxBytes)
                    return false;
            }
        } else if (sized) {
            const quint64 unit = kind == kUtf16 ? 2 : 1;
            if (length > (m_table - position) / unit)
                return false;
            bytes = length * unit;
        }
        own = Cost { nodes, bytes, depth, false };
        return true;
    }

    // A length of 15 and more stands in an integer of its own behind the marker.
    bool readLength(quint64 &position, quint64 &length) const
    {
        if (position >= m_table || (m_data[position] >> 4) != 0x1)
            return false;
        const int size = 1 << (m_data[position] & 0x0F);
        if (size > 8 || m_table - position - 1 < quint64(size))
            return false;
        length = bigEndian(m_data + position + 1, size);
        position += 1 + quint64(size);
        return true;
    }

    const uchar *m_data;
    quint64 m_size;
    quint64 m_table = 0;
    quint64 m_count = 0;
    int m_offsetSize = 0;
    int m_refSize = 0;
    QVarLengthArray<Cost, 96> m_costs;
};

} // namespace

bool isExpandableBinaryPlist(QByteArrayView data)
{
    return Checker(data).check();
}

bool isExpandableXmlPlist(QByteArrayView data)
{
    int depth = 0;
    for (qsizetype at = data.indexOf('<'); at >= 0; at = data.indexOf('<', at)) {
        const QByteArrayView rest = data.sliced(at);
        const auto skipTo = [&](QByteArrayView end) {
            const qsizetype found = data.indexOf(end, at);
            at = found < 0 ? data.size() : found + end.size();
        };
        if (rest.startsWith("<!--")) {
            skipTo("-->");
        } else if (rest.startsWith("<![CDATA[")) {
            skipTo("]]>");
        } else if (rest.startsWith("<?") || rest.startsWith("<!")) {
            skipTo(">");
        } else {
            const bool closing = rest.startsWith("</");
            skipTo(">");
            const bool empty = at >= 2 && at <= data.size() && data[at - 2] == '/';
            depth += closing ? -1 : empty ? 0 : 1;
            if (depth > kMaxDepth)
                return false;
        }
        if (at >= data.size())
            break;
    }
    return true;
}

} // namespace PhoneBackup
