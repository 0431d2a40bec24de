#include "export/CIDataExporter.h"
#include "export/PictureReader_p.h"
#include "export/QuietDecoding_p.h"
#include "export/Thumbnail_p.h"
#include "platform/Translation_p.h"

#include <QBuffer>

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

} // namespace

QByteArray Thumbnail::makePng(QIODevice &source, Box box, QString *why)
{
    const QuietDecoding quiet; // writing remarks on what was read, too
    const QImage picture = PictureReader::read(
        source, kMaxDecodedMb, [box](QSize size) { return fitted(size, box); }, *why);
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
