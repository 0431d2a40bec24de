#ifndef SAMPLE_HEICENCODER_H
#define SAMPLE_HEICENCODER_H

#include <QByteArray>
#include <QImage>

namespace Sample {

//! What a HEIC file holds besides its picture.
struct HeicTraits
{
    int orientation = 1; //!< How the picture is to be turned, a number of the EXIF standard.
    QByteArray exif = {}; //!< Block of the camera, beginning with "Exif"; empty: none.
    int thumbnailPx = 320; //!< Longer side of the smaller version; 0: none.
};

//! \a image as a HEIC file, with its transparency when it has any. Empty when that failed.
QByteArray encodeHeic(const QImage &image, const HeicTraits &traits = {});

} // namespace Sample

#endif
