#ifndef SAMPLE_MESSAGESCHEMA_H
#define SAMPLE_MESSAGESCHEMA_H

#include <QByteArray>

namespace Sample {

inline constexpr int kOldestMessageRelease = 6;
inline constexpr int kNewestMessageRelease = 18;

/*!
    \brief The tables of sms.db on a phone that was kept up to date until iOS \a iosRelease.

    Columns stand in the order in which the releases added them.
*/
QByteArray messageTables(int iosRelease);

//! What is quicker, and on the triggers' side only possible, once all rows are in.
QByteArray messageIndexesAndTriggers(int iosRelease);

} // namespace Sample

#endif
