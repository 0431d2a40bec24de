#include "export/CIDataExporter.h"
#include "export/JpegScans_p.h"
#include "export/PngCheck_p.h"
#include "export/QuietDecoding_p.h"
#include "export/StoredOrientation_p.h"
#include "export/Thumbnail_p.h"
#include "platform/PictureFormat_p.h"
#include "platform/Translation_p.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

#include <mutex>

DATAEXPORT_USE_TR(DataExport);

namespace {

constexpr qint64 kMaxPixels = 256LL * 1024 * 1024; // beyond any camera, far below a bomb
constexpr qint64 kMaxHeldPixels = 64LL * 1024 * 1024; // of a JPEG that is held whole
constexpr int kMaxDecodedMb = 256;
constexpr qint64 kMaxMendedBytes = qint64 { kMaxDecodedMb } * 1024 * 1024; // they are held
constexpr char kPngEnd[] = "\0\0\0\0IEND\xAE\x42\x60\x82"; // with its length and check sum
constexpr qsizetype kPngEndBytes = 12;
constexpr int kPngQuality = 80; // quick compression: the best one takes as long as the decoding

// The image library's limit is one for the process: it is ours while any picture is read, and what
// it was before once none is.
class AllocationLimit
{
public:
    AllocationLimit()
    {
        const std::lock_guard lock(s_mutex);
        if (s_users++ > 0)
            return;
        s_before = QImageReader::allocationLimit();
        QImageReader::setAllocationLimit(kMaxDecodedMb);
    }
    ~AllocationLimit()
    {
        const std::lock_guard lock(s_mutex);
        if (--s_users == 0)
            QImageReader::setAllocationLimit(s_before);
    }

    AllocationLimit(const AllocationLimit &) = delete;
    AllocationLimit &operator=(const AllocationLimit &) = delete;

private:
    static inline std::mutex s_mutex;
    static inline int s_users = 0;
    static inline int s_before = 0;
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

// Whether the picture is to be turned by a quarter: it is scaled before that, and what does not
// divide evenly is to be lost at the side where it is lost on the page.
bool isTurned(const QImageReader &reader)
{
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

QImage decodeReduced(QIODevice &source, const QByteArray &format, Thumbnail::Box box, QString *why)
{
    const int orientation = StoredOrientation::read(source);
    const JpegScans scans = JpegScans::read(source);
    QImageReader reader(&source, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const qint64 pixels = qint64 { size.width() } * size.height();
    if (pixels > kMaxPixels || (pixels > kMaxHeldPixels && scans.areHeldWhole())) {
        *why =
            DataExport::tr("It is too large (%1 × %2 pixels)").arg(size.width()).arg(size.height());
        return {};
    }
    if (scans.areTooMany(pixels)) {
        *why = DataExport::tr("It would have to be read too often (%1 times)").arg(scans.count());
        return {};
    }
    if (size.isValid() && exceeds(size, box))
        reader.setScaledSize(isTurned(reader) ? fitted(size.transposed(), box).transposed()
                                              : fitted(size, box));
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

// As the picture would be with nothing behind it.
QImage decodeWithoutEnd(QIODevice &source, qint64 bytes, Thumbnail::Box box, QString *why)
{
    if (bytes > kMaxMendedBytes) {
        *why = DataExport::tr("It is damaged");
        return {};
    }
    QByteArray mended = source.read(bytes);
    mended.append(kPngEnd, kPngEndBytes);
    QBuffer buffer(&mended);
    buffer.open(QIODevice::ReadOnly);
    return decodeReduced(buffer, "png", box, why);
}

QImage readReduced(QIODevice &source, Thumbnail::Box box, QString *why)
{
    const AllocationLimit limit;
    const QByteArray format = PictureFormat::of(source.peek(PictureFormat::kStartBytes));
    if (format.isEmpty()) {
        *why = DataExport::tr("It is in none of the formats that are read");
        return {};
    }
    if (format != "png")
        return decodeReduced(source, format, box, why);
    const PngCheck check = PngCheck::of(source, kMaxPixels);
    switch (check.state) {
    case PngCheck::State::Sound:
        return decodeReduced(source, format, box, why);
    case PngCheck::State::DamagedEnd:
        return decodeWithoutEnd(source, check.endOfPixels, box, why);
    case PngCheck::State::CutOff:
        *why = DataExport::tr("It is cut off");
        return {};
    case PngCheck::State::Damaged:
        *why = DataExport::tr("It is damaged (%1)").arg(check.remark);
        return {};
    }
    return {};
}

} // namespace

QByteArray Thumbnail::makePng(QIODevice &source, Box box, QString *why)
{
    const QuietDecoding quiet; // writing remarks on what was read, too
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
