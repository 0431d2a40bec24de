#ifndef SAMPLE_SOUNDMAKER_H
#define SAMPLE_SOUNDMAKER_H

#include <QByteArray>
#include <QDateTime>

namespace Sample {

class Random;

//! A soft tune of about \a seconds as a sound file (.m4a, .m4r).
QByteArray tuneFile(Random &random, int seconds, const QDateTime &created);

//! Telephone speech (.amr) of \a seconds: nobody speaks, but a player plays it.
QByteArray amrFile(Random &random, int seconds);

} // namespace Sample

#endif
