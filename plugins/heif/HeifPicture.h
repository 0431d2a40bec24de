#ifndef PLUGINS_HEIF_HEIFPICTURE_H
#define PLUGINS_HEIF_HEIFPICTURE_H

#include "HevcPicture.h"

#include <QBuffer>
#include <QImage>
#include <QSize>

#include <memory>
#include <optional>

struct heif_context;
struct heif_image_handle;
class QIODevice;

/*!
    \brief The main picture of a HEIF file: HEIC or AVIF; of a sequence of HEIC, the first one.

    \par Orientation
    The turns and flips that the file asks for are part of the picture: size() and decode() are
    upright.
    \par Bytes
    Untrusted. What HeifStructure finds unsafe is refused before the decoding library sees it, and a
    picture that is not decoded to the size that the file states is too. So are pictures of more
    than kMaxSidePx × kMaxSidePx pixels, and those that need more memory than
    QImageReader::allocationLimit() grants.
    \par Memory
    The file is read piece by piece; what is decoded is held once. A sequence that is wanted at its
    full size takes 32 bytes a pixel besides, which count against the same limit.
*/
class HeifPicture
{
public:
    static constexpr int kMaxSidePx = 16384;

    //! Whether the bytes at \a device's position begin a file that may be read; the position stays.
    static bool isHeif(QIODevice &device);

    HeifPicture();
    ~HeifPicture();
    HeifPicture(const HeifPicture &) = delete;
    HeifPicture &operator=(const HeifPicture &) = delete;

    //! Reads the structure of the file in \a device, which must stay open as long as this lives.
    bool open(QIODevice *device);

    //! In pixels, before scaling; invalid when the file was not opened.
    QSize size() const { return m_size; }

    /*!
        The picture scaled to \a wanted, or as it is when that is invalid. A smaller version that
        the file holds besides is used when it is large enough. Null when it cannot be decoded.
    */
    QImage decode(QSize wanted) const;

    /*!
        Averages of at least \a wanted cells, or all pixels when that is invalid, by the shortest
        way, without smaller versions that the file holds. Null for what that way is not made for:
        AVIF, transparency, crops, damage and codings that few use.
    */
    QImage decodeReduced(QSize wanted) const;

private:
    struct Free
    {
        void operator()(heif_context *context) const;
        void operator()(heif_image_handle *handle) const;
    };
    using Handle = std::unique_ptr<heif_image_handle, Free>;

    bool openImage();
    Handle smallerVersion(QSize wanted) const;
    static QImage decode(const heif_image_handle &handle, QSize wanted);

    QBuffer m_buffer; // of a device that cannot go back
    QIODevice *m_device = nullptr; // that one or the caller's
    std::unique_ptr<heif_context, Free> m_context;
    Handle m_handle; // none for a sequence, which libheif does not read
    std::optional<HevcPicture> m_hevc; // the same picture, if it is coded as that
    QSize m_size;
};

#endif
