#include "HeifPicture.h"

#include "Av1Decoder.h"
#include "Files/PictureFormat.h"
#include "HeifStructure.h"
#include "PlaneAverages.h"
#include "ReducedHevc.h"

#include <QColorSpace>
#include <QIODevice>
#include <QImageReader>
#include <QtEndian>

#include <libheif/heif.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace {

constexpr qint64 kMaxSequentialBytes = 256LL * 1024 * 1024;
constexpr std::size_t kMaxProfileBytes = std::size_t { 4 } * 1024 * 1024;
constexpr int kMaxSmallerVersions = 16;
constexpr int kBytesPerPixel = 4;
constexpr int kBytesPerCell = 32; // three sums, the picture and the turned one
constexpr int kCellsPerPixel = 2; // each way: what is left to do for a smooth scaling
constexpr int kUnstated = heif_color_primaries_unspecified;

// How libheif reads. It seeks first, since the device is not its alone.
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

QByteArray readAll(QIODevice &device)
{
    QByteArray bytes;
    for (QByteArray more = "-"; !more.isEmpty() && bytes.size() < kMaxSequentialBytes;) {
        more = device.read(kMaxSequentialBytes - bytes.size());
        bytes += more;
    }
    return bytes;
}

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

QSize turnedSize(const HevcPicture &picture)
{
    return picture.turn.mapRect(QRect(QPoint(), picture.size)).size();
}

QColorSpace colourSpaceOf(int primaries)
{
    return primaries == heif_color_primaries_SMPTE_EG_432_1 ? QColorSpace(QColorSpace::DisplayP3)
                                                            : QColorSpace(QColorSpace::SRgb);
}

QColorSpace colourSpaceOf(const heif_image_handle *handle)
{
    const std::size_t size = heif_image_handle_get_raw_color_profile_size(handle);
    if (size > 0 && size <= kMaxProfileBytes) {
        QByteArray profile(static_cast<qsizetype>(size), '\0');
        if (isOk(heif_image_handle_get_raw_color_profile(handle, profile.data())))
            return QColorSpace::fromIccProfile(profile);
    }
    heif_color_profile_nclx *colours = nullptr;
    const bool areStated = isOk(heif_image_handle_get_nclx_color_profile(handle, &colours));
    const QColorSpace space = colourSpaceOf(areStated ? colours->color_primaries : kUnstated);
    heif_nclx_color_profile_free(colours);
    return space;
}

// Whether a picture of \a size may be decoded, to as many averages as \a cells has.
bool isWithinLimit(QSize size, QSize cells = { 0, 0 })
{
    const qint64 limitMb = QImageReader::allocationLimit();
    const qint64 bytes = qint64 { size.width() } * size.height() * kBytesPerPixel
        + qint64 { cells.width() } * cells.height() * kBytesPerCell;
    return !size.isEmpty() && (limitMb <= 0 || bytes <= limitMb * 1024 * 1024);
}

// Whether averages are enough of a picture of \a size that is to become \a wanted.
bool isMuchSmaller(QSize wanted, QSize size)
{
    const QSize cells = wanted * kCellsPerPixel;
    return wanted.isValid() && size.width() >= cells.width() * 2
        && size.height() >= cells.height() * 2;
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
    if (!isWithinLimit(size))
        return {};
    const std::unique_ptr<heif_decoding_options, decltype(&heif_decoding_options_free)> options(
        heif_decoding_options_alloc(), &heif_decoding_options_free);
    if (!options)
        return {};
    options->convert_hdr_to_8bit = 1;
    options->decoder_id = Av1Decoder::name(); // HEVC has one decoder, which is taken all the same
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

// The averages of as many cells as \a cells has pixels, which must not be more than \a image has.
QImage averagedPicture(const heif_image &image, QSize cells)
{
    constexpr std::array kChannels { heif_channel_R, heif_channel_G, heif_channel_B };
    constexpr int kColours = 3;
    QImage picture(cells, QImage::Format_RGB888);
    for (int colour = 0; const heif_channel channel : kChannels) {
        if (picture.isNull() || heif_image_has_channel(&image, channel) == 0
            || heif_image_get_bits_per_pixel_range(&image, channel) != 8)
            return {};
        const QSize size(heif_image_get_width(&image, channel),
                         heif_image_get_height(&image, channel));
        int bytesPerLine = 0;
        const uint8_t *samples = heif_image_get_plane_readonly(&image, channel, &bytesPerLine);
        PlaneAverages plane(size, cells);
        if (samples == nullptr)
            return {};
        plane.addBytes(samples, bytesPerLine, QRect({}, size));
        for (int y = 0; y < cells.height(); ++y) {
            uchar *target = picture.scanLine(y) + colour;
            for (int x = 0; x < cells.width(); ++x, target += kColours)
                *target = static_cast<uchar>(qRound(plane.average(x, y, cells)));
        }
        ++colour;
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
    constexpr qsizetype kFirstBrand = 16;
    constexpr qint64 kMaxBytes = 256;
    const QByteArray start = device.peek(kMaxBytes);
    if (start.size() < kFirstBrand || start.sliced(4, 4) != "ftyp")
        return false;
    const auto stated = qsizetype { qFromBigEndian<quint32>(start.constData()) };
    const qsizetype end = std::min(stated, start.size());
    for (qsizetype at = kFirstBrand; at + 4 <= end; at += 4) {
        if (PictureFormat::isPictureBrand(QByteArrayView(start).sliced(at, 4)))
            return true;
    }
    return false;
}

bool HeifPicture::open(QIODevice *device)
{
    m_device = device;
    if (device->isSequential()) {
        m_buffer.setData(readAll(*device));
        m_buffer.open(QIODevice::ReadOnly);
        m_device = &m_buffer;
    }
    HeifStructure structure(*m_device);
    if (!structure.isSafe())
        return false;
    m_hevc = structure.hevcPicture();
    if (!structure.isSequence() && !openImage())
        return false;
    const QSize size = m_handle ? sizeOf(m_handle.get()) : turnedSize(*m_hevc);
    if (size.isEmpty()
        || qint64 { size.width() } * size.height() > qint64 { kMaxSidePx } * kMaxSidePx)
        return false;
    m_size = size;
    return true;
}

bool HeifPicture::openImage()
{
    m_context.reset(heif_context_alloc());
    if (!m_context || !m_device->seek(0))
        return false;
    heif_context_set_maximum_image_size_limit(m_context.get(), kMaxSidePx);
    heif_context_set_max_decoding_threads(m_context.get(), 0); // the caller's thread alone
    if (!isOk(heif_context_read_from_reader(m_context.get(), &kReader, m_device, nullptr)))
        return false;
    heif_image_handle *handle = nullptr;
    const bool hasHandle = isOk(heif_context_get_primary_image_handle(m_context.get(), &handle));
    m_handle.reset(handle);
    if (hasHandle && m_hevc && turnedSize(*m_hevc) != sizeOf(handle)) {
        // It is cropped, or its writer stated the size that it has after its turn.
        m_hevc->size.transpose();
        m_hevc->tileSize.transpose();
        if (m_hevc->tiles.size() > 1 || turnedSize(*m_hevc) != sizeOf(handle))
            m_hevc.reset();
    }
    return hasHandle;
}

QImage HeifPicture::decode(QSize wanted) const
{
    if (!m_size.isValid())
        return {};
    const Handle smaller = smallerVersion(wanted);
    QImage picture = smaller ? decode(*smaller, wanted) : QImage();
    if (picture.isNull() && (!m_handle || isMuchSmaller(wanted, m_size)))
        picture = decodeReduced(wanted);
    if (picture.isNull() && m_handle)
        picture = decode(*m_handle, wanted);
    if (!picture.isNull() && wanted.isValid() && picture.size() != wanted) {
        const QColorSpace space = picture.colorSpace();
        picture = picture.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        picture.setColorSpace(space);
    }
    return picture;
}

// The smallest of those that need no enlarging and show what the picture shows: writers leave
// transparency out of some.
HeifPicture::Handle HeifPicture::smallerVersion(QSize wanted) const
{
    Handle best;
    if (!wanted.isValid() || !m_handle)
        return best;
    std::array<heif_item_id, kMaxSmallerVersions> ids {};
    const int hasAlpha = heif_image_handle_has_alpha_channel(m_handle.get());
    const int count = heif_image_handle_get_list_of_thumbnail_IDs(
        m_handle.get(), ids.data(), static_cast<int>(ids.size()));
    for (int i = 0; i < count; ++i) {
        heif_image_handle *found = nullptr;
        if (!isOk(heif_image_handle_get_thumbnail(m_handle.get(), ids.at(std::size_t(i)), &found)))
            continue;
        Handle handle(found);
        const QSize size = sizeOf(found);
        if (size.width() < wanted.width() || size.height() < wanted.height()
            || !haveOneShape(size, m_size)
            || heif_image_handle_has_alpha_channel(found) != hasAlpha)
            continue;
        if (!best || size.width() < sizeOf(best.get()).width())
            best = std::move(handle);
    }
    return best;
}

QImage HeifPicture::decodeReduced(QSize wanted) const
{
    const QSize cells = wanted.isValid() ? (wanted * kCellsPerPixel).boundedTo(m_size) : m_size;
    if (!m_hevc || !isWithinLimit(m_size, cells)
        || (m_handle && heif_image_handle_has_alpha_channel(m_handle.get()) != 0))
        return {};
    QImage picture = ReducedHevc::decode(*m_device, *m_hevc, cells);
    if (!picture.isNull())
        picture.setColorSpace(
            m_handle ? colourSpaceOf(m_handle.get())
                     : colourSpaceOf(m_hevc->colours ? m_hevc->colours->primaries : kUnstated));
    return picture;
}

// A picture that is to become much smaller is averaged first: that is a tenth of the work that the
// image library has with all of its pixels.
QImage HeifPicture::decode(const heif_image_handle &handle, QSize wanted)
{
    const bool hasAlpha = heif_image_handle_has_alpha_channel(&handle) != 0;
    const bool hasBytes = heif_image_handle_get_luma_bits_per_pixel(&handle) == 8;
    QImage picture;
    if (hasBytes && !hasAlpha && isMuchSmaller(wanted, sizeOf(&handle))) {
        const Image planes = decodeAs(handle, heif_chroma_444);
        picture = planes ? averagedPicture(*planes, wanted * kCellsPerPixel) : QImage();
    } else if (Image image = decodeAs(
                   handle, hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB)) {
        picture = wholePicture(std::move(image), hasAlpha);
    }
    if (!picture.isNull())
        picture.setColorSpace(colourSpaceOf(&handle));
    return picture;
}
