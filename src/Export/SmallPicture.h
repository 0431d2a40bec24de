#ifndef EXPORT_SMALLPICTURE_H
#define EXPORT_SMALLPICTURE_H

#include "Archive/media/Thumbnails.h"

namespace Export {

//! A picture of the backup for the archive; an Archive::PictureMaker.
Archive::SmallPicture smallPicture(const QByteArray &bytes, int sidePx);

} // namespace Export

#endif
