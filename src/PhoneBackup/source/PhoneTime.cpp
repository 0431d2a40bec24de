#include "PhoneBackup/source/PhoneTime.h"

#include <cmath>

namespace PhoneBackup::PhoneTime {

namespace {

constexpr double kBase2001 = 978307200;
constexpr double kYear1700 = -8520249600;
constexpr double kYear2200 = 7258118400;
constexpr double kYear2400 = 13569465600;

// Not a number lies within no bounds.
QDateTime moment(double unixSeconds, double after = 0, double before = kYear2200)
{
    if (!(unixSeconds > after && unixSeconds < before))
        return {};
    return QDateTime::fromMSecsSinceEpoch(std::llround(unixSeconds * 1000), Qt::UTC);
}

} // namespace

QDateTime since2001(std::optional<double> seconds)
{
    return !seconds || *seconds == 0 ? QDateTime() : moment(*seconds + kBase2001);
}

QDateTime ofThePast(std::optional<double> seconds)
{
    return seconds.value_or(0) > kBase2001 ? sinceUnix(seconds) : since2001(seconds);
}

QDateTime sinceUnix(std::optional<double> seconds)
{
    return seconds ? moment(*seconds) : QDateTime();
}

QDateTime ofMs(qint64 ms)
{
    return ms == kNoMs ? QDateTime() : QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
}

QDateTime planned(std::optional<double> seconds)
{
    return !seconds || *seconds == 0 ? QDateTime()
                                     : moment(*seconds + kBase2001, kYear1700, kYear2400);
}

QDateTime withinBounds(const QDateTime &moment)
{
    return moment.isValid() ? sinceUnix(double(moment.toMSecsSinceEpoch()) / 1000) : QDateTime();
}

bool isNewer(const QDateTime &a, const QDateTime &b)
{
    if (a.isValid() != b.isValid())
        return a.isValid();
    return a.isValid() && a > b;
}

} // namespace PhoneBackup::PhoneTime
