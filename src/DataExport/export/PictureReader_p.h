#ifndef DATAEXPORT_EXPORT_PICTUREREADER_P_H
#define DATAEXPORT_EXPORT_PICTUREREADER_P_H

#include <QImage>
#include <QString>

#include <functional>

class QIODevice;

/*!
    \brief Decodes pictures of a backup, which are untrusted.

    The format is told by the content: JPEG, PNG, GIF, BMP, WebP, TIFF, HEIC or AVIF. Pictures come
    upright. One whose header promises too many pixels, or that would take too many passes over
    them, is refused before it is decoded. What decoders remark goes nowhere.
*/
namespace PictureReader {

//! The size that a picture of the size that it is given is to have.
using Fit = std::function<QSize(QSize)>;

/*!
    The picture in \a source, which is open and can seek, in its own size or in the one that \a fit
    gives; at reduced size where its format can. The image library allocates at most \a maxDecodedMb
    megabytes at once.
    \return null when there is no picture to be had; \a why gets the reason.
*/
QImage read(QIODevice &source, int maxDecodedMb, const Fit &fit, QString &why);

} // namespace PictureReader

#endif
