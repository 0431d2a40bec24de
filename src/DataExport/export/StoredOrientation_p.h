#ifndef DATAEXPORT_EXPORT_STOREDORIENTATION_P_H
#define DATAEXPORT_EXPORT_STOREDORIENTATION_P_H

class QIODevice;
class QImage;

/*!
    How a picture is to be turned, for the formats in which the image library does not look: PNG and
    WebP, which hold a block of EXIF data among their chunks.
*/
namespace StoredOrientation {

constexpr int kUpright = 1;

/*!
    The orientation that the picture in \a source asks for: 1 to 8 as in EXIF, kUpright when it asks
    for none. \a source must be able to go back; its position stays.
*/
int read(QIODevice &source);

//! \a picture turned upright.
QImage applied(const QImage &picture, int orientation);

} // namespace StoredOrientation

#endif
