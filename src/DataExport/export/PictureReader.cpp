#include "Files/PictureFormat.h"
#include "export/JpegScans_p.h"
#include "export/PictureReader_p.h"
#include "export/PngCheck_p.h"
#include "export/QuietDecoding_p.h"
#include "export/StoredOrientation_p.h"
#include "platform/Translation_p.h"

#include <QBuffer>
#include <QImageReader>

#include <mutex>

namespace {

constexpr qint64 kMaxPixels = 256LL * 1024 * 1024; // beyond any camera, far below a bomb
constexpr qint64 kMaxHeldPixels = 64LL * 1024 * 1024; // of a JPEG: ten bytes each
constexpr qint64 kMaxMendedBytes = 256LL * 1024 * 1024; // they are held
constexpr char kPngEnd[] = "\0\0\0\0IEND\xAE\x42\x60\x82"; // with its length and check sum
constexpr qsizetype kPngEndBytes = 12;

// The image library's limit is one for the process: it is ours while any picture is read, and what
// it was before once none is.
class AllocationLimit
{
public:
    explicit AllocationLimit(int mb)
    {
        const std::lock_guard lock(sharedMutex);
        if (users++ > 0)
            return;
        limitBefore = QImageReader::allocationLimit();
        QImageReader::setAllocationLimit(mb);
    }
    ~AllocationLimit()
    {
        const std::lock_guard lock(sharedMutex);
        if (--users == 0)
            QImageReader::setAllocationLimit(limitBefore);
    }

    AllocationLimit(const AllocationLimit &) = delete;
    AllocationLimit &operator=(const AllocationLimit &) = delete;

private:
    static inline std::mutex sharedMutex;
    static inline int users = 0;
    static inline int limitBefore = 0;
};

// Whether the picture is to be turned by a quarter: it is scaled before that, and what does not
// divide evenly is to be lost at the side where it is lost in the end.
bool isTurned(const QImageReader &reader)
{
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

bool isReduced(QSize size, QSize wanted)
{
    return wanted.width() < size.width() || wanted.height() < size.height();
}

QImage
decode(QIODevice &source, const QByteArray &format, const PictureReader::Fit &fit, QString &why)
{
    const int orientation = StoredOrientation::read(source);
    const JpegScans scans = JpegScans::read(source);
    QImageReader reader(&source, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const qint64 pixels = qint64 { size.width() } * size.height();
    const bool isHeld = scans.areHeldWhole() || (format == "jpeg" && !fit);
    if (pixels > (isHeld ? kMaxHeldPixels : kMaxPixels)) {
        why =
            DataExport::tr("It is too large (%1 × %2 pixels)").arg(size.width()).arg(size.height());
        return {};
    }
    if (scans.areTooMany(pixels)) {
        why = DataExport::tr("It would have to be read too many times (%1)").arg(scans.count());
        return {};
    }
    if (fit && size.isValid()) {
        const QSize wanted = isTurned(reader) ? fit(size.transposed()).transposed() : fit(size);
        if (isReduced(size, wanted))
            reader.setScaledSize(wanted);
    }
    QImage picture = reader.read();
    if (picture.isNull()) {
        why = reader.errorString();
        return {};
    }
    // Not every format tells its size beforehand.
    const QSize wanted = fit ? fit(picture.size()) : picture.size();
    if (picture.size() != wanted)
        picture = picture.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    // A reader that knows of orientation has turned it already.
    return reader.supportsOption(QImageIOHandler::ImageTransformation)
        ? picture
        : StoredOrientation::applied(picture, orientation);
}

// As the PNG would be with nothing behind its pixels.
QImage decodeWithoutEnd(QIODevice &source,
                        const PngCheck &check,
                        const PictureReader::Fit &fit,
                        QString &why)
{
    if (check.endOfPixels > kMaxMendedBytes) {
        why = DataExport::tr("It is damaged (%1)").arg(check.remark);
        return {};
    }
    QByteArray mended = source.read(check.endOfPixels);
    mended.append(kPngEnd, kPngEndBytes);
    QBuffer buffer(&mended);
    buffer.open(QIODevice::ReadOnly);
    return decode(buffer, "png", fit, why);
}

} // namespace

QImage PictureReader::read(QIODevice &source, int maxDecodedMb, const Fit &fit, QString &why)
{
    const AllocationLimit limit(maxDecodedMb);
    const QuietDecoding quiet;
    const QByteArray format = PictureFormat::of(source.peek(PictureFormat::kStartBytes));
    if (format.isEmpty()) {
        why = DataExport::tr("Its format is not supported");
        return {};
    }
    if (format != "png")
        return decode(source, format, fit, why);
    const PngCheck check = PngCheck::of(source, kMaxPixels);
    switch (check.state) {
    case PngCheck::State::Sound:
        return decode(source, format, fit, why);
    case PngCheck::State::DamagedEnd:
        return decodeWithoutEnd(source, check, fit, why);
    case PngCheck::State::CutOff:
        why = DataExport::tr("It is cut off");
        return {};
    case PngCheck::State::Damaged:
        why = DataExport::tr("It is damaged (%1)").arg(check.remark);
        return {};
    }
    return {};
}
