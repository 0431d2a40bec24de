#ifndef PLUGINS_HEIF_REDUCEDHEVC_H
#define PLUGINS_HEIF_REDUCEDHEVC_H

#include "HevcPicture.h"

#include <QImage>
#include <QSize>

class QIODevice;

/*!
    \brief Pictures of HEVC, decoded to averages of their pixels.

    A tile is averaged as it comes from the decoder, before its numbers become colours and without a
    copy: a picture that is to become much smaller takes two thirds of the time and half of the
    memory that all of its pixels would.
*/
namespace ReducedHevc {

/*!
    \a picture in \a device, as it is to be seen, each pixel the average of one cell of \a cells,
    which are counted after the picture was turned; no more than it has pixels. Null when it is
    damaged, or coded in a way that only a few are.
*/
QImage decode(QIODevice &device, const HevcPicture &picture, QSize cells);

} // namespace ReducedHevc

#endif
