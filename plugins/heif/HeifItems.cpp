#include "HeifItems.h"

#include "BoxReader.h"
#include "MovieStart.h"

#include <QIODevice>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int kMaxFileBoxes = 1024;
constexpr std::size_t kMaxItems = 8192;
constexpr std::size_t kMaxProperties = 16384;
constexpr std::size_t kMaxReferences = 65536;
constexpr quint64 kMaxExtents = 32; // an item
constexpr qint64 kMaxConfigurationBytes = 16384;
constexpr quint64 kMaxAt = quint64 { 1 } << 48; // in a file: far below where sums overflow
constexpr int kMaxReads = 16384; // of the file: ample for the tiles of any camera
constexpr int kMaxChanges = 3; // of an image: a turn, a flip and a crop

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

} // namespace

HeifItems::HeifItems(QIODevice &device)
    : m_device(device)
{
}

bool HeifItems::parse()
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

bool HeifItems::parseMeta(QByteArrayView meta)
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

bool HeifItems::parseItems(QByteArrayView iinf)
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
        HeifItem item;
        if (version >= 2)
            item.type = static_cast<quint32>(entry.number(4));
        if (!entry.isOk() || m_items.size() == kMaxItems
            || !m_items.try_emplace(id, std::move(item)).second)
            return false;
    }
    return reader.isOk();
}

bool HeifItems::parseLocations(QByteArrayView iloc, QByteArrayView idat)
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

bool HeifItems::parseProperties(QByteArrayView iprp)
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

bool HeifItems::addProperty(HeifItem &item, quint32 type, QByteArrayView content) const
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
        const int width = sideOf(ispe.number(4));
        const int height = sideOf(ispe.number(4));
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

bool HeifItems::parseReferences(QByteArrayView iref)
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

bool HeifItems::parseMovie(QByteArrayView moov)
{
    const std::optional<MovieStart> start = MovieStart::read(moov);
    if (!start || start->configuration.size() > kMaxConfigurationBytes
        || static_cast<quint64>(start->data.at) > kMaxAt)
        return false;
    HeifItem item;
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

const HeifItem *HeifItems::find(quint32 id) const
{
    const auto found = m_items.find(id);
    return found == m_items.cend() ? nullptr : &found->second;
}

FileExtent HeifItems::fileExtent(QByteArrayView ofMeta) const
{
    return { m_metaAt + (ofMeta.data() - m_meta.constData()), ofMeta.size() };
}

QByteArray HeifItems::read(const std::vector<FileExtent> &extents, qint64 at, qint64 size)
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
