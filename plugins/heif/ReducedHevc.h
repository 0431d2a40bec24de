#ifndef PLUGINS_HEIF_REDUCEDHEVC_H
#define PLUGINS_HEIF_REDUCEDHEVC_H

#include "HevcPicture.h"

#include <QImage>
#include <QSize>

#include <optional>

class QIODevice;

/*!
    \brief Pictures of HEVC, decoded to averages of their pixels.

    A tile is averaged as it comes from the decoder, before its numbers become colours and without a
    copy: a picture that is to become much smaller takes two thirds of the time and half of the
    memory that all of its pixels would.
*/
namespace ReducedHevc {

//! How the numbers of a picture stand for its colours.
struct ColourCoding
{
    int matrix; //!< Of ISO/IEC 23091-2.
    bool isFullRange; //!< Whether black is 0, as opposed to 16 of 255.
};

/*!
    \a picture in \a device, as it is to be seen, each pixel the average of one cell of \a cells,
    which are counted after the picture was turned; no more than it has pixels. \a coding is what
    the file says; if it says nothing, the coded data do. Null when the picture is damaged or coded
    in a way that only a few are.
*/
QImage decode(QIODevice &device,
              const HevcPicture &picture,
              const std::optional<ColourCoding> &coding,
              QSize cells);

} // namespace ReducedHevc

#endif
