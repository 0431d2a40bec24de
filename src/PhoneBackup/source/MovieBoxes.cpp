#include "PhoneBackup/source/MovieBoxes.h"

#include <QIODevice>
#include <QtEndian>

#include <optional>

namespace PhoneBackup::MovieBoxes {

namespace {

// Bytes of a box's beginning: its size, its type and, when the size is 1, the size as 64 bits.
constexpr qsizetype kShortHeader = 8;
constexpr qsizetype kLongHeader = 16;

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

QByteArray movie(QIODevice &file, qint64 maxBytes)
{
    const qint64 size = file.size();
    for (qint64 at = 0; at < size && file.seek(at);) {
        const QByteArray start = file.peek(kLongHeader);
        const std::optional<Box> box = boxAt(start, quint64(size - at));
        if (!box)
            return {};
        if (box->type == "moov") {
            const qint64 content = qint64(box->size) - box->header;
            return content <= maxBytes && file.seek(at + box->header) ? file.read(content)
                                                                      : QByteArray();
        }
        at += qint64(box->size);
    }
    return {};
}

} // namespace PhoneBackup::MovieBoxes
