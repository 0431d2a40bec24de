#ifndef CLI_HEICEXIF_H
#define CLI_HEICEXIF_H

#include <QByteArray>
#include <QString>

namespace Cli {

/*!
    What the camera noted in the HEIC file at \a path (date, place, lens), as the segment of a JPEG
    file whose picture is upright. Empty when there is nothing or it is damaged.
*/
QByteArray jpegExif(const QString &path);

} // namespace Cli

#endif
