#include "PhoneBackup/base/PhoneTime.h"

#include <cmath>

namespace PhoneBackup::PhoneTime {

namespace {

constexpr double kYear1700 = -8520249600;
constexpr double kYear2400 = 13569465600;

// Not a number lies within no bounds.
QDateTime moment(double unixSeconds, double after = 0, double before = double(kYear2200))
{
    const bool isWithin = unixSeconds > after && unixSeconds < before;
    return isWithin ? QDateTime::fromMSecsSinceEpoch(std::llround(unixSeconds * 1000), Qt::UTC)
                    : QDateTime();
}

} // namespace

QDateTime since2001(std::optional<double> seconds)
{
    return !seconds || *seconds == 0 ? QDateTime() : moment(*seconds + double(kYear2001));
}

QDateTime ofThePast(std::optional<double> seconds)
{
    return seconds.value_or(0) > double(kYear2001) ? sinceUnix(seconds) : since2001(seconds);
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
                                     : moment(*seconds + double(kYear2001), kYear1700, kYear2400);
}

QDateTime ofAnyYear(double seconds)
{
    constexpr double kLimitMs = 9.2e18; // near what 64 bits of milliseconds hold
    const double ms = std::round(seconds * 1000) + double(kYear2001) * 1000;
    return std::abs(ms) < kLimitMs ? QDateTime::fromMSecsSinceEpoch(qint64(ms), Qt::UTC)
                                   : QDateTime();
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
