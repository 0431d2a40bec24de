#ifndef EXPORT_HEICTOJPEG_HEICEXIF_H
#define EXPORT_HEICTOJPEG_HEICEXIF_H

#include <QByteArray>
#include <QSize>
#include <QString>

#include <optional>

namespace Export::HeicToJpeg {

/*!
    What the camera noted in the HEIC file at \a path (date, place, lens), as the segment of a JPEG
    file whose picture is upright and of \a size. All of it, but that the note of the camera's maker
    and the longest values go where the whole would be too large for a JPEG. A JPEG file of that
    name will do. Empty when nothing is noted; no value when nothing of what is can be read.
*/
std::optional<QByteArray> jpegExif(const QString &path, QSize size);

} // namespace Export::HeicToJpeg

#endif
