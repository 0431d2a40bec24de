#ifndef FILES_PICTUREFORMAT_H
#define FILES_PICTUREFORMAT_H

#include <QByteArrayView>

#include <algorithm>

/*!
    \brief What a picture is by its first bytes, whatever its name says.

    The only place that knows these bytes; what suffixes promise, the reader's MediaKind knows. All
    of it is in the header: reader, library, program and plug-in share no library that has it.
*/
namespace PictureFormat {

//! How many bytes from the beginning of a file are asked for.
inline constexpr qsizetype kStartBytes = 12;

/*!
    The image library's name for the format of a picture that begins with \a start; null when it is
    none that phones make or send. A file of boxes is "heif", see brand(). Left to itself the image
    library asks every plug-in that is installed, some of which follow paths.
*/
inline const char *of(QByteArrayView start)
{
    struct Start
    {
        QByteArrayView bytes;
        const char *format;
    };
    static constexpr Start kStarts[] {
        { "\xff\xd8\xff", "jpeg" },
        { "\x89PNG\r\n\x1a\n", "png" },
        { "GIF87a", "gif" },
        { "GIF89a", "gif" },
        { "BM", "bmp" },
        { QByteArrayView("II*\0", 4), "tiff" },
        { QByteArrayView("MM\0*", 4), "tiff" },
    };
    for (const Start &known : kStarts) {
        if (start.startsWith(known.bytes))
            return known.format;
    }
    if (start.size() < kStartBytes)
        return nullptr;
    if (start.startsWith("RIFF") && start.sliced(8, 4) == "WEBP")
        return "webp";
    return start.sliced(4, 4) == "ftyp" ? "heif" : nullptr;
}

//! What a file of boxes (ISO/IEC 14496-12) says that it is: a picture, a film, a sound. Else empty.
inline QByteArrayView brand(QByteArrayView start)
{
    return start.size() >= kStartBytes && start.sliced(4, 4) == "ftyp" ? start.sliced(8, 4)
                                                                       : QByteArrayView();
}

//! Whether \a brand is one of HEVC pictures and sequences of them, or of any picture in HEIF.
inline bool isHeicBrand(QByteArrayView brand)
{
    // ISO/IEC 23008-12: heic to heis are pictures, hevc to hevs are sequences of HEVC.
    static constexpr QByteArrayView kBrands[] { "heic", "heix", "heim", "heis", "hevc",
                                                "hevx", "hevm", "hevs", "mif1", "msf1" };
    return std::find(std::begin(kBrands), std::end(kBrands), brand) != std::end(kBrands);
}

//! Whether \a brand is one of pictures, AVIF among them.
inline bool isPictureBrand(QByteArrayView brand)
{
    return isHeicBrand(brand) || brand == QByteArrayView("avif") || brand == QByteArrayView("avis");
}

} // namespace PictureFormat

#endif
