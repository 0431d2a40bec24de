#include "export/PictureFormat_p.h"

#include <QIODevice>

QByteArray PictureFormat::of(QIODevice &source)
{
    struct Start
    {
        QByteArrayView bytes;
        const char *format;
    };
    static constexpr Start kStarts[] {
        { "\xff\xd8\xff", "jpeg" },
        { "\x89PNG\r\n\x1a\n", "png" },
        { "GIF87a", "gif" },
        { "GIF89a", "gif" },
        { "BM", "bmp" },
        { QByteArrayView("II*\0", 4), "tiff" },
        { QByteArrayView("MM\0*", 4), "tiff" },
    };
    constexpr qint64 kLongest = 12;
    const QByteArray begin = source.peek(kLongest);
    for (const Start &start : kStarts) {
        if (begin.startsWith(start.bytes))
            return start.format;
    }
    if (begin.startsWith("RIFF") && begin.endsWith("WEBP"))
        return "webp";
    return begin.mid(4).startsWith("ftyp") ? "heif" : QByteArray();
}
