#ifndef DATAEXPORT_EXPORT_PNGCHUNKS_P_H
#define DATAEXPORT_EXPORT_PNGCHUNKS_P_H

#include <QtGlobal>

class QIODevice;

/*!
    \brief How much of a PNG file is there, read before its picture is.

    libpng writes to standard error what is wrong with a file. Of one that ends within its picture
   it makes none; of one that is only damaged behind the picture it makes it, and complains all the
    same.
*/
struct PngChunks
{
    enum class State {
        Whole, //!< Or damaged in a way that only decoding can judge.
        DamagedEnd, //!< The picture is there, IEND or something before it is not.
        CutOff, //!< It ends before the picture does.
    };

    State state = State::CutOff;
    qint64 endOfPicture = 0; //!< Bytes up to the end of the last chunk of image data.

    //! Of the PNG file in \a source, which can seek; its position stays.
    static PngChunks read(QIODevice &source);
};

#endif
