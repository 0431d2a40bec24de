#ifndef PHONEBACKUP_MEDIA_PHOTOREADER_H
#define PHONEBACKUP_MEDIA_PHOTOREADER_H

#include "PhoneBackup/media/Photo.h"

#include <functional>

namespace PhoneBackup {

class Source;

/*!
    Tells \a sink all photos and videos of the camera roll, in the order of cameraFiles(). The film
    of a live photo and what was edited are with the photo that they belong to; an edited version
    whose original is gone is a photo without a file.
*/
void readPhotos(Source &source, const std::function<void(const Photo &)> &sink);

} // namespace PhoneBackup

#endif
