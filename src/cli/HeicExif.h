#ifndef CLI_HEICEXIF_H
#define CLI_HEICEXIF_H

#include <QByteArray>
#include <QString>

namespace Cli {

/*!
    What the camera noted in the HEIC file at \a path (date, place, lens), as the segment of a JPEG
    file whose picture is upright. All of it, but that a note of the camera's maker goes where the
    whole would be too large for a JPEG. A JPEG file of that name will do. Empty when nothing is
   noted.
*/
QByteArray jpegExif(const QString &path);

} // namespace Cli

#endif
