#include "HeifPicture.h"

#include <QColorSpace>
#include <QIODevice>
#include <QImageReader>

#include <libheif/heif.h>

#include <array>
#include <cstdlib>
#include <vector>

namespace {

constexpr qint64 kMaxSequentialBytes = 256LL * 1024 * 1024;
constexpr std::size_t kMaxProfileBytes = 4 * 1024 * 1024;
constexpr int kMaxSmallerVersions = 16;
constexpr int kBytesPerPixel = 4;

// How libheif reads: the device stands where it left it.
int64_t position(void *device)
{
    return static_cast<QIODevice *>(device)->pos();
}

int readBytes(void *data, std::size_t size, void *device)
{
    const auto wanted = static_cast<qint64>(size);
    return static_cast<QIODevice *>(device)->read(static_cast<char *>(data), wanted) == wanted ? 0
                                                                                               : 1;
}

int seek(int64_t to, void *device)
{
    return static_cast<QIODevice *>(device)->seek(to) ? 0 : 1;
}

heif_reader_grow_status waitForSize(int64_t size, void *device)
{
    return size <= static_cast<QIODevice *>(device)->size()
        ? heif_reader_grow_status_size_reached
        : heif_reader_grow_status_size_beyond_eof;
}

constexpr heif_reader kReader { 1, position, readBytes, seek, waitForSize };

bool isOk(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

QSize sizeOf(const heif_image_handle *handle)
{
    return { heif_image_handle_get_width(handle), heif_image_handle_get_height(handle) };
}

// Whether two sizes are of one picture, but for rounding.
bool haveOneShape(QSize a, QSize b)
{
    const qint64 across = qint64 { a.width() } * b.height();
    const qint64 down = qint64 { a.height() } * b.width();
    return std::abs(across - down) <= qint64 { std::max(b.width(), b.height()) } * 2;
}

QColorSpace colourSpaceOf(const heif_image_handle *handle)
{
    const std::size_t size = heif_image_handle_get_raw_color_profile_size(handle);
    if (size > 0 && size <= kMaxProfileBytes) {
        QByteArray profile(static_cast<qsizetype>(size), '\0');
        if (isOk(heif_image_handle_get_raw_color_profile(handle, profile.data())))
            return QColorSpace::fromIccProfile(profile);
    }
    heif_color_profile_nclx *numbers = nullptr;
    QColorSpace space(QColorSpace::SRgb);
    if (isOk(heif_image_handle_get_nclx_color_profile(handle, &numbers)) && numbers != nullptr
        && numbers->color_primaries == heif_color_primaries_SMPTE_EG_432_1)
        space = QColorSpace(QColorSpace::DisplayP3);
    heif_nclx_color_profile_free(numbers);
    return space;
}

void freeImage(void *image)
{
    heif_image_release(static_cast<const heif_image *>(image));
}

} // namespace

void HeifPicture::Free::operator()(heif_context *context) const
{
    heif_context_free(context);
}

void HeifPicture::Free::operator()(heif_image_handle *handle) const
{
    heif_image_handle_release(handle);
}

HeifPicture::HeifPicture() = default;

HeifPicture::~HeifPicture() = default;

bool HeifPicture::isHeif(QIODevice &device)
{
    static constexpr std::array kBrands { "heic", "heix", "heim", "heis", "hevc",
                                          "hevx", "mif1", "msf1", "avif", "avis" };
    const QByteArray start = device.peek(12);
    return start.size() == 12 && start.sliced(4, 4) == "ftyp"
        && std::find(kBrands.cbegin(), kBrands.cend(), start.sliced(8, 4)) != kBrands.cend();
}

bool HeifPicture::open(QIODevice *device)
{
    m_context.reset(heif_context_alloc());
    if (!m_context)
        return false;
    heif_context_set_maximum_image_size_limit(m_context.get(), kMaxSidePx);
    heif_context_set_max_decoding_threads(m_context.get(), 0); // the caller's thread alone
    if (device->isSequential()) {
        m_bytes = device->read(kMaxSequentialBytes);
        if (!isOk(heif_context_read_from_memory_without_copy(
                m_context.get(), m_bytes.constData(), std::size_t(m_bytes.size()), nullptr)))
            return false;
    } else if (!isOk(heif_context_read_from_reader(m_context.get(), &kReader, device, nullptr))) {
        return false;
    }
    heif_image_handle *handle = nullptr;
    if (!isOk(heif_context_get_primary_image_handle(m_context.get(), &handle)))
        return false;
    m_handle.reset(handle);
    const QSize size = sizeOf(handle);
    if (size.isEmpty()
        || qint64 { size.width() } * size.height() > qint64 { kMaxSidePx } * kMaxSidePx)
        return false;
    m_size = size;
    return true;
}

QImage HeifPicture::decode(QSize wanted) const
{
    if (!m_size.isValid())
        return {};
    const Handle smaller = smallerVersion(wanted);
    QImage picture = smaller ? decode(*smaller) : QImage();
    if (picture.isNull())
        picture = decode(*m_handle);
    if (!picture.isNull() && wanted.isValid() && picture.size() != wanted) {
        const QColorSpace space = picture.colorSpace();
        picture = picture.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        picture.setColorSpace(space);
    }
    return picture;
}

// The smallest of those that need no enlarging.
HeifPicture::Handle HeifPicture::smallerVersion(QSize wanted) const
{
    Handle best;
    if (!wanted.isValid())
        return best;
    std::array<heif_item_id, kMaxSmallerVersions> ids {};
    const int count = heif_image_handle_get_list_of_thumbnail_IDs(
        m_handle.get(), ids.data(), static_cast<int>(ids.size()));
    for (int i = 0; i < count; ++i) {
        heif_image_handle *found = nullptr;
        if (!isOk(heif_image_handle_get_thumbnail(m_handle.get(), ids.at(std::size_t(i)), &found)))
            continue;
        Handle handle(found);
        const QSize size = sizeOf(found);
        if (size.width() < wanted.width() || size.height() < wanted.height()
            || !haveOneShape(size, m_size))
            continue;
        if (!best || size.width() < sizeOf(best.get()).width())
            best = std::move(handle);
    }
    return best;
}

QImage HeifPicture::decode(const heif_image_handle &handle)
{
    const QSize size = sizeOf(&handle);
    const qint64 limitMb = QImageReader::allocationLimit();
    const qint64 bytes = qint64 { size.width() } * size.height() * kBytesPerPixel;
    if (size.isEmpty() || (limitMb > 0 && bytes > limitMb * 1024 * 1024))
        return {};
    const std::unique_ptr<heif_decoding_options, decltype(&heif_decoding_options_free)> options(
        heif_decoding_options_alloc(), &heif_decoding_options_free);
    if (!options)
        return {};
    options->convert_hdr_to_8bit = 1;
    const bool hasAlpha = heif_image_handle_has_alpha_channel(&handle) != 0;
    heif_image *image = nullptr;
    const heif_error error =
        heif_decode_image(&handle,
                          &image,
                          heif_colorspace_RGB,
                          hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                          options.get());
    if (!isOk(error))
        return {};
    int bytesPerLine = 0;
    const uint8_t *pixels =
        heif_image_get_plane_readonly(image, heif_channel_interleaved, &bytesPerLine);
    const bool isPremultiplied = heif_image_is_premultiplied_alpha(image) != 0;
    const QImage::Format format = !hasAlpha ? QImage::Format_RGB888
        : isPremultiplied                   ? QImage::Format_RGBA8888_Premultiplied
                                            : QImage::Format_RGBA8888;
    const int width = heif_image_get_width(image, heif_channel_interleaved);
    const int height = heif_image_get_height(image, heif_channel_interleaved);
    if (pixels == nullptr || width <= 0 || height <= 0) {
        heif_image_release(image);
        return {};
    }
    QImage picture(pixels, width, height, bytesPerLine, format, &freeImage, image);
    if (picture.isNull()) { // it did not take over the pixels
        heif_image_release(image);
        return picture;
    }
    picture.setColorSpace(colourSpaceOf(&handle));
    return picture;
}
