#ifndef EXPORT_HEICTOJPEG_HEICTOJPEG_H
#define EXPORT_HEICTOJPEG_HEICTOJPEG_H

#include <QByteArray>
#include <QString>

/*!
    Converts HEIC pictures to JPEG: at full size, upright, with date, location and other metadata of
    the camera.
*/
namespace Export::HeicToJpeg {

//! Whether \a path is named like a HEIC picture. The file need not exist.
bool isNamedHeic(const QString &path);

/*!
    Whether the file \a path is a HEIC picture: by its name or, if it is named like another kind of
    picture, by its first bytes. Phones save HEIC under the name of a JPEG that was edited.
*/
bool isHeic(const QString &path);

//! About how much space the JPEG copies of pictures of \a heicBytes in total need.
qint64 roomFor(qint64 heicBytes);

//! The result of converting a picture.
struct Conversion
{
    QByteArray jpeg; //!< A complete file; empty if the conversion failed.
    QString why; //!< Why the conversion failed, without a full stop; else empty.
    bool lacksRemarks = false; //!< There is metadata, but it cannot be read.
};

//! Converts the picture in the file \a path.
Conversion convert(const QString &path);

} // namespace Export::HeicToJpeg

#endif
