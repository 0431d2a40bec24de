#include "PhoneBackup/plist/BinaryPropertyList.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/plist/PropertyList.h"

#include <QVarLengthArray>
#include <QtEndian>

#include <algorithm>
#include <limits>

namespace PhoneBackup {

namespace {

constexpr quint64 kHeaderSize = 8;
constexpr quint64 kTrailerSize = 32;

// Where an object is shared, what it holds counts once for each reference to it: whoever walks the
// values meets it that often. Lists of phones share short texts, and stay far below these limits.
constexpr quint64 kMaxNodesPerByte = 16;
constexpr quint64 kMaxTextPerByte = 256;

// What the upper half of an object's first byte says.
enum class Kind : quint8 {
    Simple = 0x0,
    Integer = 0x1,
    Real = 0x2,
    Date = 0x3,
    Data = 0x4,
    Ascii = 0x5,
    Utf16 = 0x6,
    Utf8 = 0x7,
    Uid = 0x8,
    Array = 0xA,
    OrderedSet = 0xB,
    Set = 0xC,
    Dict = 0xD,
};

// What the lower half says of a Kind::Simple.
constexpr quint8 kNull = 0x0;
constexpr quint8 kFalse = 0x8;
constexpr quint8 kTrue = 0x9;

// In the lower half: the length follows as an integer of its own.
constexpr quint8 kLongLength = 0xF;

quint64 bigEndian(const uchar *bytes, quint64 size)
{
    quint64 value = 0;
    for (quint64 i = 0; i < size; ++i)
        value = value << 8 | bytes[i];
    return value;
}

class Reader
{
public:
    explicit Reader(QByteArrayView data)
        : m_data(reinterpret_cast<const uchar *>(data.data()))
        , m_size(quint64(data.size()))
        , m_maxNodes(std::min(m_size * kMaxNodesPerByte, quint64(PropertyList::kMaxNodes)))
        , m_maxText(m_size * kMaxTextPerByte)
    {
    }

    QVariant read()
    {
        if (m_size < kHeaderSize + kTrailerSize)
            return {};
        const uchar *trailer = m_data + m_size - kTrailerSize;
        m_offsetSize = trailer[6];
        m_refSize = trailer[7];
        const quint64 count = bigEndian(trailer + 8, 8);
        const quint64 top = bigEndian(trailer + 16, 8);
        m_end = bigEndian(trailer + 24, 8);
        const auto isSize = [](quint64 size) { return size >= 1 && size <= 8; };
        if (!isSize(m_offsetSize) || !isSize(m_refSize) || m_end < kHeaderSize
            || m_end > m_size - kTrailerSize || count > quint64(PropertyList::kMaxNodes)
            || count > (m_size - kTrailerSize - m_end) / m_offsetSize)
            return {};
        m_objects.resize(qsizetype(count));
        const Object *root = object(top, 1);
        return root ? root->value : QVariant();
    }

private:
    struct Object
    {
        QVariant value;
        quint64 nodes = 1; // with all that it refers to
        quint64 text = 0; // bytes of texts and data, likewise
        int depth = 0; // 0: not read yet
        bool isOpen = false; // on the path that is being followed: met again, it is a circle
    };

    // Object \a number, which \a level - 1 others surround. \return null when it is damaged.
    const Object *object(quint64 number, int level)
    {
        if (number >= quint64(m_objects.size()))
            return nullptr;
        Object &known = m_objects[qsizetype(number)];
        if (known.isOpen || level + std::max(known.depth - 1, 0) > PropertyList::kMaxDepth)
            return nullptr;
        if (known.depth == 0) {
            known.isOpen = true;
            Object made;
            if (!readObject(number, level, made))
                return nullptr;
            made.depth = std::max(made.depth, 1);
            known = std::move(made);
        }
        return &known;
    }

    bool readObject(quint64 number, int level, Object &made)
    {
        const quint64 offset = bigEndian(m_data + m_end + number * m_offsetSize, m_offsetSize);
        if (offset < kHeaderSize || offset >= m_end)
            return false;
        const auto kind = Kind(m_data[offset] >> 4);
        const quint8 low = m_data[offset] & 0x0F;
        m_at = offset + 1;
        switch (kind) {
        case Kind::Simple:
            if (low == kFalse || low == kTrue)
                made.value = low == kTrue;
            return low == kNull || low == kFalse || low == kTrue;
        case Kind::Integer:
            return readInteger(low, made.value);
        case Kind::Real:
        case Kind::Date:
            return readReal(kind, low, made.value);
        case Kind::Uid:
            return readUid(low, made.value);
        default:
            break;
        }
        quint64 length = low;
        if (low == kLongLength && !readLength(length))
            return false;
        switch (kind) {
        case Kind::Data:
        case Kind::Ascii:
        case Kind::Utf16:
        case Kind::Utf8:
            return readText(kind, length, made);
        case Kind::Array:
        case Kind::OrderedSet:
        case Kind::Set:
            return readArray(length, level, made);
        case Kind::Dict:
            return readDict(length, level, made);
        default:
            return false;
        }
    }

    bool has(quint64 bytes) const { return bytes <= m_end - m_at; }

    // Takes \a count units of \a size bytes behind the marker. No two objects share bytes: all of
    // them together cannot be longer than what holds them.
    bool take(quint64 count, quint64 size)
    {
        if (count > (m_end - m_at) / size)
            return false;
        m_taken += count * size;
        return m_taken <= m_end;
    }

    // Up to four bytes have no sign, eight have one; sixteen hold what eight with a sign cannot.
    bool readInteger(quint8 power, QVariant &value) const
    {
        constexpr quint8 kLargest = 4;
        const quint64 size = quint64(1) << power;
        if (power > kLargest || !has(size))
            return false;
        const quint64 number = bigEndian(m_data + m_at, size); // the lower eight bytes
        if (power == kLargest && number > quint64(std::numeric_limits<qint64>::max())
            && bigEndian(m_data + m_at, 8) == 0)
            value = number;
        else
            value = qint64(number);
        return true;
    }

    bool readReal(Kind kind, quint8 power, QVariant &value) const
    {
        const quint64 size = quint64(1) << power;
        if ((size != sizeof(float) && size != sizeof(double)) || !has(size))
            return false;
        const double number = size == sizeof(float) ? double(qFromBigEndian<float>(m_data + m_at))
                                                    : qFromBigEndian<double>(m_data + m_at);
        if (kind == Kind::Date)
            value = PhoneTime::ofAnyYear(number);
        else
            value = number;
        return true;
    }

    bool readUid(quint8 sizeLessOne, QVariant &value) const
    {
        const quint64 size = quint64(sizeLessOne) + 1;
        if (size > sizeof(quint64) || !has(size))
            return false;
        value = QVariant::fromValue(PlistUid { bigEndian(m_data + m_at, size) });
        return true;
    }

    bool readLength(quint64 &length)
    {
        if (!has(1) || Kind(m_data[m_at] >> 4) != Kind::Integer)
            return false;
        const quint8 power = m_data[m_at] & 0x0F;
        const quint64 size = quint64(1) << power;
        ++m_at;
        if (size > sizeof(quint64) || !has(size))
            return false;
        length = bigEndian(m_data + m_at, size);
        m_at += size;
        return true;
    }

    bool readText(Kind kind, quint64 length, Object &made)
    {
        const quint64 unit = kind == Kind::Utf16 ? sizeof(char16_t) : 1;
        if (!take(length, unit))
            return false;
        const auto *bytes = reinterpret_cast<const char *>(m_data + m_at);
        made.text = length * unit;
        if (kind == Kind::Data) {
            made.value = QByteArray(bytes, qsizetype(length));
        } else if (kind == Kind::Utf16) {
            QString text(qsizetype(length), Qt::Uninitialized);
            qFromBigEndian<char16_t>(bytes, qsizetype(length), text.data());
            made.value = text;
        } else {
            made.value = QString::fromUtf8(bytes, qsizetype(length));
        }
        return true;
    }

    // Reference \a i of those that stand at \a first, into an object around which \a level stand.
    const Object *part(quint64 first, quint64 i, int level, Object &made)
    {
        const Object *found =
            object(bigEndian(m_data + first + i * m_refSize, m_refSize), level + 1);
        if (!found)
            return nullptr;
        made.nodes += found->nodes;
        made.text += found->text;
        made.depth = std::max(made.depth, found->depth + 1);
        return made.nodes <= m_maxNodes && made.text <= m_maxText ? found : nullptr;
    }

    bool readArray(quint64 length, int level, Object &made)
    {
        const quint64 first = m_at;
        if (!take(length, m_refSize))
            return false;
        QVariantList list;
        list.reserve(qsizetype(length));
        for (quint64 i = 0; i < length; ++i) {
            const Object *element = part(first, i, level, made);
            if (!element)
                return false;
            list.append(element->value);
        }
        made.value = list;
        return true;
    }

    bool readDict(quint64 length, int level, Object &made)
    {
        const quint64 first = m_at;
        if (!take(length, m_refSize * 2))
            return false;
        QVariantMap map;
        for (quint64 i = 0; i < length; ++i) {
            const Object *key = part(first, i, level, made);
            const Object *value = key ? part(first, length + i, level, made) : nullptr;
            if (!value || key->value.typeId() != QMetaType::QString)
                return false;
            map.insert(key->value.toString(), value->value);
        }
        made.value = map;
        return true;
    }

    const uchar *m_data;
    quint64 m_size;
    quint64 m_maxNodes;
    quint64 m_maxText;
    quint64 m_end = 0; // of the objects; the table of their places follows
    quint64 m_at = 0; // behind what was read last
    quint64 m_taken = 0;
    quint64 m_offsetSize = 0;
    quint64 m_refSize = 0;
    QVarLengthArray<Object, 64> m_objects;
};

} // namespace

QVariant readBinaryPropertyList(QByteArrayView data)
{
    return Reader(data).read();
}

} // namespace PhoneBackup
