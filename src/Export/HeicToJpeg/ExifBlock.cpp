#include "Export/HeicToJpeg/ExifBlock.h"

#include <QtEndian>

#include <algorithm>

namespace Export::HeicToJpeg {

namespace {

constexpr qsizetype kHeaderSize = 8; // the order of bytes, a mark, where the main directory is
constexpr qsizetype kMainAt = 4;
constexpr qsizetype kCountSize = 2;
constexpr qsizetype kEntrySize = 12; // tag, type, how many; the value or where it is
constexpr qsizetype kTypeAt = 2;
constexpr qsizetype kHowManyAt = 4;
constexpr qsizetype kValueAt = 8;
constexpr qsizetype kNextSize = 4; // where the directory of the smaller picture is
constexpr qsizetype kInEntry = 4; // bytes of a value that need no place of their own

constexpr quint16 kShort = 3;
constexpr quint16 kLong = 4;

constexpr quint16 kWidth = 0x0100;
constexpr quint16 kHeight = 0x0101;
constexpr quint16 kOrientation = 0x0112;
constexpr quint16 kExposure = 0x8769; // the directory of the date
constexpr quint16 kPlace = 0x8825;
constexpr quint16 kMakerNote = 0x927c;
constexpr quint16 kPixelWidth = 0xa002;
constexpr quint16 kPixelHeight = 0xa003;
constexpr quint16 kInteroperability = 0xa005;

constexpr int kSteps = 2; // interoperability lies behind exposure

qsizetype unitSize(quint16 type)
{
    switch (type) {
    case 1: // byte
    case 2: // ASCII
    case 6: // signed byte
    case 7: // undefined
    case 129: // UTF-8
        return 1;
    case kShort:
    case 8: // signed
        return 2;
    case kLong:
    case 9: // signed
    case 11: // float
    case 13: // place of a directory
        return 4;
    case 5: // fraction
    case 10: // signed
    case 12: // double
        return 8;
    default:
        return 0;
    }
}

bool isDirectory(quint16 tag)
{
    return tag == kExposure || tag == kPlace || tag == kInteroperability;
}

} // namespace

ExifBlock::ExifBlock(const QByteArray &bytes)
    : m_bytes(bytes)
    , m_isBigEndian(bytes.startsWith("MM"))
{
}

bool ExifBlock::isReadable() const
{
    const bool isMarked = m_bytes.startsWith(QByteArrayView("II*\0", 4))
        || m_bytes.startsWith(QByteArrayView("MM\0*", 4));
    const qsizetype main = isMarked ? mainDirectory() : 0;
    return main >= kHeaderSize && main <= m_bytes.size() - kCountSize
        && (number<quint16>(main) == 0 || !entries(main).isEmpty());
}

void ExifBlock::setUpright(QSize size)
{
    qsizetype exposure = 0;
    const auto width = static_cast<quint32>(size.width());
    const auto height = static_cast<quint32>(size.height());
    for (const Entry &entry : entries(mainDirectory())) {
        if (entry.tag == kOrientation)
            setNumber(1, entry);
        else if (entry.tag == kWidth)
            setNumber(width, entry);
        else if (entry.tag == kHeight)
            setNumber(height, entry);
        else if (entry.tag == kExposure && exposure == 0)
            exposure = number<quint32>(entry.at + kValueAt);
    }
    for (const Entry &entry : entries(exposure)) {
        if (entry.tag == kPixelWidth)
            setNumber(width, entry);
        else if (entry.tag == kPixelHeight)
            setNumber(height, entry);
    }
}

QByteArray ExifBlock::compacted(qsizetype maxSize) const
{
    constexpr qsizetype kMaxValue = 4096;
    constexpr qsizetype kMinValue = 32; // a date takes 20 bytes, a place 24
    if (!isReadable())
        return {};
    for (qsizetype maxValue = kMaxValue; maxValue >= kMinValue; maxValue /= 2) {
        Copy to { m_bytes.first(kHeaderSize), maxSize, maxValue };
        store(static_cast<quint32>(kHeaderSize), to.bytes, kMainAt);
        const bool isAnyThere = copy(mainDirectory(), kSteps, to);
        if (to.bytes.size() <= maxSize)
            return isAnyThere ? to.bytes : QByteArray();
    }
    return {};
}

template <typename Number>
Number ExifBlock::number(qsizetype at) const
{
    const char *from = m_bytes.constData() + at;
    return m_isBigEndian ? qFromBigEndian<Number>(from) : qFromLittleEndian<Number>(from);
}

template <typename Number>
void ExifBlock::store(Number number, QByteArray &to, qsizetype at) const
{
    char *place = to.data() + at;
    if (m_isBigEndian)
        qToBigEndian(number, place);
    else
        qToLittleEndian(number, place);
}

// A whole number, which is not longer than it was.
void ExifBlock::setNumber(quint32 number, const Entry &entry)
{
    const bool isLong = this->number<quint16>(entry.at + kTypeAt) == kLong;
    store(isLong ? kLong : kShort, m_bytes, entry.at + kTypeAt);
    store(quint32 { 1 }, m_bytes, entry.at + kHowManyAt);
    if (isLong)
        store(number, m_bytes, entry.at + kValueAt);
    else
        store(static_cast<quint16>(number), m_bytes, entry.at + kValueAt);
}

qsizetype ExifBlock::mainDirectory() const
{
    return m_bytes.size() < kHeaderSize ? 0 : number<quint32>(kMainAt);
}

QList<ExifBlock::Entry> ExifBlock::entries(qsizetype directory) const
{
    if (directory < kHeaderSize || directory > m_bytes.size() - kCountSize)
        return {};
    QList<Entry> found;
    const int count = number<quint16>(directory);
    qsizetype at = directory + kCountSize;
    for (int i = 0; i < count && at <= m_bytes.size() - kEntrySize; ++i, at += kEntrySize)
        found += { number<quint16>(at), at };
    return found;
}

// Empty when it is not there.
QByteArrayView ExifBlock::value(const Entry &entry) const
{
    const qsizetype size = unitSize(number<quint16>(entry.at + kTypeAt))
        * qsizetype { number<quint32>(entry.at + kHowManyAt) };
    const qsizetype inEntry = entry.at + kValueAt;
    const qsizetype at = size <= kInEntry ? inEntry : number<quint32>(inEntry);
    return at <= m_bytes.size() - size ? QByteArrayView(m_bytes).sliced(at, size)
                                       : QByteArrayView();
}

// The entries of a directory that a copy takes, in order and each once.
QList<ExifBlock::Entry> ExifBlock::wanted(qsizetype directory, qsizetype maxValue) const
{
    QList<Entry> found = entries(directory);
    found.removeIf([&](const Entry &entry) {
        const qsizetype size = value(entry).size();
        return size == 0 || size > maxValue || entry.tag == kMakerNote
            || (isDirectory(entry.tag) && size != sizeof(quint32));
    });
    std::stable_sort(found.begin(), found.end(), [](const Entry &one, const Entry &other) {
        return one.tag < other.tag;
    });
    const auto isSame = [](const Entry &one, const Entry &other) { return one.tag == other.tag; };
    found.erase(std::unique(found.begin(), found.end(), isSame), found.end());
    return found;
}

// Whether any entry of the directory, which goes to the end of the copy, is in it. A copy that
// became too large ends.
bool ExifBlock::copy(qsizetype directory, int steps, Copy &to) const
{
    const QList<Entry> entries = wanted(directory, to.maxValue);
    const qsizetype start = to.bytes.size();
    qsizetype at = start + kCountSize;
    to.bytes.resize(at + entries.size() * kEntrySize + kNextSize, '\0');
    quint16 count = 0;
    for (const Entry &entry : entries) {
        if (to.bytes.size() > to.maxSize)
            break;
        const auto place = static_cast<quint32>(to.bytes.size());
        const QByteArrayView content = value(entry);
        const bool leads = isDirectory(entry.tag);
        if (leads && (steps == 0 || !copy(number<quint32>(entry.at + kValueAt), steps - 1, to)))
            continue;
        to.bytes.replace(at, kEntrySize, QByteArrayView(m_bytes).sliced(entry.at, kEntrySize));
        if (leads || content.size() > kInEntry)
            store(place, to.bytes, at + kValueAt);
        if (content.size() > kInEntry) {
            to.bytes += content;
            to.bytes.resize(to.bytes.size() + to.bytes.size() % 2, '\0');
        }
        at += kEntrySize;
        ++count;
    }
    store(count, to.bytes, start);
    return count > 0;
}

} // namespace Export::HeicToJpeg
