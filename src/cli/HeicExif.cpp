#include "HeicExif.h"

#include <QFile>
#include <QtEndian>

#include <libheif/heif.h>

#include <cstdlib>
#include <libexif/exif-data.h>
#include <memory>

namespace Cli {

namespace {

constexpr std::size_t kMaxBlockBytes = 8 * 1024 * 1024;
constexpr qsizetype kMaxSegmentBytes = 65535 - 2; // its length counts itself

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

bool isOk(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

// The block as the file holds it: four bytes say how many more to skip before it begins.
QByteArray storedBlock(const QString &path)
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

void setUpright(ExifData &data)
{
    ExifEntry *entry = exif_content_get_entry(data.ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
    if (entry != nullptr && entry->format == EXIF_FORMAT_SHORT && entry->size >= 2)
        exif_set_short(entry->data, exif_data_get_byte_order(&data), 1);
}

void removeEntry(ExifData &data, ExifIfd ifd, ExifTag tag)
{
    if (ExifEntry *entry = exif_content_get_entry(data.ifd[ifd], tag))
        exif_content_remove_entry(data.ifd[ifd], entry);
}

QByteArray saved(ExifData &data)
{
    unsigned char *bytes = nullptr;
    unsigned int size = 0;
    exif_data_save_data(&data, &bytes, &size);
    const QByteArray result(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    std::free(bytes); // NOLINT(cppcoreguidelines-no-malloc): the library's own
    return result;
}

} // namespace

QByteArray jpegExif(const QString &path)
{
    const QByteArray block = storedBlock(path);
    if (block.isEmpty())
        return {};
    const QByteArray named = QByteArray("Exif\0\0", 6) + block;
    const Exif data(exif_data_new());
    if (!data)
        return {};
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_load_data(data.get(),
                        reinterpret_cast<const unsigned char *>(named.constData()),
                        static_cast<unsigned int>(named.size()));
    setUpright(*data);
    QByteArray content = saved(*data);
    if (content.size() > kMaxSegmentBytes) { // what only the camera's maker understands
        removeEntry(*data, EXIF_IFD_EXIF, EXIF_TAG_MAKER_NOTE);
        content = saved(*data);
    }
    if (content.isEmpty() || content.size() > kMaxSegmentBytes)
        return {};
    QByteArray segment("\xFF\xE1\0\0", 4);
    qToBigEndian(static_cast<quint16>(content.size() + 2), segment.data() + 2);
    return segment + content;
}

} // namespace Cli
