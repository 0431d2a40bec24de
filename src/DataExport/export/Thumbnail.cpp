#include "export/CHtmlExporter.h"
#include "export/StoredOrientation_p.h"
#include "export/Thumbnail_p.h"
#include "platform/Translation_p.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QtEndian>

using DataExport::tr;

namespace {

constexpr qint64 kMaxPixels = 256LL * 1024 * 1024; // beyond any camera, far below a bomb
// A progressive JPEG is held whole while it is decoded, however small it is to become.
constexpr qint64 kMaxProgressivePixels = 64LL * 1024 * 1024;
constexpr int kMaxDecodedMb = 256;
constexpr int kPngQuality = 80; // quick compression: the best one takes as long as the decoding

// The image library's limit is one for the process: it is ours for one picture only.
class AllocationLimit
{
public:
    AllocationLimit()
        : m_before(QImageReader::allocationLimit())
    {
        QImageReader::setAllocationLimit(kMaxDecodedMb);
    }
    ~AllocationLimit() { QImageReader::setAllocationLimit(m_before); }

    AllocationLimit(const AllocationLimit &) = delete;
    AllocationLimit &operator=(const AllocationLimit &) = delete;

private:
    int m_before;
};

bool exceeds(QSize size, Thumbnail::Box box)
{
    return size.width() > box.sidePx || size.height() > box.sidePx;
}

// A very long and thin picture would be scaled to nothing.
QSize fitted(QSize size, Thumbnail::Box box)
{
    return size.scaled(box.sidePx, box.sidePx, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

// Whether \a source, whose position stays, is a JPEG file whose frame is a progressive one.
bool isProgressiveJpeg(QIODevice &source)
{
    constexpr int kMaxSegments = 10'000;
    constexpr int kProgressive = 0xC2;
    constexpr int kFirstThatIsNoFrame = 0xC4;
    constexpr int kData = 0xDA;
    const qint64 before = source.pos();
    int mark = source.read(2) == "\xFF\xD8" ? kFirstThatIsNoFrame : kData;
    for (int i = 0; mark >= kFirstThatIsNoFrame && mark != kData && i < kMaxSegments; ++i) {
        const QByteArray segment = source.read(4);
        const bool isSegment = segment.size() == 4 && segment.startsWith('\xFF');
        mark = isSegment ? uchar(segment[1]) : kData;
        if (isSegment)
            source.seek(source.pos() + qFromBigEndian<quint16>(segment.constData() + 2) - 2);
    }
    source.seek(before);
    return mark == kProgressive;
}

QImage readReduced(QIODevice &source, Thumbnail::Box box, QString *why)
{
    const AllocationLimit limit;
    const int orientation = StoredOrientation::read(source);
    const bool isProgressive = isProgressiveJpeg(source);
    QImageReader reader(&source);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const qint64 pixels = qint64 { size.width() } * size.height();
    if (pixels > kMaxPixels || (pixels > kMaxProgressivePixels && isProgressive)) {
        *why = tr("It is too large (%1 × %2 pixels)").arg(size.width()).arg(size.height());
        return {};
    }
    if (size.isValid() && exceeds(size, box))
        reader.setScaledSize(fitted(size, box));
    QImage picture = reader.read();
    if (picture.isNull()) {
        *why = reader.errorString();
        return {};
    }
    // Not every format tells its size beforehand.
    const QSize wanted = fitted(picture.size(), box);
    if (exceeds(picture.size(), box) || (box.enlarges && picture.size() != wanted))
        picture = picture.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    // A reader that knows of orientation has turned it already.
    return reader.supportsOption(QImageIOHandler::ImageTransformation)
        ? picture
        : StoredOrientation::applied(picture, orientation);
}

} // namespace

QByteArray Thumbnail::makePng(QIODevice &source, Box box, QString *why)
{
    const QImage picture = readReduced(source, box, why);
    QByteArray png;
    if (picture.isNull())
        return png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.save(&buffer, "PNG", kPngQuality)) {
        *why = tr("It could not be converted");
        png.clear();
    }
    return png;
}

QString Thumbnail::place(CIDataExporter *exporter, const QByteArray &png, int number)
{
    const QString name = QString::number(number) + QLatin1String(".png");
    exporter->exportDepends(png, name);
    return CHtmlExporter::HTML_IMG_FOLDER + QLatin1Char('/') + name;
}
