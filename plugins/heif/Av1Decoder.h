#ifndef PLUGINS_HEIF_AV1DECODER_H
#define PLUGINS_HEIF_AV1DECODER_H

/*!
    \brief Decodes AV1 for libheif as its own decoder does, without a word.

    libheif lets dav1d write to standard error what is wrong with a picture. This one is asked for
    by name only: whoever else uses libheif in the process keeps the decoder that there was.
*/
namespace Av1Decoder {

//! The name under which libheif knows it from the first call on; for heif_decoding_options.
const char *name();

} // namespace Av1Decoder

#endif
