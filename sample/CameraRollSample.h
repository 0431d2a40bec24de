#ifndef SAMPLE_CAMERAROLLSAMPLE_H
#define SAMPLE_CAMERAROLLSAMPLE_H

#include "sample/Options.h"

namespace Sample {

class BackupWriter;

/*!
    \brief Adds photos and videos, shared albums and the photo database.

    The first photos bring what a camera roll knows besides plain pictures, each kind in turn: live
    photos, edited, hidden and recently deleted ones, screenshots, pictures stored sideways or kept
    by the cloud, thumbnails. All further ones are plain, so that a large number costs no more than
    its own files.
*/
void addCameraRoll(BackupWriter &writer, const Options &options);

} // namespace Sample

#endif
