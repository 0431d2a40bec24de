#ifndef DATAEXPORT_EXPORT_THUMBNAIL_P_H
#define DATAEXPORT_EXPORT_THUMBNAIL_P_H

#include <QByteArray>

class CIDataExporter;
class QIODevice;
class QString;

//! Pictures of a backup, made fit for a page.
namespace Thumbnail {

//! The square that pictures are to fit, their sides in proportion.
struct Box
{
    int sidePx;
    bool enlarges = false; //!< Whether smaller pictures are brought up to it.
};

/*!
    The picture in \a source, which is open, as PNG: upright and scaled to \a box. Decoded once, at
    reduced size where its format can; one whose header promises too many pixels, or that would take
    too many passes over them, is refused before that. The format is told by the content: JPEG, PNG,
    GIF, BMP, WebP, TIFF, HEIC or AVIF.
    \return empty when there is no picture to be had; \a why gets the image library's reason.
*/
QByteArray makePng(QIODevice &source, Box box, QString *why);

/*!
    Hands \a png to \a exporter as the page's picture \a number.
    \return its path relative to the page.
*/
QString place(CIDataExporter *exporter, const QByteArray &png, int number);

} // namespace Thumbnail

#endif
