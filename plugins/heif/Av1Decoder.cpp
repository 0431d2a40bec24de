#include "Av1Decoder.h"

#include <QtGlobal>

#include <libheif/heif.h>
#include <libheif/heif_plugin.h>

#include <array>
#include <cstring>
#include <dav1d/dav1d.h>
#include <memory>
#include <mutex>
#include <vector>

namespace {

constexpr char kName[] = "dataexport-dav1d";
constexpr int kPluginVersion = 3; // the first in which decoders have names
constexpr int kLowestPriority = 1;
constexpr unsigned kMaxPixels = 16384U * 16384U;

constexpr heif_error kOk { heif_error_Ok, heif_suberror_Unspecified, "Success" };
constexpr heif_error kFailure { heif_error_Decoder_plugin_error,
                                heif_suberror_Unspecified,
                                "The AV1 data cannot be decoded" };

struct Decoder
{
    Dav1dContext *context = nullptr;
    std::vector<quint8> data;

    Decoder() = default;
    ~Decoder() { dav1d_close(&context); }
    Decoder(const Decoder &) = delete;
    Decoder &operator=(const Decoder &) = delete;
};

struct Picture : Dav1dPicture
{
    Picture()
        : Dav1dPicture {}
    {
    }
    ~Picture() { dav1d_picture_unref(this); }
    Picture(const Picture &) = delete;
    Picture &operator=(const Picture &) = delete;
};

struct ReleaseImage
{
    void operator()(heif_image *image) const { heif_image_release(image); }
};
using Image = std::unique_ptr<heif_image, ReleaseImage>;

const char *description()
{
    return "dav1d without messages";
}

int priority(heif_compression_format format)
{
    return format == heif_compression_AV1 ? kLowestPriority : 0;
}

heif_error create(void **out)
{
    auto decoder = std::make_unique<Decoder>();
    Dav1dSettings settings {};
    dav1d_default_settings(&settings);
    settings.frame_size_limit = kMaxPixels;
    settings.all_layers = 0;
    settings.logger.callback = nullptr;
    if (dav1d_open(&decoder->context, &settings) != 0)
        return kFailure;
    *out = decoder.release();
    return kOk;
}

void destroy(void *decoder)
{
    delete static_cast<Decoder *>(decoder);
}

heif_error push(void *out, const void *bytes, std::size_t size)
{
    auto &data = static_cast<Decoder *>(out)->data;
    const auto *first = static_cast<const quint8 *>(bytes);
    data.insert(data.end(), first, first + size);
    return kOk;
}

// The first picture that comes of the data.
bool decode(Decoder &decoder, Picture &picture)
{
    Dav1dData data {};
    quint8 *bytes = dav1d_data_create(&data, decoder.data.size());
    if (bytes == nullptr)
        return false;
    std::memcpy(bytes, decoder.data.data(), decoder.data.size());
    int result = DAV1D_ERR(EAGAIN);
    for (bool isFlushed = false; result == DAV1D_ERR(EAGAIN) && !isFlushed;) {
        isFlushed = data.sz == 0;
        result = isFlushed ? 0 : dav1d_send_data(decoder.context, &data);
        if (result == 0 || result == DAV1D_ERR(EAGAIN))
            result = dav1d_get_picture(decoder.context, &picture);
    }
    dav1d_data_unref(&data);
    return result == 0;
}

bool copyPlanes(const Picture &picture, heif_image *image)
{
    static constexpr std::array kChannels { heif_channel_Y, heif_channel_Cb, heif_channel_Cr };
    const bool isGrey = picture.p.layout == DAV1D_PIXEL_LAYOUT_I400;
    const int halfWidth = picture.p.layout == DAV1D_PIXEL_LAYOUT_I444 ? 0 : 1;
    const int halfHeight = picture.p.layout == DAV1D_PIXEL_LAYOUT_I420 ? 1 : 0;
    for (std::size_t plane = 0; plane < (isGrey ? 1U : kChannels.size()); ++plane) {
        const bool isColour = plane > 0;
        const int width = isColour ? (picture.p.w + halfWidth) >> halfWidth : picture.p.w;
        const int height = isColour ? (picture.p.h + halfHeight) >> halfHeight : picture.p.h;
        const heif_channel channel = kChannels.at(plane);
        int stride = 0;
        if (heif_image_add_plane(image, channel, width, height, picture.p.bpc).code
            != heif_error_Ok)
            return false;
        quint8 *to = heif_image_get_plane(image, channel, &stride);
        const auto *from = static_cast<const quint8 *>(picture.data[plane]);
        const std::size_t bytes = std::size_t(width) * (picture.p.bpc > 8 ? 2 : 1);
        for (int row = 0; row < height; ++row, to += stride, from += picture.stride[isColour])
            std::memcpy(to, from, bytes);
    }
    return true;
}

heif_error decodeImage(void *decoder, heif_image **out)
{
    static constexpr std::array kLayouts {
        heif_chroma_monochrome, heif_chroma_420, heif_chroma_422, heif_chroma_444
    };
    Picture picture;
    if (!decode(*static_cast<Decoder *>(decoder), picture))
        return kFailure;
    const heif_chroma layout = kLayouts.at(picture.p.layout);
    heif_image *made = nullptr;
    const heif_error error = heif_image_create(
        picture.p.w,
        picture.p.h,
        layout == heif_chroma_monochrome ? heif_colorspace_monochrome : heif_colorspace_YCbCr,
        layout,
        &made);
    if (error.code != heif_error_Ok)
        return error;
    Image image(made);
    if (!copyPlanes(picture, made))
        return kFailure;
    const std::unique_ptr<heif_color_profile_nclx, decltype(&heif_nclx_color_profile_free)> colours(
        heif_nclx_color_profile_alloc(), &heif_nclx_color_profile_free);
    colours->color_primaries = static_cast<heif_color_primaries>(picture.seq_hdr->pri);
    colours->transfer_characteristics =
        static_cast<heif_transfer_characteristics>(picture.seq_hdr->trc);
    colours->matrix_coefficients = static_cast<heif_matrix_coefficients>(picture.seq_hdr->mtrx);
    colours->full_range_flag = picture.seq_hdr->color_range != 0 ? 1 : 0;
    heif_image_set_nclx_color_profile(made, colours.get());
    *out = image.release();
    return kOk;
}

constexpr heif_decoder_plugin kPlugin { kPluginVersion, &description, nullptr,  nullptr,
                                        &priority,      &create,      &destroy, &push,
                                        &decodeImage,   nullptr,      kName };

} // namespace

const char *Av1Decoder::name()
{
    static std::once_flag isKnown;
    std::call_once(isKnown, [] { heif_register_decoder_plugin(&kPlugin); });
    return kName;
}
