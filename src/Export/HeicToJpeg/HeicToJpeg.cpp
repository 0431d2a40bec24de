#include "Export/HeicToJpeg/HeicToJpeg.h"

#include "Export/HeicToJpeg/HeicExif.h"
#include "Files/PictureFormat.h"
#include "export/PictureReader_p.h"
#include "export/QuietDecoding_p.h"
#include "platform/CCommonUtils.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace Export::HeicToJpeg {

namespace {

constexpr int kQuality = 92;
constexpr int kMaxDecodedMb = 1024; // a quarter of a billion pixels
constexpr qsizetype kStartOfImage = 2;

// Whether a file that is called like a picture of another kind holds HEIC.
bool holdsHeic(const QString &path)
{
    static constexpr std::array kNames { "jpg"_L1,  "jpeg"_L1, "jpe"_L1,  "png"_L1, "gif"_L1,
                                         "webp"_L1, "tif"_L1,  "tiff"_L1, "bmp"_L1 };
    const QString suffix = QFileInfo(path).suffix().toLower();
    QFile file(path);
    if (std::find(kNames.begin(), kNames.end(), suffix) == kNames.end()
        || !file.open(QIODevice::ReadOnly))
        return false;
    return PictureFormat::isHeicBrand(PictureFormat::brand(file.read(PictureFormat::kStartBytes)));
}

// What a JPEG cannot let shine through is paper.
QImage onWhite(const QImage &picture)
{
    QImage opaque(picture.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    opaque.setColorSpace(picture.colorSpace());
    QPainter(&opaque).drawImage(0, 0, picture);
    return opaque;
}

QImage decoded(const QString &path, QString &why)
{
    QFile file(path);
    if (!CCommonUtils::openForReading(file, &why))
        return {};
    const QImage picture = PictureReader::read(file, kMaxDecodedMb, {}, why);
    return picture.hasAlphaChannel() ? onWhite(picture) : picture;
}

QByteArray encoded(const QImage &picture, QString &why)
{
    QBuffer jpeg;
    jpeg.open(QIODevice::WriteOnly);
    QImageWriter writer(&jpeg, "jpeg");
    writer.setQuality(kQuality);
    if (!writer.write(picture)) {
        why = writer.errorString();
        return {};
    }
    return jpeg.data();
}

} // namespace

bool isNamedHeic(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == "heic"_L1 || suffix == "heics"_L1 || suffix == "heif"_L1 || suffix == "hif"_L1;
}

bool isHeic(const QString &path)
{
    return isNamedHeic(path) || holdsHeic(path);
}

qint64 roomFor(qint64 heicBytes)
{
    constexpr qint64 kGrowth = 3; // photographs have come out 1.8 to 2.3 times as large
    return heicBytes * kGrowth;
}

Conversion convert(const QString &path)
{
    const QuietDecoding quiet; // writing remarks on what was read, too
    Conversion result;
    const QImage picture = decoded(path, result.why);
    if (!picture.isNull())
        result.jpeg = encoded(picture, result.why);
    if (result.jpeg.isEmpty())
        return result;
    const std::optional<QByteArray> exif = jpegExif(path, picture.size());
    result.lacksRemarks = !exif;
    // They stand right behind the mark with which every JPEG begins.
    if (exif)
        result.jpeg.insert(kStartOfImage, *exif);
    return result;
}

} // namespace Export::HeicToJpeg
