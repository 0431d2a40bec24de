#include "sample/HeicEncoder.h"

#include <libheif/heif.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace Sample {

namespace {

constexpr int kQuality = 50; // as phones do

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
using Encoder = std::unique_ptr<heif_encoder, Deleter<heif_encoder_release>>;
using Options = std::unique_ptr<heif_encoding_options, Deleter<heif_encoding_options_free>>;
using Picture = std::unique_ptr<heif_image, Deleter<heif_image_release>>;
using Handle = std::unique_ptr<heif_image_handle, Deleter<heif_image_handle_release>>;

bool isOk(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

Picture pixels(const QImage &image)
{
    const bool hasAlpha = image.hasAlphaChannel();
    const QImage rgb =
        image.convertToFormat(hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    heif_image *made = nullptr;
    if (!isOk(
            heif_image_create(rgb.width(),
                              rgb.height(),
                              heif_colorspace_RGB,
                              hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                              &made)))
        return {};
    Picture picture(made);
    if (!isOk(heif_image_add_plane(made, heif_channel_interleaved, rgb.width(), rgb.height(), 8)))
        return {};
    int bytesPerLine = 0;
    uint8_t *plane = heif_image_get_plane(made, heif_channel_interleaved, &bytesPerLine);
    const auto used = static_cast<std::size_t>(rgb.width()) * (hasAlpha ? 4 : 3);
    for (int y = 0; y < rgb.height(); ++y)
        std::memcpy(plane + std::ptrdiff_t { y } * bytesPerLine, rgb.constScanLine(y), used);
    return picture;
}

heif_error append(heif_context * /*context*/, const void *data, std::size_t size, void *to)
{
    static_cast<QByteArray *>(to)->append(static_cast<const char *>(data), qsizetype(size));
    return { heif_error_Ok, heif_suberror_Unspecified, "" };
}

} // namespace

QByteArray encodeHeic(const QImage &image, const HeicTraits &traits)
{
    const Context context(heif_context_alloc());
    heif_encoder *found = nullptr;
    if (!context
        || !isOk(heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &found)))
        return {};
    const Encoder encoder(found);
    heif_encoder_set_lossy_quality(found, kQuality);
    heif_encoder_set_parameter(found, "preset", "ultrafast");
    // No threads: some would outlive their encoder for a moment.
    heif_encoder_set_parameter(found, "x265:pools", "none");
    heif_encoder_set_parameter(found, "x265:frame-threads", "1");
    const Options options(heif_encoding_options_alloc());
    options->image_orientation = static_cast<heif_orientation>(traits.orientation);

    const Picture picture = pixels(image);
    heif_image_handle *made = nullptr;
    if (!picture
        || !isOk(
            heif_context_encode_image(context.get(), picture.get(), found, options.get(), &made)))
        return {};
    const Handle handle(made);
    if (traits.thumbnailPx > 0 && std::max(image.width(), image.height()) > traits.thumbnailPx) {
        heif_image_handle *smaller = nullptr;
        if (!isOk(heif_context_encode_thumbnail(context.get(),
                                                picture.get(),
                                                made,
                                                found,
                                                options.get(),
                                                traits.thumbnailPx,
                                                &smaller)))
            return {};
        const Handle released(smaller);
    }
    if (!traits.exif.isEmpty()
        && !isOk(heif_context_add_exif_metadata(
            context.get(), made, traits.exif.constData(), int(traits.exif.size()))))
        return {};
    QByteArray file;
    heif_writer writer { 1, append };
    return isOk(heif_context_write(context.get(), &writer, &file)) ? file : QByteArray();
}

} // namespace Sample
