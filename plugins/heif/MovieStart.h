#ifndef PLUGINS_HEIF_MOVIESTART_H
#define PLUGINS_HEIF_MOVIESTART_H

#include "HevcPicture.h"

#include <QByteArrayView>
#include <QSize>
#include <QTransform>

#include <optional>

//! The first picture of a sequence, as the description of a movie says.
struct MovieStart
{
    QSize size; //!< As stated, before \c turn.
    QByteArrayView configuration; //!< The coder's, part of the description.
    FileExtent data { 0, 0 };
    QByteArrayView colours; //!< Content of the box that states them; empty when there is none.
    QTransform turn;

    /*!
        Of the first track of pictures in \a moov, the content of that box; none unless these are
        coded as HEVC. Nothing is checked but that it can be read.
    */
    static std::optional<MovieStart> read(QByteArrayView moov);
};

#endif
