#include "HeifStructure.h"

#include "BoxReader.h"
#include "CodedSize.h"
#include "MovieStart.h"

#include <QIODevice>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace {

constexpr int kMaxFileBoxes = 1024;
constexpr std::size_t kMaxItems = 8192;
constexpr std::size_t kMaxProperties = 16384;
constexpr std::size_t kMaxReferences = 65536;
constexpr quint64 kMaxExtents = 32; // an item
constexpr qint64 kMaxConfigurationBytes = 16384;
constexpr qint64 kMaxCodedBytes = 256LL * 1024 * 1024;
constexpr qint64 kMaxSharing = 4; // how often items may hold the same bytes, on the average
constexpr quint64 kMaxAt = quint64 { 1 } << 48; // in a file: far below where sums overflow
constexpr int kMaxUnits = 64; // of coded data, an item
constexpr int kMaxReads = 16384; // of the file: ample for the tiles of any camera
constexpr int kMaxChanges = 3; // of an image: a turn, a flip and a crop
constexpr int kMaxAv1Layers = 4;
constexpr qint64 kUnitStartBytes = 256; // holds all that is read of one
constexpr int kBlockPx = 64; // the largest that coded sizes are rounded up to
constexpr qint64 kSparePx = 4LL * 1024 * 1024; // for what sticks out of a small grid

using Boxes = std::map<quint32, QByteArrayView>;

// The boxes of a container that matter; none when something is broken or one is there twice.
Boxes boxesOf(BoxReader reader)
{
    static constexpr std::array kTypes { fourcc("pitm"), fourcc("iinf"), fourcc("iloc"),
                                         fourcc("idat"), fourcc("iref"), fourcc("iprp"),
                                         fourcc("ipco"), fourcc("ipma") };
    Boxes boxes;
    while (reader.hasMore()) {
        const std::optional<Box> box = nextBox(reader);
        if (!box)
            return {};
        if (std::find(kTypes.cbegin(), kTypes.cend(), box->type) != kTypes.cend()
            && !boxes.try_emplace(box->type, box->content).second)
            return {};
    }
    return boxes;
}

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

// A side as a file gives it: empty when it is beyond any picture.
int side(quint64 length)
{
    return length <= 0xFFFF ? static_cast<int>(length) : 0;
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

// \a colr is a box of the kind that gives numbers.
StatedColours statedColours(QByteArrayView colr)
{
    BoxReader reader(colr);
    reader.take(4);
    StatedColours colours {};
    colours.primaries = static_cast<int>(reader.number(2));
    reader.number(2); // transfer
    colours.matrix = static_cast<int>(reader.number(2));
    colours.isFullRange = (reader.number(1) & 0x80) != 0;
    return colours;
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
{
}

bool HeifStructure::isSafe()
{
    if (m_device.isSequential() || m_device.pos() != 0)
        return false;
    bool isSafe = readBoxes() && hasSafeItems() && isSafePicture(m_primary);
    for (const quint32 id : isSafe ? find(m_primary)->thumbnails : std::vector<quint32>()) {
        const Item *thumbnail = find(id);
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
    for (const auto &[id, item] : m_items) {
        for (const FileExtent &extent : item.extents)
            total += std::clamp<qint64>(fileSize - extent.at, 0, extent.size);
    }
    return total <= std::min(fileSize * kMaxSharing, kMaxCodedBytes);
}

bool HeifStructure::readBoxes()
{
    constexpr qint64 kHeadBytes = 16;
    const qint64 fileSize = m_device.size();
    FileExtent meta { 0, 0 };
    FileExtent movie { 0, 0 };
    bool isMovieBroken = false;
    qint64 at = 0;
    for (int boxes = 0; fileSize - at >= 8; ++boxes) {
        const QByteArray start = read({ { at, kHeadBytes } }, 0, kHeadBytes);
        BoxReader reader(start);
        quint64 size = reader.number(4);
        const auto type = static_cast<quint32>(reader.number(4));
        if (size == 1)
            size = reader.number(8);
        const qint64 head = start.size() - reader.left();
        if (size == 0)
            size = static_cast<quint64>(fileSize - at); // the last
        if (boxes == kMaxFileBoxes)
            return false;
        if (!reader.isOk() || size < static_cast<quint64>(head))
            break; // some cameras append what is no box
        const auto left = static_cast<quint64>(fileSize - at);
        const bool isWhole = size <= left;
        const auto stored = static_cast<qint64>(std::min(size, left));
        const FileExtent content { at + head, stored - head };
        if (type == fourcc("meta")) {
            if (!isWhole || meta.at != 0)
                return false;
            meta = content;
        } else if (type == fourcc("moov")) {
            isMovieBroken = isMovieBroken || !isWhole || movie.at != 0;
            movie = content;
        }
        if (!isWhole)
            break;
        at += stored;
    }
    m_isSequence = meta.at == 0;
    const FileExtent &content = m_isSequence ? movie : meta;
    if (content.size > kMaxMetaBytes || (m_isSequence && isMovieBroken))
        return false;
    m_metaAt = content.at;
    m_meta = read({ content }, 0, content.size);
    return m_isSequence ? parseMovie(m_meta) : parseMeta(m_meta);
}

bool HeifStructure::parseMeta(QByteArrayView meta)
{
    BoxReader reader(meta);
    reader.number(4); // version and flags: always the same
    Boxes boxes = boxesOf(reader);
    BoxReader pitm(boxes[fourcc("pitm")]);
    m_primary = pitm.id(BoxVersion(pitm).number > 0);
    return pitm.isOk() && parseItems(boxes[fourcc("iinf")])
        && parseLocations(boxes[fourcc("iloc")], boxes[fourcc("idat")])
        && parseProperties(boxes[fourcc("iprp")]) && parseReferences(boxes[fourcc("iref")]);
}

bool HeifStructure::parseItems(QByteArrayView iinf)
{
    BoxReader reader(iinf);
    reader.number(BoxVersion(reader).number > 0 ? 4 : 2); // how many: as many as there are
    while (reader.hasMore()) {
        const std::optional<Box> box = nextBox(reader);
        if (!box)
            return false;
        if (box->type != fourcc("infe"))
            continue;
        BoxReader entry(box->content);
        const int version = BoxVersion(entry).number;
        const quint32 id = entry.id(version > 2);
        entry.number(2); // protection
        Item item;
        if (version >= 2)
            item.type = static_cast<quint32>(entry.number(4));
        if (!entry.isOk() || m_items.size() == kMaxItems
            || !m_items.try_emplace(id, std::move(item)).second)
            return false;
    }
    return reader.isOk();
}

bool HeifStructure::parseLocations(QByteArrayView iloc, QByteArrayView idat)
{
    BoxReader reader(iloc);
    const int version = BoxVersion(reader).number;
    const quint64 sizes = reader.number(2);
    const auto isSizeOfNumber = [](quint64 size) { return size == 0 || size == 4 || size == 8; };
    const quint64 offsetSize = sizes >> 12 & 0xF;
    const quint64 lengthSize = sizes >> 8 & 0xF;
    const quint64 baseSize = sizes >> 4 & 0xF;
    const quint64 indexSize = version > 0 ? sizes & 0xF : 0;
    const quint64 count = reader.id(version > 1);
    if (version > 2 || !isSizeOfNumber(offsetSize) || !isSizeOfNumber(lengthSize)
        || !isSizeOfNumber(baseSize) || !isSizeOfNumber(indexSize))
        return false;
    for (quint64 i = 0; i < count && reader.isOk(); ++i) {
        const quint32 id = reader.id(version > 1);
        const quint64 method = version > 0 ? reader.number(2) & 0xF : 0;
        reader.number(2); // in which file: this one
        const quint64 base = reader.number(baseSize);
        const quint64 extents = reader.number(2);
        const auto found = m_items.find(id);
        if (extents > kMaxExtents || method > 1
            || (found != m_items.end() && !found->second.extents.empty()))
            return false;
        for (quint64 part = 0; part < extents; ++part) {
            reader.number(indexSize);
            const quint64 offset = reader.number(offsetSize);
            const quint64 length = reader.number(lengthSize);
            if (base > kMaxAt || offset > kMaxAt || length > kMaxAt)
                return false;
            FileExtent extent { static_cast<qint64>(base + offset), static_cast<qint64>(length) };
            if (method == 1) {
                if (extent.at + extent.size > idat.size())
                    return false;
                extent.at += fileExtent(idat).at;
            }
            if (found != m_items.end())
                found->second.extents.push_back(extent);
        }
    }
    return reader.isOk();
}

bool HeifStructure::parseProperties(QByteArrayView iprp)
{
    Boxes boxes = boxesOf(BoxReader(iprp));
    std::vector<Box> properties;
    for (BoxReader reader(boxes[fourcc("ipco")]); reader.hasMore();) {
        const std::optional<Box> box = nextBox(reader);
        if (!box || properties.size() == kMaxProperties)
            return false;
        properties.push_back(*box);
    }
    BoxReader reader(boxes[fourcc("ipma")]);
    const BoxVersion version(reader);
    const quint64 count = reader.number(4);
    for (quint64 i = 0; i < count && reader.isOk(); ++i) {
        const auto found = m_items.find(reader.id(version.number > 0));
        for (quint64 left = reader.number(1); left > 0; --left) {
            const quint64 index =
                (version.flags & 1) != 0 ? reader.number(2) & 0x7FFF : reader.number(1) & 0x7F;
            if (index > properties.size())
                return false;
            if (index > 0 && found != m_items.end()
                && !addProperty(
                    found->second, properties[index - 1].type, properties[index - 1].content))
                return false;
        }
    }
    return reader.isOk();
}

bool HeifStructure::addProperty(Item &item, quint32 type, QByteArrayView content) const
{
    const bool isConfiguration = (type == fourcc("hvcC") && item.type == fourcc("hvc1"))
        || (type == fourcc("av1C") && item.type == fourcc("av01"));
    if (isConfiguration) {
        if (item.configuration.size != 0 || content.size() > kMaxConfigurationBytes)
            return false;
        item.configuration = fileExtent(content);
    } else if (type == fourcc("ispe")) {
        BoxReader ispe(content);
        ispe.number(4); // version and flags
        const int width = side(ispe.number(4));
        const int height = side(ispe.number(4));
        if (item.size.isValid() || width == 0 || height == 0)
            return false;
        item.size = { width, height };
    } else if (type == fourcc("colr") && content.startsWith("nclx")) {
        item.colours = statedColours(content);
    } else if (type == fourcc("irot") || type == fourcc("imir") || type == fourcc("clap")) {
        const auto how = static_cast<int>(BoxReader(content).number(1));
        if (type == fourcc("irot"))
            item.turn *= QTransform().rotate(-90 * (how & 3)); // that is against the clock
        if (type == fourcc("imir"))
            item.turn *=
                (how & 1) != 0 ? QTransform::fromScale(-1, 1) : QTransform::fromScale(1, -1);
        if (type == fourcc("clap"))
            item.isCropped = true;
        return ++item.changes <= kMaxChanges;
    }
    return true;
}

bool HeifStructure::parseReferences(QByteArrayView iref)
{
    if (iref.isEmpty())
        return true;
    BoxReader reader(iref);
    const bool isLong = BoxVersion(reader).number > 0;
    std::size_t references = 0;
    while (reader.hasMore()) {
        const std::optional<Box> box = nextBox(reader);
        if (!box)
            return false;
        BoxReader content(box->content);
        const quint32 fromId = content.id(isLong);
        const auto from = m_items.find(fromId);
        const quint64 count = content.number(2);
        references += count + 1;
        if (references > kMaxReferences)
            return false;
        const bool isInput = box->type == fourcc("dimg") && from != m_items.end();
        if (isInput && !from->second.inputs.empty())
            return false;
        for (quint64 i = 0; i < count && content.isOk(); ++i) {
            const quint32 toId = content.id(isLong);
            const auto to = m_items.find(toId);
            if (isInput)
                from->second.inputs.push_back(toId);
            else if (box->type == fourcc("thmb") && to != m_items.end())
                to->second.thumbnails.push_back(fromId);
            else if (box->type == fourcc("auxl") && to != m_items.end())
                to->second.auxiliaries.push_back(fromId);
        }
        if (!content.isOk())
            return false;
    }
    return reader.isOk();
}

bool HeifStructure::parseMovie(QByteArrayView moov)
{
    const std::optional<MovieStart> start = MovieStart::read(moov);
    if (!start || start->configuration.size() > kMaxConfigurationBytes
        || static_cast<quint64>(start->data.at) > kMaxAt)
        return false;
    Item item;
    item.type = fourcc("hvc1");
    item.size = start->size;
    item.turn = start->turn;
    if (start->colours.startsWith("nclx"))
        item.colours = statedColours(start->colours);
    item.configuration = fileExtent(start->configuration);
    item.extents = { start->data };
    m_items.emplace(m_primary, std::move(item));
    return true;
}

std::optional<HevcPicture> HeifStructure::hevcPicture()
{
    const Item *item = find(m_primary);
    if (!item || item->isCropped)
        return {};
    HevcPicture picture { item->size, item->size, 1, {}, item->colours, item->turn };
    if (item->type == fourcc("hvc1")) {
        picture.tiles.push_back({ item->configuration, item->extents });
        return picture;
    }
    const std::optional<QSize> tiles =
        item->type == fourcc("grid") ? gridTiles(*item) : std::nullopt;
    const Item *first = tiles ? find(item->inputs.front()) : nullptr;
    if (!first || first->size.width() * tiles->width() < item->size.width()
        || first->size.height() * tiles->height() < item->size.height())
        return {};
    picture.columns = tiles->width();
    picture.tileSize = first->size;
    picture.colours = first->colours;
    for (const quint32 id : item->inputs) {
        const Item *tile = find(id);
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
    const Item *item = find(id);
    if (!item || !isSafeImage(*item))
        return false;
    return std::all_of(
        item->auxiliaries.cbegin(), item->auxiliaries.cend(), [this, item](quint32 auxiliaryId) {
            const Item *auxiliary = find(auxiliaryId);
            return auxiliary
                && (!isPicture(auxiliary->type)
                    || (auxiliary->auxiliaries.empty()
                        && isInProportion(area(auxiliary->size), item->size)
                        && isSafeImage(*auxiliary)));
        });
}

bool HeifStructure::isSafeImage(const Item &item)
{
    switch (item.type) {
    case fourcc("grid"):
        return isSafeGrid(item);
    case fourcc("iden"): {
        const Item *input = item.inputs.size() == 1 ? find(item.inputs.front()) : nullptr;
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
    const Item *item = find(id);
    if (!item || !item->auxiliaries.empty())
        return false;
    return item->type == fourcc("hvc1") ? isSafeHevc(*item)
                                        : item->type == fourcc("av01") && isSafeAv1(*item);
}

std::optional<QSize> HeifStructure::gridTiles(const Item &grid)
{
    constexpr qint64 kLongPayload = 12;
    const QByteArray payload = read(grid.extents, 0, kLongPayload);
    BoxReader reader(payload);
    reader.number(1); // version
    const quint64 sideSize = (reader.number(1) & 1) != 0 ? 4 : 2;
    const auto rows = static_cast<int>(reader.number(1) + 1);
    const auto columns = static_cast<int>(reader.number(1) + 1);
    const int width = side(reader.number(sideSize));
    const int height = side(reader.number(sideSize));
    const bool isAsStated = reader.isOk() && !grid.size.isEmpty()
        && QSize(width, height) == grid.size
        && static_cast<qint64>(grid.inputs.size()) == qint64 { rows } * columns;
    return isAsStated ? std::optional(QSize(columns, rows)) : std::nullopt;
}

bool HeifStructure::isSafeGrid(const Item &grid)
{
    if (!gridTiles(grid))
        return false;
    qint64 pixels = 0;
    for (const quint32 id : grid.inputs) {
        const Item *tile = find(id);
        pixels += tile ? area(tile->size) : 0;
        if (!isInProportion(pixels, grid.size) || !isSafeInput(id))
            return false;
    }
    return true;
}

bool HeifStructure::isSafeHevc(const Item &item)
{
    const QByteArray configuration = read({ item.configuration }, 0, item.configuration.size);
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
        const QByteArray start = read(item.extents, at, kUnitStartBytes);
        BoxReader data(start);
        const auto size = static_cast<qint64>(data.number(4));
        const QByteArrayView unit = data.take(std::min<quint64>(size, data.left()));
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

bool HeifStructure::isSafeAv1(const Item &item)
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
        const QByteArray start = read(extents, at, kUnitStartBytes);
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
        const QByteArrayView unit = data.take(std::min<quint64>(size, data.left()));
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

const HeifStructure::Item *HeifStructure::find(quint32 id) const
{
    const auto found = m_items.find(id);
    return found == m_items.cend() ? nullptr : &found->second;
}

FileExtent HeifStructure::fileExtent(QByteArrayView ofMeta) const
{
    return { m_metaAt + (ofMeta.data() - m_meta.constData()), ofMeta.size() };
}

// Less when the file or the extents end before; nothing when there was too much of it.
QByteArray HeifStructure::read(const std::vector<FileExtent> &extents, qint64 at, qint64 size)
{
    QByteArray bytes;
    if (++m_reads > kMaxReads)
        return bytes;
    for (const FileExtent &extent : extents) {
        const qint64 wanted = std::min(extent.size - at, size - bytes.size());
        if (wanted > 0) {
            if (extent.at + at > m_device.size() || !m_device.seek(extent.at + at))
                break;
            bytes += m_device.read(wanted);
        }
        at = std::max<qint64>(at - extent.size, 0);
    }
    return bytes;
}
