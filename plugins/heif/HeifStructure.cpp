#include "HeifStructure.h"

#include "BoxReader.h"
#include "CodedSize.h"

#include <QIODevice>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace {

constexpr qint64 kMaxCodedBytes = 256LL * 1024 * 1024;
constexpr qint64 kMaxSharing = 4; // how often items may hold the same bytes, on the average
constexpr int kMaxUnits = 64; // of coded data, an item
constexpr int kMaxAv1Layers = 4;
constexpr qint64 kUnitStartBytes = 256; // holds all that is read of one
constexpr int kBlockPx = 64; // the largest that coded sizes are rounded up to
constexpr qint64 kSparePx = 4LL * 1024 * 1024; // for what sticks out of a small grid

qint64 area(QSize size)
{
    return qint64 { size.width() } * size.height();
}

// Whether \a pixels are what decoding a picture of \a size may cost.
bool isInProportion(qint64 pixels, QSize size)
{
    return pixels <= area(size) * 2 + kSparePx;
}

// Whether what is coded is as large as \a stated, but for whole blocks. Some writers turn the size.
bool isCodedAs(QSize coded, QSize stated)
{
    const auto blocks = [](int length) { return (qint64 { length } + kBlockPx - 1) / kBlockPx; };
    const auto isWithin = [&coded, blocks](QSize size) {
        return blocks(coded.width()) <= blocks(size.width())
            && blocks(coded.height()) <= blocks(size.height());
    };
    return !coded.isEmpty() && (isWithin(stated) || isWithin(stated.transposed()));
}

int hevcType(QByteArrayView unit)
{
    return static_cast<uchar>(unit.at(0)) >> 1 & 0x3F;
}

bool isHevcHeader(QByteArrayView unit)
{
    constexpr int kSequenceParameters = 33;
    return hevcType(unit) == kSequenceParameters;
}

bool isHevcSlice(QByteArrayView unit)
{
    constexpr int kFirstParameters = 32;
    return hevcType(unit) < kFirstParameters;
}

// Whether a slice is of a picture, of \a size, that costs no more to decode than itself. Those that
// refer to others make the decoder invent these. Of the kinds that may begin a film some can name
// pictures before it; in a small picture that does no harm.
bool standsAlone(QByteArrayView slice, QSize size)
{
    constexpr int kFirstThatBegins = 16;
    constexpr int kLastThatBegins = 21;
    constexpr int kAlone = 19;
    constexpr int kAloneWithoutLeading = 20;
    constexpr qint64 kHarmlessPx = 4LL * 1024 * 1024;
    const int type = hevcType(slice);
    return type == kAlone || type == kAloneWithoutLeading
        || (type >= kFirstThatBegins && type <= kLastThatBegins && area(size) <= kHarmlessPx);
}

qint64 totalSize(const std::vector<FileExtent> &extents)
{
    qint64 total = 0;
    for (const FileExtent &extent : extents)
        total += extent.size;
    return total;
}

// Whether the decoding library makes a picture of items of this type, or would, were it allowed to.
bool isPicture(quint32 type)
{
    static constexpr std::array kTypes {
        fourcc("hvc1"), fourcc("av01"), fourcc("grid"), fourcc("iden"), fourcc("iovl")
    };
    return std::find(kTypes.cbegin(), kTypes.cend(), type) != kTypes.cend();
}

} // namespace

HeifStructure::HeifStructure(QIODevice &device)
    : m_device(device)
    , m_items(device)
{
}

bool HeifStructure::isSafe()
{
    if (m_device.isSequential() || m_device.pos() != 0)
        return false;
    bool isSafe = m_items.parse() && hasSafeItems() && isSafePicture(m_items.primary());
    for (const quint32 id :
         isSafe ? m_items.find(m_items.primary())->thumbnails : std::vector<quint32>()) {
        const HeifItem *thumbnail = m_items.find(id);
        isSafe = isSafe && thumbnail
            && (!isPicture(thumbnail->type)
                || (thumbnail->thumbnails.empty() && isSafePicture(id)));
    }
    return isSafe;
}

// The library reads all items when it opens a file, and keeps what is remarked on pictures.
bool HeifStructure::hasSafeItems() const
{
    const qint64 fileSize = m_device.size();
    qint64 total = 0;
    for (const auto &[id, item] : m_items.all()) {
        for (const FileExtent &extent : item.extents)
            total += std::clamp<qint64>(fileSize - extent.at, 0, extent.size);
    }
    return total <= std::min(fileSize * kMaxSharing, kMaxCodedBytes);
}

std::optional<HevcPicture> HeifStructure::hevcPicture()
{
    const HeifItem *item = m_items.find(m_items.primary());
    if (!item || item->isCropped)
        return {};
    HevcPicture picture { item->size, item->size, 1, {}, item->colours, item->turn };
    if (item->type == fourcc("hvc1")) {
        picture.tiles.push_back({ item->configuration, item->extents });
        return picture;
    }
    const std::optional<QSize> tiles =
        item->type == fourcc("grid") ? gridTiles(*item) : std::nullopt;
    const HeifItem *first = tiles ? m_items.find(item->inputs.front()) : nullptr;
    if (!first || first->size.width() * tiles->width() < item->size.width()
        || first->size.height() * tiles->height() < item->size.height())
        return {};
    picture.columns = tiles->width();
    picture.tileSize = first->size;
    picture.colours = first->colours;
    for (const quint32 id : item->inputs) {
        const HeifItem *tile = m_items.find(id);
        if (tile->type != fourcc("hvc1") || tile->size != picture.tileSize || tile->changes > 0
            || tile->colours != picture.colours)
            return {};
        picture.tiles.push_back({ tile->configuration, tile->extents });
    }
    return picture;
}

// An image and what belongs to it.
bool HeifStructure::isSafePicture(quint32 id)
{
    const HeifItem *item = m_items.find(id);
    if (!item || !isSafeImage(*item))
        return false;
    return std::all_of(
        item->auxiliaries.cbegin(), item->auxiliaries.cend(), [this, item](quint32 auxiliaryId) {
            const HeifItem *auxiliary = m_items.find(auxiliaryId);
            return auxiliary
                && (!isPicture(auxiliary->type)
                    || (auxiliary->auxiliaries.empty()
                        && isInProportion(area(auxiliary->size), item->size)
                        && isSafeImage(*auxiliary)));
        });
}

bool HeifStructure::isSafeImage(const HeifItem &item)
{
    switch (item.type) {
    case fourcc("grid"):
        return isSafeGrid(item);
    case fourcc("iden"): {
        const HeifItem *input =
            item.inputs.size() == 1 ? m_items.find(item.inputs.front()) : nullptr;
        return input && input->auxiliaries.empty() && isInProportion(area(input->size), item.size)
            && (input->type == fourcc("grid") ? isSafeGrid(*input)
                                              : isSafeInput(item.inputs.front()));
    }
    case fourcc("hvc1"):
        return isSafeHevc(item);
    case fourcc("av01"):
        return isSafeAv1(item);
    default:
        return false;
    }
}

// Inputs are coded; there is nothing behind them, and so no circle.
bool HeifStructure::isSafeInput(quint32 id)
{
    const HeifItem *item = m_items.find(id);
    if (!item || !item->auxiliaries.empty())
        return false;
    return item->type == fourcc("hvc1") ? isSafeHevc(*item)
                                        : item->type == fourcc("av01") && isSafeAv1(*item);
}

std::optional<QSize> HeifStructure::gridTiles(const HeifItem &grid)
{
    constexpr qint64 kLongPayload = 12;
    const QByteArray payload = m_items.read(grid.extents, 0, kLongPayload);
    BoxReader reader(payload);
    reader.number(1); // version
    const quint64 sideSize = (reader.number(1) & 1) != 0 ? 4 : 2;
    const auto rows = static_cast<int>(reader.number(1) + 1);
    const auto columns = static_cast<int>(reader.number(1) + 1);
    const int width = sideOf(reader.number(sideSize));
    const int height = sideOf(reader.number(sideSize));
    const bool isAsStated = reader.isOk() && !grid.size.isEmpty()
        && QSize(width, height) == grid.size
        && static_cast<qint64>(grid.inputs.size()) == qint64 { rows } * columns;
    return isAsStated ? std::optional(QSize(columns, rows)) : std::nullopt;
}

bool HeifStructure::isSafeGrid(const HeifItem &grid)
{
    if (!gridTiles(grid))
        return false;
    qint64 pixels = 0;
    for (const quint32 id : grid.inputs) {
        const HeifItem *tile = m_items.find(id);
        pixels += tile ? area(tile->size) : 0;
        if (!isInProportion(pixels, grid.size) || !isSafeInput(id))
            return false;
    }
    return true;
}

bool HeifStructure::isSafeHevc(const HeifItem &item)
{
    const QByteArray configuration =
        m_items.read({ item.configuration }, 0, item.configuration.size);
    BoxReader reader(configuration);
    reader.take(21); // profile and the like
    if ((reader.number(1) & 3) != 3) // bytes of a length, less one
        return false;
    bool hasHeader = false;
    for (quint64 lists = reader.number(1); lists > 0; --lists) {
        reader.number(1);
        for (quint64 units = reader.number(2); units > 0; --units) {
            const QByteArrayView unit = reader.take(reader.number(2));
            if (unit.isEmpty() || isHevcSlice(unit))
                return false;
            if (!isHevcHeader(unit))
                continue;
            if (!isCodedAs(CodedSize::ofHevc(unit), item.size))
                return false;
            hasHeader = true;
        }
    }
    const qint64 total = totalSize(item.extents);
    m_codedBytes += total;
    if (total == 0 || m_codedBytes > kMaxCodedBytes)
        return false;
    bool hasPicture = false;
    qint64 at = 0;
    for (int units = 0; at < total; ++units) {
        const QByteArray start = m_items.read(item.extents, at, kUnitStartBytes);
        BoxReader data(start);
        const auto size = static_cast<qint64>(data.number(4));
        const QByteArrayView unit = data.take(quint64(std::min<qint64>(size, data.left())));
        if (unit.size() < 3 || units == kMaxUnits)
            return false;
        if (isHevcHeader(unit) && !isCodedAs(CodedSize::ofHevc(unit), item.size))
            return false;
        hasHeader = hasHeader || isHevcHeader(unit);
        const bool isFirstSlice = isHevcSlice(unit) && (unit.at(2) & 0x80) != 0;
        if (isHevcSlice(unit)
            && (!standsAlone(unit, item.size) || (isFirstSlice && std::exchange(hasPicture, true))))
            return false;
        at += size + 4;
    }
    return at == total && hasHeader;
}

bool HeifStructure::isSafeAv1(const HeifItem &item)
{
    constexpr qint64 kFixedConfiguration = 4;
    std::vector<FileExtent> extents = item.extents;
    if (item.configuration.size > kFixedConfiguration)
        extents.insert(extents.begin(),
                       { item.configuration.at + kFixedConfiguration,
                         item.configuration.size - kFixedConfiguration });
    const qint64 total = totalSize(extents);
    m_codedBytes += total;
    if (m_codedBytes > kMaxCodedBytes)
        return false;
    bool hasHeader = false;
    int frames = 0;
    qint64 at = 0;
    for (int units = 0; at < total; ++units) {
        const QByteArray start = m_items.read(extents, at, kUnitStartBytes);
        BoxReader data(start);
        const quint64 head = data.number(1);
        data.number((head & 4) != 0 ? 1 : 0); // layer
        quint64 size = 0;
        quint64 sizeByte = 0x80;
        for (int shift = 0; (head & 2) != 0 && (sizeByte & 0x80) != 0 && shift < 56; shift += 7) {
            sizeByte = data.number(1);
            size |= (sizeByte & 0x7F) << shift;
        }
        const qint64 content = at + start.size() - data.left();
        if ((head & 2) == 0)
            size = static_cast<quint64>(total - content); // the last
        if (!data.isOk() || units == kMaxUnits || size > static_cast<quint64>(total - content))
            return false;
        const QByteArrayView unit = data.take(std::min(size, quint64(data.left())));
        switch (head >> 3 & 0xF) {
        case 1: // header of the sequence
            if (!isCodedAs(CodedSize::ofAv1(unit), item.size))
                return false;
            hasHeader = true;
            break;
        case 3: // frame, in parts
        case 6: // frame
            if (++frames > kMaxAv1Layers)
                return false;
            break;
        default:
            break;
        }
        at = content + static_cast<qint64>(size);
    }
    return hasHeader;
}
