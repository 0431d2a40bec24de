#include "sample/PictureMaker.h"

#include <QBuffer>
#include <QImageWriter>
#include <QTransform>
#include <QtEndian>

namespace Sample {

namespace {

QByteArray encode(const QImage &image, const char *format, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    writer.write(image);
    return bytes;
}

//! The directories of an EXIF block: big-endian, values longer than four bytes behind the entries.
class TiffDirectory
{
public:
    explicit TiffDirectory(quint32 startOffset)
        : m_startOffset(startOffset)
    {
    }

    void addShort(quint16 tag, quint16 value)
    {
        addEntry(tag, 3, 1, word(value) + QByteArray(2, '\0'));
    }
    void addLong(quint16 tag, quint32 value) { addEntry(tag, 4, 1, longWord(value)); }
    void addText(quint16 tag, QByteArray text)
    {
        text.append('\0');
        addEntry(tag, 2, static_cast<quint32>(text.size()), text);
    }

    QByteArray bytes() const
    {
        const auto count = static_cast<quint16>(m_entries.size());
        const quint32 valueOffset = m_startOffset + 2 + 12U * count + 4;
        QByteArray directory = word(count);
        QByteArray values;
        for (const Entry &entry : m_entries) {
            directory += word(entry.tag) + word(entry.type) + longWord(entry.count);
            if (entry.value.size() <= 4) {
                directory += entry.value.leftJustified(4, '\0');
                continue;
            }
            directory += longWord(valueOffset + static_cast<quint32>(values.size()));
            values += entry.value;
            if (values.size() % 2 != 0)
                values.append('\0');
        }
        return directory + longWord(0) + values;
    }

    static QByteArray word(quint16 value)
    {
        QByteArray bytes(2, '\0');
        qToBigEndian(value, bytes.data());
        return bytes;
    }
    static QByteArray longWord(quint32 value)
    {
        QByteArray bytes(4, '\0');
        qToBigEndian(value, bytes.data());
        return bytes;
    }

private:
    struct Entry
    {
        quint16 tag;
        quint16 type;
        quint32 count;
        QByteArray value;
    };

    void addEntry(quint16 tag, quint16 type, quint32 count, const QByteArray &value)
    {
        m_entries.append({ tag, type, count, value });
    }

    const quint32 m_startOffset;
    QList<Entry> m_entries;
};

} // namespace

QByteArray encodeJpeg(const QImage &image, int quality)
{
    return encode(image, "jpeg", quality);
}

QByteArray encodePng(const QImage &image)
{
    return encode(image, "png", -1);
}

QByteArray exifBlock(int orientation, const QDateTime &taken)
{
    constexpr quint32 kFirstDirectory = 8;
    const QByteArray moment = taken.toUTC().toString(u"yyyy:MM:dd HH:mm:ss").toLatin1();
    const auto mainDirectory = [&](quint32 exifOffset) {
        TiffDirectory directory(kFirstDirectory);
        directory.addText(0x010f, "Sample Works"); // Make
        directory.addText(0x0110, "Sample Phone"); // Model
        directory.addShort(0x0112, static_cast<quint16>(orientation));
        directory.addText(0x0132, moment); // DateTime
        directory.addLong(0x8769, exifOffset);
        return directory.bytes();
    };
    const auto exifOffset = kFirstDirectory + static_cast<quint32>(mainDirectory(0).size());
    TiffDirectory exif(exifOffset);
    exif.addText(0x9003, moment); // DateTimeOriginal
    exif.addText(0x9004, moment); // DateTimeDigitized
    return QByteArray("Exif\0\0MM\0\x2a", 10) + TiffDirectory::longWord(kFirstDirectory)
        + mainDirectory(exifOffset) + exif.bytes();
}

QByteArray withExif(const QByteArray &jpeg, int orientation, const QDateTime &taken)
{
    constexpr qsizetype kStartMarkerSize = 2;
    const QByteArray block = exifBlock(orientation, taken);
    const QByteArray header =
        QByteArray("\xff\xe1", 2) + TiffDirectory::word(static_cast<quint16>(block.size() + 2));
    return jpeg.first(kStartMarkerSize) + header + block + jpeg.sliced(kStartMarkerSize);
}

QImage storedForOrientation(const QImage &image, int orientation)
{
    switch (orientation) {
    case 3:
        return image.transformed(QTransform().rotate(180));
    case 6:
        return image.transformed(QTransform().rotate(270));
    case 8:
        return image.transformed(QTransform().rotate(90));
    default:
        return image;
    }
}

} // namespace Sample
