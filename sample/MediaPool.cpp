#include "sample/MediaPool.h"

#include "sample/HeicEncoder.h"
#include "sample/MovieWriter.h"
#include "sample/PictureMaker.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace Sample {

namespace {

constexpr int kLandscapes = 48;
constexpr int kScreenshots = 6;
constexpr int kMovies = 6;
constexpr int kJpegQuality = 88;
// Room for the EXIF block, which comes on top of the drawn picture.
constexpr qint64 kExifReserveBytes = 256;

qint64 smallestOf(const QList<qint64> &sizesBytes)
{
    return sizesBytes.isEmpty() ? 0 : *std::min_element(sizesBytes.cbegin(), sizesBytes.cend());
}

//! Makes the content smaller and smaller until it fits.
template <class Make>
QByteArray fitting(qint64 limitBytes, QSize size, Make make)
{
    constexpr int kSmallestWidth = 80;
    for (;;) {
        QByteArray content = make(size);
        if (limitBytes == 0 || content.size() <= limitBytes || size.width() / 2 < kSmallestWidth)
            return content;
        size /= 2;
    }
}

} // namespace

MediaPool::MediaPool(const Options &options, const char *topic)
    : m_sizesBytes(options.fileSizesBytes)
    , m_largestDrawnBytes(smallestOf(options.fileSizesBytes))
    , m_random(options.seed, topic)
{
}

QByteArray MediaPool::jpeg(const QDateTime &taken, int orientation)
{
    const int landscape = m_jpegsMade++ % kLandscapes;
    QByteArray &drawn = m_jpegs[{ landscape, orientation }];
    if (drawn.isEmpty()) {
        const Random start(m_random);
        drawn = fitting(
            m_largestDrawnBytes > 0 ? std::max<qint64>(1, m_largestDrawnBytes - kExifReserveBytes)
                                    : 0,
            QSize(1280, 960),
            [&](QSize size) {
                m_random = start;
                const QImage image = drawLandscape(m_random, size);
                return encodeJpeg(storedForOrientation(image, orientation), kJpegQuality);
            });
    }
    return filledPicture(withExif(drawn, orientation, taken));
}

QByteArray MediaPool::heic(const QDateTime &taken, int orientation)
{
    const QImage image = drawLandscape(m_random, QSize(1280, 960));
    return encodeHeic(storedForOrientation(image, orientation),
                      { orientation, exifBlock(orientation, taken) });
}

QByteArray MediaPool::screenshot()
{
    QByteArray &drawn = m_screenshots[m_screenshotsMade++ % kScreenshots];
    if (drawn.isEmpty()) {
        const Random start(m_random);
        drawn = fitting(m_largestDrawnBytes, QSize(640, 1136), [&](QSize size) {
            m_random = start;
            return encodePng(drawScreenshot(m_random, size));
        });
    }
    return filledPicture(drawn);
}

QByteArray MediaPool::movie(const QDateTime &taken, bool brief)
{
    QByteArray &drawn = m_movies[{ m_moviesMade++ % kMovies, brief }];
    if (drawn.isEmpty()) {
        const Random start(m_random);
        drawn = fitting(
            m_largestDrawnBytes, brief ? QSize(320, 240) : QSize(640, 360), [&](QSize size) {
                m_random = start;
                return landscapeMovie(
                    m_random, size, brief ? 6 : std::max(4, size.width() / 20), taken);
            });
    }
    constexpr qint64 kBoxHeaderBytes = 8;
    const qint64 room = nextSizeBytes() - drawn.size();
    if (room < kBoxHeaderBytes)
        return drawn;
    // A box that players are told to skip.
    QByteArray header("\0\0\0\0free", kBoxHeaderBytes);
    qToBigEndian(static_cast<quint32>(room), header.data());
    return drawn + header + filler(room - kBoxHeaderBytes);
}

QByteArray MediaPool::thumbnail()
{
    return encodeJpeg(drawLandscape(m_random, QSize(120, 90)), kJpegQuality);
}

QByteArray MediaPool::filledPicture(QByteArray content)
{
    const qint64 room = nextSizeBytes() - content.size();
    if (room > 0)
        content.append(filler(room));
    return content;
}

qint64 MediaPool::nextSizeBytes()
{
    return m_sizesBytes.isEmpty() ? 0 : m_sizesBytes[m_sizesUsed++ % m_sizesBytes.size()];
}

QByteArray MediaPool::filler(qint64 sizeBytes)
{
    // Slices of one block of noise: drawing every byte anew would be slower than the disk.
    constexpr int kNoiseBytes = 1 << 20;
    constexpr int kLongestSlice = 1 << 18;
    if (m_noise.isEmpty())
        m_noise = m_random.bytes(kNoiseBytes);
    QByteArray result;
    result.reserve(sizeBytes);
    while (result.size() < sizeBytes) {
        const qint64 length = std::min<qint64>(kLongestSlice, sizeBytes - result.size());
        result.append(
            QByteArrayView(m_noise).sliced(m_random.below(kNoiseBytes - kLongestSlice), length));
    }
    return result;
}

} // namespace Sample
