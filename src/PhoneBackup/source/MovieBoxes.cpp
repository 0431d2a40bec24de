#include "PhoneBackup/source/MovieBoxes.h"

#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <limits>
#include <optional>

namespace PhoneBackup::MovieBoxes {

namespace {

// Bytes of a box's beginning: its size, its type and, when the size is 1, the size as 64 bits.
constexpr qsizetype kShortHeader = 8;
constexpr qsizetype kLongHeader = 16;
constexpr QByteArrayView kLongSize("\0\0\0\1", 4);

struct Box
{
    QByteArrayView type;
    qsizetype header;
    quint64 size; // with the header
};

// The box that \a start, of \a left bytes, begins with; none when it cannot be one.
std::optional<Box> boxAt(QByteArrayView start, quint64 left)
{
    if (start.size() < kShortHeader)
        return std::nullopt;
    Box box { start.sliced(4, 4), kShortHeader, qFromBigEndian<quint32>(start.data()) };
    if (box.size == 1) {
        if (start.size() < kLongHeader)
            return std::nullopt;
        box.header = kLongHeader;
        box.size = qFromBigEndian<quint64>(start.data() + kShortHeader);
    } else if (box.size == 0) { // up to the end
        box.size = left;
    }
    if (box.size < quint64(box.header) || box.size > left)
        return std::nullopt;
    return box;
}

} // namespace

void forEach(QByteArrayView data,
             const std::function<void(QByteArrayView type, QByteArrayView content)> &visit)
{
    while (const std::optional<Box> box = boxAt(data, quint64(data.size()))) {
        visit(box->type, data.first(qsizetype(box->size)).sliced(box->header));
        data = data.sliced(qsizetype(box->size));
    }
}

QByteArrayView first(QByteArrayView data, QByteArrayView type)
{
    while (const std::optional<Box> box = boxAt(data, quint64(data.size()))) {
        if (box->type == type)
            return data.first(qsizetype(box->size)).sliced(box->header);
        data = data.sliced(qsizetype(box->size));
    }
    return {};
}

// Forwards only: what is encrypted can be read in no other way.
QByteArray movie(QIODevice &file, qint64 maxBytes)
{
    constexpr quint64 kAnySize = std::numeric_limits<qint64>::max();
    for (;;) {
        QByteArray start = file.read(kShortHeader);
        if (start.startsWith(kLongSize))
            start += file.read(kLongHeader - kShortHeader);
        const std::optional<Box> box = boxAt(start, kAnySize);
        if (!box)
            return {};
        const qint64 content = qint64(box->size) - box->header;
        if (box->type == "moov") {
            const QByteArray movie = file.read(std::min(content, maxBytes + 1));
            return movie.size() <= maxBytes ? movie : QByteArray();
        }
        if (file.skip(content) < content)
            return {};
    }
}

} // namespace PhoneBackup::MovieBoxes
