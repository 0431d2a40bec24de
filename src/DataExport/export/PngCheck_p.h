#ifndef DATAEXPORT_EXPORT_PNGCHECK_P_H
#define DATAEXPORT_EXPORT_PNGCHECK_P_H

#include <QString>

class QIODevice;

/*!
    \brief What libpng will say of a PNG file.

    The image library lets libpng write that to standard error. So the file is read once before by
    libpng itself, without keeping a pixel: what it refuses, the image library is never shown.
*/
struct PngCheck
{
    enum class State {
        Sound,
        DamagedEnd, //!< All pixels are there, but something behind them is wrong.
        Damaged,
        CutOff, //!< It ends before its pixels do.
    };

    State state = State::Damaged;
    qint64 endOfPixels = 0; //!< Bytes up to the end of the last chunk of pixels.
    QString remark; //!< libpng's, on what is wrong; empty when nothing is.

    /*!
        Checks the file in \a source, which can seek; its position stays. Of a picture of more than
        \a maxPixels only what precedes the pixels is checked.
    */
    static PngCheck of(QIODevice &source, qint64 maxPixels);
};

#endif
