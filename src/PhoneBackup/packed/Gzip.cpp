#include "PhoneBackup/packed/Gzip.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace PhoneBackup {

namespace {

constexpr int kGzipOnly = 16 + MAX_WBITS;
constexpr qsizetype kFirstBytes = 4096;

} // namespace

Unzipped unzipped(QByteArrayView record, qsizetype maxBytes)
{
    using State = Unzipped::State;
    if (!record.startsWith(QByteArrayView("\x1F\x8B")))
        return { State::NotGzip, {} };
    z_stream stream {};
    if (inflateInit2(&stream, kGzipOnly) != Z_OK)
        return { State::Damaged, {} };
    // zlib reads through a pointer to changeable bytes, but does not change them.
    stream.next_in =
        const_cast<Bytef *>(reinterpret_cast<const Bytef *>(record.data())); // NOLINT: see above
    stream.avail_in = uInt(std::min<qsizetype>(record.size(), std::numeric_limits<int>::max()));

    Unzipped result { State::Damaged, {} };
    qsizetype filled = 0;
    int code = Z_OK;
    while (code == Z_OK) {
        if (filled == maxBytes) {
            result.state = State::TooLong;
            break;
        }
        const qsizetype size = std::min(std::max(kFirstBytes, 2 * filled), maxBytes);
        result.data.resize(size);
        const qsizetype room = std::min<qsizetype>(size - filled, std::numeric_limits<int>::max());
        stream.next_out = reinterpret_cast<Bytef *>(result.data.data() + filled);
        stream.avail_out = uInt(room);
        code = inflate(&stream, Z_NO_FLUSH);
        filled += room - qsizetype(stream.avail_out);
    }
    inflateEnd(&stream);
    if (code == Z_STREAM_END)
        result.state = State::Whole;
    result.data.truncate(filled);
    return result;
}

} // namespace PhoneBackup
