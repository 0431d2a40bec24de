#include "Export/HeicToJpeg/HeicExif.h"

#include "Export/HeicToJpeg/ExifBlock.h"

#include <QFile>
#include <QtEndian>

#include <libheif/heif.h>

#include <libexif/exif-loader.h>
#include <memory>

namespace Export::HeicToJpeg {

namespace {

constexpr std::size_t kMaxBlockBytes = std::size_t { 8 } * 1024 * 1024;
constexpr qsizetype kMaxSegmentBytes = 65535 - 2; // its length counts itself
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
using Loader = std::unique_ptr<ExifLoader, Deleter<exif_loader_unref>>;

bool isOk(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

QByteArray withoutName(const QByteArray &block)
{
    return block.startsWith(kName) ? block.sliced(kName.size()) : block;
}

// The block of a HEIC file: four bytes say how many more to skip before it begins. No value when
// it is not where they say. The picture must have been decoded before: its plug-in has made sure
// that the file is harmless.
std::optional<QByteArray> heicBlock(const QString &path)
{
    const Context context(heif_context_alloc());
    if (!context
        || !isOk(heif_context_read_from_file(
            context.get(), QFile::encodeName(path).constData(), nullptr)))
        return QByteArray();
    heif_image_handle *found = nullptr;
    if (!isOk(heif_context_get_primary_image_handle(context.get(), &found)))
        return QByteArray();
    const Handle handle(found);
    heif_item_id id = 0;
    if (heif_image_handle_get_list_of_metadata_block_IDs(handle.get(), "Exif", &id, 1) != 1)
        return QByteArray();
    const std::size_t size = heif_image_handle_get_metadata_size(handle.get(), id);
    if (size <= sizeof(quint32) || size > kMaxBlockBytes)
        return std::nullopt;
    QByteArray block(static_cast<qsizetype>(size), '\0');
    if (!isOk(heif_image_handle_get_metadata(handle.get(), id, block.data())))
        return std::nullopt;
    const qint64 start = qint64 { sizeof(quint32) } + qFromBigEndian<quint32>(block.constData());
    if (start >= block.size())
        return std::nullopt;
    return withoutName(block.sliced(static_cast<qsizetype>(start)));
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
    return withoutName({ reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size) });
}

std::optional<QByteArray> storedBlock(const QString &path)
{
    QFile file(path);
    const bool isJpeg = file.open(QIODevice::ReadOnly) && file.read(2) == "\xFF\xD8";
    return isJpeg ? jpegBlock(path) : heicBlock(path);
}

} // namespace

std::optional<QByteArray> jpegExif(const QString &path, QSize size)
{
    const std::optional<QByteArray> stored = storedBlock(path);
    if (!stored || stored->isEmpty())
        return stored;
    ExifBlock block(*stored);
    if (!block.isReadable())
        return std::nullopt;
    block.setUpright(size);
    const qsizetype maxBlock = kMaxSegmentBytes - kName.size();
    const QByteArray content =
        block.bytes().size() <= maxBlock ? block.bytes() : block.compacted(maxBlock);
    if (content.isEmpty())
        return std::nullopt;
    QByteArray segment("\xFF\xE1\0\0", 4);
    qToBigEndian(static_cast<quint16>(kName.size() + content.size() + 2), segment.data() + 2);
    return segment + kName + content;
}

} // namespace Export::HeicToJpeg
