#ifndef SAMPLE_PICTUREMAKER_H
#define SAMPLE_PICTUREMAKER_H

#include <QDateTime>
#include <QImage>

namespace Sample {

class Random;

//! Draws a landscape: hills or water at some time of the day. Each call
//! draws another one. \a moment, from 0 to 1, moves the sun, for the frames of a film.
QImage drawLandscape(Random &random, QSize size, double moment = 0.3);

//! Draws something that looks like a picture of a phone's screen.
QImage drawScreenshot(Random &random, QSize size);

//! \a quality as in QImage::save().
QByteArray encodeJpeg(const QImage &image, int quality);
QByteArray encodePng(const QImage &image);

/*!
    \brief Gives a JPEG file what a camera notes: orientation, maker and the moment of the picture.

    \a orientation is the number of the EXIF standard: 1 upright, 3 upside down, 6 to be turned
    clockwise, 8 to be turned the other way. The pixels are left as they are.
*/
QByteArray withExif(const QByteArray &jpeg, int orientation, const QDateTime &taken);

//! The block that withExif() puts into the file, beginning with "Exif".
QByteArray exifBlock(int orientation, const QDateTime &taken);

//! \a image turned so that a viewer which minds \a orientation shows it upright.
QImage storedForOrientation(const QImage &image, int orientation);

} // namespace Sample

#endif
