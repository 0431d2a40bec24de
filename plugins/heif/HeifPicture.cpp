#include "HeifPicture.h"

#include "HeifStructure.h"

#include <QBuffer>
#include <QColorSpace>
#include <QIODevice>
#include <QImageReader>
#include <QtEndian>

#include <libheif/heif.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <utility>
#include <vector>

namespace {

constexpr qint64 kMaxSequentialBytes = 256LL * 1024 * 1024;
constexpr std::size_t kMaxProfileBytes = std::size_t { 4 } * 1024 * 1024;
constexpr int kMaxSmallerVersions = 16;
constexpr int kBytesPerPixel = 4;
constexpr int kCellsPerPixel = 2; // each way: what is left to do for a smooth scaling

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

struct ReleaseImage
{
    void operator()(heif_image *image) const { heif_image_release(image); }
};
using Image = std::unique_ptr<heif_image, ReleaseImage>;

Image decodeAs(const heif_image_handle &handle, heif_chroma layout)
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
    heif_image *decoded = nullptr;
    const bool isDone =
        isOk(heif_decode_image(&handle, &decoded, heif_colorspace_RGB, layout, options.get()));
    Image image(isDone ? decoded : nullptr);
    const bool isAsStated = image
        && size
            == QSize(heif_image_get_primary_width(image.get()),
                     heif_image_get_primary_height(image.get()));
    return isAsStated ? std::move(image) : Image();
}

// The picture without a copy: it holds what was decoded.
QImage wholePicture(Image image, bool hasAlpha)
{
    int bytesPerLine = 0;
    const uint8_t *pixels =
        heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &bytesPerLine);
    const bool isPremultiplied = heif_image_is_premultiplied_alpha(image.get()) != 0;
    const QImage::Format format = !hasAlpha ? QImage::Format_RGB888
        : isPremultiplied                   ? QImage::Format_RGBA8888_Premultiplied
                                            : QImage::Format_RGBA8888;
    const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
    if (pixels == nullptr || width <= 0 || height <= 0)
        return {};
    QImage picture(pixels, width, height, bytesPerLine, format, &freeImage, image.get());
    if (!picture.isNull()) // else it did not take over the pixels
        static_cast<void>(image.release());
    return picture;
}

// Where cell number \a index of \a count begins in \a length samples; they differ by one at most.
int cellStart(int index, int count, int length)
{
    return static_cast<int>(qint64 { index } * length / count);
}

// Writes the averages of a plane's cells into every \a kColours-th byte of \a picture.
void averagePlane(const heif_image &image, heif_channel channel, int colour, QImage &picture)
{
    constexpr int kColours = 3;
    const int width = heif_image_get_width(&image, channel);
    const int height = heif_image_get_height(&image, channel);
    int bytesPerLine = 0;
    const uint8_t *plane = heif_image_get_plane_readonly(&image, channel, &bytesPerLine);
    std::vector<quint32> columns(static_cast<std::size_t>(width));
    for (int row = 0; row < picture.height(); ++row) {
        const int top = cellStart(row, picture.height(), height);
        const int bottom = cellStart(row + 1, picture.height(), height);
        std::fill(columns.begin(), columns.end(), 0);
        for (int y = top; y < bottom; ++y) {
            const uint8_t *line = plane + std::ptrdiff_t { y } * bytesPerLine;
            std::transform(columns.cbegin(), columns.cend(), line, columns.begin(), std::plus<>());
        }
        uchar *target = picture.scanLine(row) + colour;
        for (int column = 0; column < picture.width(); ++column, target += kColours) {
            const int left = cellStart(column, picture.width(), width);
            const int right = cellStart(column + 1, picture.width(), width);
            const quint64 sum =
                std::accumulate(columns.cbegin() + left, columns.cbegin() + right, quint64 { 0 });
            const auto samples =
                static_cast<quint64>(right - left) * static_cast<quint64>(bottom - top);
            *target = static_cast<uchar>((sum + samples / 2) / samples);
        }
    }
}

// The averages of as many cells as \a cells has pixels, which must not be more than \a image has.
QImage averagedPicture(const heif_image &image, QSize cells)
{
    constexpr std::array kChannels { heif_channel_R, heif_channel_G, heif_channel_B };
    QImage picture(cells, QImage::Format_RGB888);
    if (picture.isNull())
        return picture;
    for (int colour = 0; const heif_channel channel : kChannels) {
        if (heif_image_has_channel(&image, channel) == 0
            || heif_image_get_bits_per_pixel_range(&image, channel) != 8
            || heif_image_get_width(&image, channel) < cells.width()
            || heif_image_get_height(&image, channel) < cells.height())
            return {};
        averagePlane(image, channel, colour++, picture);
    }
    return picture;
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
    // The first brand says what the file is best for, those that follow what it can be read as.
    static constexpr std::array kBrands { "heic", "heix", "mif1", "avif" };
    constexpr qsizetype kFirstBrand = 16;
    constexpr qint64 kMaxBytes = 256;
    const QByteArray start = device.peek(kMaxBytes);
    if (start.size() < kFirstBrand || start.sliced(4, 4) != "ftyp")
        return false;
    const auto stated = qsizetype { qFromBigEndian<quint32>(start.constData()) };
    const qsizetype end = std::min(stated, start.size());
    for (qsizetype at = kFirstBrand; at + 4 <= end; at += 4) {
        if (std::find(kBrands.cbegin(), kBrands.cend(), start.sliced(at, 4)) != kBrands.cend())
            return true;
    }
    return false;
}

bool HeifPicture::open(QIODevice *device)
{
    QBuffer buffer(&m_bytes);
    if (device->isSequential()) {
        m_bytes = device->read(kMaxSequentialBytes);
        buffer.open(QIODevice::ReadOnly);
    }
    if (!HeifStructure(buffer.isOpen() ? buffer : *device).isSafe())
        return false;
    m_context.reset(heif_context_alloc());
    if (!m_context)
        return false;
    heif_context_set_maximum_image_size_limit(m_context.get(), kMaxSidePx);
    heif_context_set_max_decoding_threads(m_context.get(), 0); // the caller's thread alone
    if (buffer.isOpen()) {
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
    QImage picture = smaller ? decode(*smaller, wanted) : QImage();
    if (picture.isNull())
        picture = decode(*m_handle, wanted);
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

// A picture that is to become much smaller is averaged first: that is a tenth of the work that the
// image library has with all of its pixels.
QImage HeifPicture::decode(const heif_image_handle &handle, QSize wanted)
{
    const QSize size = sizeOf(&handle);
    const QSize cells = wanted * kCellsPerPixel;
    const bool hasAlpha = heif_image_handle_has_alpha_channel(&handle) != 0;
    QImage picture;
    const bool hasBytes = heif_image_handle_get_luma_bits_per_pixel(&handle) == 8;
    if (wanted.isValid() && !hasAlpha && hasBytes && size.width() >= cells.width() * 2
        && size.height() >= cells.height() * 2) {
        const Image planes = decodeAs(handle, heif_chroma_444);
        picture = planes ? averagedPicture(*planes, cells) : QImage();
    } else if (Image image = decodeAs(
                   handle, hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB)) {
        picture = wholePicture(std::move(image), hasAlpha);
    }
    if (!picture.isNull())
        picture.setColorSpace(colourSpaceOf(&handle));
    return picture;
}
