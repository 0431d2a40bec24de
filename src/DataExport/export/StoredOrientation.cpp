#include "export/StoredOrientation_p.h"

#include <QIODevice>
#include <QImage>
#include <QTransform>
#include <QtEndian>

#include <libexif/exif-data.h>
#include <memory>

namespace {

constexpr qint64 kChunkHeader = 8;
constexpr qint64 kPngSignature = 8;
constexpr qint64 kPngChecksum = 4;
constexpr qint64 kRiffHeader = 12;
constexpr quint32 kMaxExifBytes = 1024 * 1024;
constexpr int kMaxChunks = 100'000;

struct Unref
{
    void operator()(ExifData *data) const { exif_data_unref(data); }
};

int orientationOf(const QByteArray &block)
{
    // The library wants the block as a JPEG file holds it, where it begins with its name.
    const QByteArray named = QByteArray("Exif\0\0", 6) + block;
    const std::unique_ptr<ExifData, Unref> data(
        exif_data_new_from_data(reinterpret_cast<const unsigned char *>(named.constData()),
                                static_cast<unsigned int>(named.size())));
    const ExifEntry *entry =
        data ? exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION) : nullptr;
    if (entry == nullptr || entry->format != EXIF_FORMAT_SHORT || entry->size < 2)
        return StoredOrientation::kUpright;
    const int orientation = exif_get_short(entry->data, exif_data_get_byte_order(data.get()));
    return orientation >= 1 && orientation <= 8 ? orientation : StoredOrientation::kUpright;
}

QByteArray pngBlock(QIODevice &source)
{
    if (!source.seek(source.pos() + kPngSignature))
        return {};
    for (int i = 0; i < kMaxChunks; ++i) {
        const QByteArray header = source.read(kChunkHeader);
        if (header.size() < kChunkHeader)
            break;
        const auto size = qFromBigEndian<quint32>(header.constData());
        if (header.endsWith("eXIf"))
            return size <= kMaxExifBytes ? source.read(size) : QByteArray();
        if (!source.seek(source.pos() + size + kPngChecksum))
            break;
    }
    return {};
}

QByteArray webpBlock(QIODevice &source)
{
    if (!source.seek(source.pos() + kRiffHeader))
        return {};
    for (int i = 0; i < kMaxChunks; ++i) {
        const QByteArray header = source.read(kChunkHeader);
        if (header.size() < kChunkHeader)
            break;
        const auto size = qFromLittleEndian<quint32>(header.constData() + 4);
        if (header.startsWith("EXIF")) {
            const QByteArray block = size <= kMaxExifBytes ? source.read(size) : QByteArray();
            return block.startsWith("Exif") ? block.sliced(qMin(block.size(), qsizetype { 6 }))
                                            : block;
        }
        if (!source.seek(source.pos() + size + size % 2))
            break;
    }
    return {};
}

} // namespace

int StoredOrientation::read(QIODevice &source)
{
    const QByteArray start = source.peek(kRiffHeader);
    const qint64 before = source.pos();
    QByteArray block;
    if (start.startsWith("\x89PNG"))
        block = pngBlock(source);
    else if (start.startsWith("RIFF") && start.endsWith("WEBP"))
        block = webpBlock(source);
    source.seek(before);
    return block.isEmpty() ? kUpright : orientationOf(block);
}

QImage StoredOrientation::applied(const QImage &picture, int orientation)
{
    // Each is a flip of the stored picture, then a turn to the right.
    static constexpr struct
    {
        bool flipped;
        int degrees;
    } kSteps[] = { { false, 0 },  { true, 0 },   { false, 180 }, { true, 180 },
                   { true, 270 }, { false, 90 }, { true, 90 },   { false, 270 } };
    if (orientation <= kUpright || orientation > 8)
        return picture;
    const auto [flipped, degrees] = kSteps[orientation - 1];
    const QImage facing = flipped ? picture.mirrored(true, false) : picture;
    return degrees == 0 ? facing : facing.transformed(QTransform().rotate(degrees));
}
