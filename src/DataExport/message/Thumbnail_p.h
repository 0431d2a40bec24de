#ifndef DATAEXPORT_MESSAGE_THUMBNAIL_P_H
#define DATAEXPORT_MESSAGE_THUMBNAIL_P_H

#include <QByteArray>

class CIDataExporter;
class QIODevice;
class QString;

//! Pictures of messages, made small enough for a chat page.
namespace Thumbnail {

/*!
    The picture in \a source, which is open, as PNG: upright, scaled to fit 250 by 250 pixels unless
    it does. Decoded once, at reduced size where its format can; one whose header promises more than
    kMaxPixels is refused before that. Any format that the image library recognises will do.
    \return empty when there is no picture to be had; \a why gets the image library's reason.
*/
QByteArray makePng(QIODevice &source, QString *why);

/*!
    Hands \a png to \a exporter under the next number and counts \a imageIndex up.
    \return the picture's path relative to the page.
*/
QString place(CIDataExporter *exporter, const QByteArray &png, int &imageIndex);

} // namespace Thumbnail

#endif
