#ifndef SAMPLE_SAMPLEDATES_H
#define SAMPLE_SAMPLEDATES_H

#include <QDateTime>

namespace Sample {

//! The moment from which the data of a sample backup are counted.
QDateTime sampleStart();

//! The moment at which the backup was made, as its property lists say.
QDateTime sampleBackupDate();

//! Seconds since 2001, as most of the phone's databases count.
double cocoaSeconds(const QDateTime &moment);

} // namespace Sample

#endif
