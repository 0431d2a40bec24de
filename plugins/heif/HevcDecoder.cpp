#include "HevcDecoder.h"

#include "BoxReader.h"

#include <libde265/de265.h>

namespace {

constexpr int kUnitSizeBytes = 4;
constexpr int kMaxSteps = 1024; // far more than the units of a picture

} // namespace

void HevcDecoder::Free::operator()(void *decoder) const
{
    de265_free_decoder(decoder);
}

const de265_image *HevcDecoder::decode(QByteArrayView configuration, QByteArrayView data)
{
    m_decoder.reset(de265_new_decoder());
    if (!m_decoder)
        return nullptr;
    if (m_filters == Filters::Off) {
        de265_set_parameter_bool(m_decoder.get(), DE265_DECODER_PARAM_DISABLE_DEBLOCKING, 1);
        de265_set_parameter_bool(m_decoder.get(), DE265_DECODER_PARAM_DISABLE_SAO, 1);
    }
    if (!pushConfiguration(configuration) || !pushData(data)
        || de265_flush_data(m_decoder.get()) != DE265_OK)
        return nullptr;
    const de265_image *picture = nullptr;
    int hasMore = 1;
    for (int step = 0; !picture && hasMore != 0 && step < kMaxSteps; ++step) {
        hasMore = 0;
        if (de265_decode(m_decoder.get(), &hasMore) != DE265_OK)
            break;
        picture = de265_get_next_picture(m_decoder.get());
    }
    const bool isDamaged = de265_get_warning(m_decoder.get()) != DE265_OK;
    return isDamaged ? nullptr : picture;
}

bool HevcDecoder::pushConfiguration(QByteArrayView configuration)
{
    BoxReader reader(configuration);
    reader.take(22); // profile and the like
    for (quint64 lists = reader.number(1); lists > 0; --lists) {
        reader.number(1);
        for (quint64 units = reader.number(2); units > 0; --units) {
            if (!push(reader.take(reader.number(2))))
                return false;
        }
    }
    return reader.isOk();
}

bool HevcDecoder::pushData(QByteArrayView data)
{
    BoxReader reader(data);
    while (reader.hasMore()) {
        if (!push(reader.take(reader.number(kUnitSizeBytes))))
            return false;
    }
    return reader.isOk();
}

bool HevcDecoder::push(QByteArrayView unit)
{
    return !unit.isEmpty()
        && de265_push_NAL(m_decoder.get(), unit.data(), static_cast<int>(unit.size()), 0, nullptr)
        == DE265_OK;
}
