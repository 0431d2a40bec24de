#include "sample/SampleDates.h"

namespace Sample {

QDateTime sampleStart()
{
    return QDateTime(QDate(2023, 6, 17), QTime(8, 15), Qt::UTC);
}

QDateTime sampleBackupDate()
{
    return QDateTime(QDate(2024, 6, 1), QTime(7, 45), Qt::UTC);
}

double cocoaSeconds(const QDateTime &moment)
{
    constexpr qint64 kUnixSecondsOf2001 = 978307200;
    return static_cast<double>(moment.toSecsSinceEpoch() - kUnixSecondsOf2001);
}

} // namespace Sample
