#include "export/CIDataExporter.h"
#include "export/JpegScans_p.h"
#include "export/StoredOrientation_p.h"
#include "export/Thumbnail_p.h"
#include "platform/Translation_p.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

using DataExport::tr;

namespace {

constexpr qint64 kMaxPixels = 256LL * 1024 * 1024; // beyond any camera, far below a bomb
constexpr qint64 kMaxHeldPixels = 64LL * 1024 * 1024; // of a JPEG that is held whole
constexpr int kMaxScans = 200; // some ten are usual
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

QImage readReduced(QIODevice &source, Thumbnail::Box box, QString *why)
{
    const AllocationLimit limit;
    const int orientation = StoredOrientation::read(source);
    const JpegScans scans = JpegScans::read(source);
    QImageReader reader(&source);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const qint64 pixels = qint64 { size.width() } * size.height();
    if (pixels > kMaxPixels || (pixels > kMaxHeldPixels && scans.areHeldWhole())) {
        *why = tr("It is too large (%1 × %2 pixels)").arg(size.width()).arg(size.height());
        return {};
    }
    if (scans.count() > kMaxScans) {
        *why = tr("It would have to be read too often (more than %1 times)").arg(kMaxScans);
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
    return exporter->dependsPath(name);
}
