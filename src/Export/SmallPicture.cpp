#include "Export/SmallPicture.h"

#include "export/PictureReader_p.h"

#include <QBuffer>
#include <QImage>

namespace Export {

namespace {

constexpr int kMaxDecodedMb = 512;
constexpr int kJpegQuality = 82;

} // namespace

Archive::SmallPicture smallPicture(const QByteArray &bytes, int sidePx)
{
    QBuffer source;
    source.setData(bytes);
    source.open(QIODevice::ReadOnly);
    const auto fit = [sidePx](QSize size) {
        return size.width() <= sidePx && size.height() <= sidePx
            ? size
            : size.scaled(sidePx, sidePx, Qt::KeepAspectRatio).expandedTo({ 1, 1 });
    };
    QString why;
    const QImage image = PictureReader::read(source, kMaxDecodedMb, fit, why);
    Archive::SmallPicture small;
    if (image.isNull())
        return small;
    small.size = image.size();
    small.isPng = image.hasAlphaChannel();
    QBuffer target(&small.bytes);
    target.open(QIODevice::WriteOnly);
    if (!image.save(&target, small.isPng ? "PNG" : "JPEG", small.isPng ? -1 : kJpegQuality))
        small.bytes.clear();
    return small;
}

} // namespace Export
