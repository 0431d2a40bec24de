#include "PhoneBackup/source/MediaKind.h"

#include "PhoneBackup/source/PathParts.h"

#include <QHash>

namespace PhoneBackup {

namespace {

constexpr qsizetype kLongestExtension = 10;

QHash<QByteArray, MediaKind> makeTable()
{
    const auto pictures = { "heic", "heif", "hif", "avci", "jpg", "jpeg", "jpe", "jfif", "png",
                            "apng", "gif",  "tif", "tiff", "bmp", "webp", "dng", "avif", "jxl",
                            "jp2",  "jpf",  "j2k", "ico",  "svg", "psd",  "tga", "raw",  "cr2",
                            "cr3",  "crw",  "nef", "nrw",  "arw", "srf",  "sr2", "orf",  "rw2",
                            "raf",  "pef",  "srw", "rwl",  "3fr", "fff",  "iiq", "mpo",  "exr",
                            "hdr",  "erf",  "kdc", "dcr",  "mos", "mrw",  "x3f", "gpr" };
    const auto videos = { "mov",  "mp4",  "m4v", "3gp",  "3g2",  "avi", "mkv", "webm", "mpg",
                          "mpeg", "m2v",  "mts", "m2ts", "ts",   "wmv", "flv", "ogv",  "qt",
                          "mjpg", "hevc", "vob", "mxf",  "divx", "dv",  "asf", "braw" };
    const auto audio = { "m4a",  "m4r", "m4b",  "m4p", "mp3", "aac",  "wav", "aif",  "aiff",
                         "aifc", "caf", "flac", "ogg", "oga", "opus", "wma", "amr",  "awb",
                         "alac", "ac3", "eac3", "mka", "qta", "aax",  "mid", "midi", "mp2" };
    const auto books = { "epub", "pdf", "ibooks" };
    const auto auxiliary = { "aae", "thm", "plist", "xmp", "waveform" };
    QHash<QByteArray, MediaKind> table;
    const auto enter = [&table](const auto &extensions, MediaKind kind) {
        for (const char *extension : extensions)
            table.insert(extension, kind);
    };
    enter(pictures, MediaKind::Picture);
    enter(videos, MediaKind::Video);
    enter(audio, MediaKind::Audio);
    enter(books, MediaKind::Book);
    enter(auxiliary, MediaKind::Auxiliary);
    return table;
}

} // namespace

MediaKind mediaKind(QByteArrayView path)
{
    static const QHash<QByteArray, MediaKind> table = makeTable();
    const QByteArrayView extension = PathParts::extension(path);
    if (extension.isEmpty() || extension.size() > kLongestExtension)
        return MediaKind::Unknown;
    char lower[kLongestExtension];
    for (qsizetype i = 0; i < extension.size(); ++i) {
        const char c = extension[i];
        lower[i] = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    }
    return table.value(QByteArray::fromRawData(lower, extension.size()), MediaKind::Unknown);
}

} // namespace PhoneBackup
