#ifndef DATAEXPORT_EXPORT_PICTUREFORMAT_P_H
#define DATAEXPORT_EXPORT_PICTUREFORMAT_P_H

#include <QByteArray>

class QIODevice;

namespace PictureFormat {

/*!
    The image library's name for the format of the picture in \a source, told by what it begins
    with; empty when it is none that phones make or send. Left to itself the image library asks
    every plug-in that is installed, some of which follow paths.
*/
QByteArray of(QIODevice &source);

} // namespace PictureFormat

#endif
