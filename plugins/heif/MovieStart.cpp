#include "MovieStart.h"

#include "BoxReader.h"

#include <array>
#include <cstdlib>
#include <initializer_list>
#include <utility>

namespace {

// The content of the box that is reached through boxes of these types; empty when there is none.
QByteArrayView boxAt(QByteArrayView content, std::initializer_list<quint32> path)
{
    for (const quint32 type : path) {
        BoxReader reader(content);
        content = {};
        while (reader.hasMore()) {
            const std::optional<Box> box = nextBox(reader);
            if (!box)
                return {};
            if (box->type == type) {
                content = box->content;
                break;
            }
        }
    }
    return content;
}

bool hasPictures(QByteArrayView track)
{
    BoxReader handler(boxAt(track, { fourcc("mdia"), fourcc("hdlr") }));
    handler.number(8); // version, predefined
    return handler.number(4) == fourcc("pict");
}

// Quarter turns and flips; any other matrix is left out.
QTransform turnOf(QByteArrayView track)
{
    BoxReader header(boxAt(track, { fourcc("tkhd") }));
    const bool isLong = BoxVersion(header).number > 0;
    header.take(isLong ? 32 : 20); // times, number, length
    header.take(16); // reserved, layer, group, volume
    std::array<int, 5> matrix {};
    for (int &value : matrix)
        value = static_cast<qint32>(header.number(4)) / 0x10000;
    const auto [a, b, u, c, d] = matrix;
    const bool isTurn = u == 0 && std::abs(a * d - b * c) == 1 && a * b == 0 && c * d == 0;
    return header.isOk() && isTurn ? QTransform(a, b, c, d, 0, 0) : QTransform();
}

qint64 firstOffset(QByteArrayView table)
{
    for (const auto &[type, bytes] :
         { std::pair(fourcc("stco"), 4), std::pair(fourcc("co64"), 8) }) {
        BoxReader offsets(boxAt(table, { type }));
        offsets.number(4); // version
        if (offsets.number(4) > 0)
            return static_cast<qint64>(offsets.number(quint64(bytes)));
    }
    return 0;
}

qint64 firstSize(QByteArrayView table)
{
    BoxReader sizes(boxAt(table, { fourcc("stsz") }));
    sizes.number(4); // version
    const quint64 common = sizes.number(4);
    const quint64 count = sizes.number(4);
    return static_cast<qint64>(common > 0 || count == 0 ? common : sizes.number(4));
}

} // namespace

std::optional<MovieStart> MovieStart::read(QByteArrayView moov)
{
    for (BoxReader reader(moov); reader.hasMore();) {
        const std::optional<Box> track = nextBox(reader);
        if (!track)
            break;
        if (track->type != fourcc("trak") || !hasPictures(track->content))
            continue;
        const QByteArrayView table =
            boxAt(track->content, { fourcc("mdia"), fourcc("minf"), fourcc("stbl") });
        BoxReader descriptions(boxAt(table, { fourcc("stsd") }));
        descriptions.number(8); // version, how many
        const std::optional<Box> entry = nextBox(descriptions);
        if (!entry || (entry->type != fourcc("hvc1") && entry->type != fourcc("hev1")))
            return {};
        BoxReader description(entry->content);
        description.take(24); // reserved
        const auto width = static_cast<int>(description.number(2));
        const auto height = static_cast<int>(description.number(2));
        description.take(50); // resolution, name of the coder
        MovieStart start;
        start.size = { width, height };
        const QByteArrayView boxes = description.take(static_cast<quint64>(description.left()));
        start.configuration = boxAt(boxes, { fourcc("hvcC") });
        start.colours = boxAt(boxes, { fourcc("colr") });
        start.data = { firstOffset(table), firstSize(table) };
        start.turn = turnOf(track->content);
        return start;
    }
    return {};
}
