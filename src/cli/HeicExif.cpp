#include "HeicExif.h"

#include <QFile>
#include <QtEndian>

#include <libheif/heif.h>

#include <cstdlib>
#include <libexif/exif-data.h>
#include <libexif/exif-loader.h>
#include <memory>

namespace Cli {

namespace {

constexpr std::size_t kMaxBlockBytes = std::size_t { 8 } * 1024 * 1024;
constexpr qsizetype kMaxSegmentBytes = 65535 - 2; // its length counts itself
constexpr quint16 kUpright = 1;
const QByteArray kName("Exif\0\0", 6);

template <auto Free>
struct Deleter
{
    template <typename T>
    void operator()(T *object) const
    {
        Free(object);
    }
};
using Context = std::unique_ptr<heif_context, Deleter<heif_context_free>>;
using Handle = std::unique_ptr<heif_image_handle, Deleter<heif_image_handle_release>>;
using Exif = std::unique_ptr<ExifData, Deleter<exif_data_unref>>;
using Loader = std::unique_ptr<ExifLoader, Deleter<exif_loader_unref>>;

bool isOk(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

// The block of a HEIC file: four bytes say how many more to skip before it begins.
QByteArray heicBlock(const QString &path)
{
    const Context context(heif_context_alloc());
    if (!context
        || !isOk(heif_context_read_from_file(
            context.get(), QFile::encodeName(path).constData(), nullptr)))
        return {};
    heif_image_handle *found = nullptr;
    if (!isOk(heif_context_get_primary_image_handle(context.get(), &found)))
        return {};
    const Handle handle(found);
    heif_item_id id = 0;
    if (heif_image_handle_get_list_of_metadata_block_IDs(handle.get(), "Exif", &id, 1) != 1)
        return {};
    const std::size_t size = heif_image_handle_get_metadata_size(handle.get(), id);
    if (size <= sizeof(quint32) || size > kMaxBlockBytes)
        return {};
    QByteArray block(static_cast<qsizetype>(size), '\0');
    if (!isOk(heif_image_handle_get_metadata(handle.get(), id, block.data())))
        return {};
    const qint64 start = qint64 { sizeof(quint32) } + qFromBigEndian<quint32>(block.constData());
    return start < block.size() ? block.sliced(static_cast<qsizetype>(start)) : QByteArray();
}

// The block of a JPEG file, whatever its name says.
QByteArray jpegBlock(const QString &path)
{
    const Loader loader(exif_loader_new());
    if (!loader)
        return {};
    exif_loader_write_file(loader.get(), QFile::encodeName(path).constData());
    const unsigned char *bytes = nullptr;
    unsigned int size = 0;
    exif_loader_get_buf(loader.get(), &bytes, &size);
    const QByteArray block(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    return block.startsWith(kName) ? block.sliced(kName.size()) : QByteArray();
}

QByteArray storedBlock(const QString &path)
{
    QFile file(path);
    const bool isJpeg = file.open(QIODevice::ReadOnly) && file.read(2) == "\xFF\xD8";
    return isJpeg ? jpegBlock(path) : heicBlock(path);
}

template <typename Number>
Number numberAt(const QByteArray &block, qsizetype at, bool isBigEndian)
{
    return isBigEndian ? qFromBigEndian<Number>(block.constData() + at)
                       : qFromLittleEndian<Number>(block.constData() + at);
}

// Changes the two bytes that tell the orientation, and nothing else: makers' notes hold places of
// their own.
void setUpright(QByteArray &block)
{
    constexpr qsizetype kHeaderSize = 8;
    constexpr qsizetype kEntrySize = 12;
    constexpr quint16 kOrientation = 0x0112;
    constexpr quint16 kShort = 3;
    if (block.size() < kHeaderSize)
        return;
    const bool isBigEndian = block.startsWith("MM");
    const qsizetype directory = numberAt<quint32>(block, 4, isBigEndian);
    if (directory > block.size() - qsizetype { sizeof(quint16) })
        return;
    const int count = numberAt<quint16>(block, directory, isBigEndian);
    qsizetype entry = directory + qsizetype { sizeof(quint16) };
    for (int i = 0; i < count && entry <= block.size() - kEntrySize; ++i, entry += kEntrySize) {
        if (numberAt<quint16>(block, entry, isBigEndian) != kOrientation
            || numberAt<quint16>(block, entry + 2, isBigEndian) != kShort)
            continue;
        char *value = block.data() + entry + 8;
        if (isBigEndian)
            qToBigEndian<quint16>(kUpright, value);
        else
            qToLittleEndian<quint16>(kUpright, value);
    }
}

void removeEntry(ExifData &data, ExifIfd ifd, ExifTag tag)
{
    if (ExifEntry *entry = exif_content_get_entry(data.ifd[ifd], tag))
        exif_content_remove_entry(data.ifd[ifd], entry);
}

// A block that is too large for a JPEG, without what only the camera's maker understands.
QByteArray withoutMakerNote(const QByteArray &named)
{
    const Exif data(exif_data_new());
    if (!data)
        return {};
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_IGNORE_UNKNOWN_TAGS);
    exif_data_load_data(data.get(),
                        reinterpret_cast<const unsigned char *>(named.constData()),
                        static_cast<unsigned int>(named.size()));
    removeEntry(*data, EXIF_IFD_EXIF, EXIF_TAG_MAKER_NOTE);
    unsigned char *bytes = nullptr;
    unsigned int size = 0;
    exif_data_save_data(data.get(), &bytes, &size);
    const QByteArray result(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    std::free(bytes); // NOLINT(cppcoreguidelines-no-malloc): the library's own
    return result;
}

} // namespace

QByteArray jpegExif(const QString &path)
{
    QByteArray block = storedBlock(path);
    if (block.isEmpty())
        return {};
    setUpright(block);
    QByteArray content = kName + block;
    if (content.size() > kMaxSegmentBytes)
        content = withoutMakerNote(content);
    if (content.isEmpty() || content.size() > kMaxSegmentBytes)
        return {};
    QByteArray segment("\xFF\xE1\0\0", 4);
    qToBigEndian(static_cast<quint16>(content.size() + 2), segment.data() + 2);
    return segment + content;
}

} // namespace Cli
