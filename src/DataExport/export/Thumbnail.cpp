#include "export/CIDataExporter.h"
#include "export/PictureReader_p.h"
#include "export/QuietDecoding_p.h"
#include "export/Thumbnail_p.h"
#include "platform/Translation_p.h"

#include <QBuffer>
#include <QColorSpace>

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace {

constexpr int kMaxDecodedMb = 256;
constexpr int kPngQuality = 80; // quick compression: the best one takes as long as the decoding

// A very long and thin picture would be scaled to nothing.
QSize fitted(QSize size, Thumbnail::Box box)
{
    const bool exceeds = size.width() > box.sidePx || size.height() > box.sidePx;
    return exceeds || box.enlarges
        ? size.scaled(box.sidePx, box.sidePx, Qt::KeepAspectRatio).expandedTo(QSize(1, 1))
        : size;
}

// Whether PNG can have the remark: of its name something must be left (RFC 2083, section 12.3).
bool isNamed(const QString &key)
{
    constexpr qsizetype kLongest = 79;
    const QByteArray name = key.left(kLongest).toLatin1();
    return std::any_of(name.begin(), name.end(), [](char character) {
        const auto code = static_cast<uchar>(character);
        return (code > 0x20 && code < 0x7F) || code > 0xA0;
    });
}

// With nothing that a PNG file cannot have. Of other formats, and of damaged files, libpng would
// take no pixel, either.
QImage fitForPng(QImage picture)
{
    if (picture.depth() <= 8 && picture.colorCount() > 1 << picture.depth())
        picture.convertTo(QImage::Format_ARGB32);
    const QStringList keys = picture.textKeys();
    if (std::all_of(keys.begin(), keys.end(), &isNamed))
        return picture;
    QImage fit = picture.convertToFormat(QImage::Format_ARGB32);
    fit = QImage(fit.constBits(), fit.width(), fit.height(), fit.bytesPerLine(), fit.format())
              .copy(); // the only way to be rid of them
    fit.setColorSpace(picture.colorSpace());
    return fit;
}

} // namespace

QByteArray Thumbnail::makePng(QIODevice &source, Box box, QString *why)
{
    const QuietDecoding quiet; // writing remarks on what was read, too
    const QImage picture = fitForPng(PictureReader::read(
        source, kMaxDecodedMb, [box](QSize size) { return fitted(size, box); }, *why));
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
