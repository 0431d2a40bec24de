#ifndef EXPORT_HEICTOJPEG_HEICTOJPEG_H
#define EXPORT_HEICTOJPEG_HEICTOJPEG_H

#include <QByteArray>
#include <QString>

/*!
    HEIC pictures as JPEG: of full size and upright, with date, place and the other remarks of the
    camera.
*/
namespace Export::HeicToJpeg {

//! Whether the name of \a path is that of a HEIC picture. The file need not be there.
bool isNamedHeic(const QString &path);

/*!
    Whether the file \a path is to be converted: by its name or, where that is the name of another
    kind of picture, by its first bytes. Phones put HEIC under the name of the JPEG that was edited.
*/
bool isHeic(const QString &path);

//! About how much room the JPEG files of pictures that take \a heicBytes need.
qint64 roomFor(qint64 heicBytes);

//! What became of a picture.
struct Conversion
{
    QByteArray jpeg; //!< A whole file; empty when none could be made.
    QString why; //!< Why none could be made, without a full stop; empty when one was.
    bool lacksRemarks = false; //!< The camera noted something that cannot be read.
};

//! Converts the picture in the file \a path.
Conversion convert(const QString &path);

} // namespace Export::HeicToJpeg

#endif
