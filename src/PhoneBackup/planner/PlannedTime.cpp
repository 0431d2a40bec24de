#include "PhoneBackup/planner/PlannedTime.h"

#include "platform/CCommonUtils.h"

#include <QDateTime>
#include <QTimeZone>

#include <cmath>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr double kYear1700 = -9498556800; // in seconds since 2001
constexpr double kYear2400 = 12591158400;
constexpr double kSecondsADay = 86400;
constexpr QLatin1StringView kFloating("_float");

} // namespace

PlannedTime::PlannedTime(std::optional<double> seconds, const QString &zone, Kind kind)
    : m_zone(zone)
    , m_kind(kind)
{
    if (seconds && *seconds != 0 && *seconds > kYear1700 && *seconds < kYear2400)
        m_seconds = seconds;
}

QString PlannedTime::text() const
{
    if (!m_seconds)
        return {};
    if (m_kind == Kind::Day)
        return dayText(*m_seconds);
    return CCommonUtils::datetimeToMinute(CCommonUtils::buildDateTimeBase2001(*m_seconds),
                                          m_zone != kFloating);
}

QString PlannedTime::endText(const PlannedTime &start) const
{
    const bool isRange = m_seconds && start.m_seconds && *m_seconds > *start.m_seconds;
    return m_kind == Kind::Day && isRange ? dayText(*m_seconds - 1) : text();
}

QString PlannedTime::dayText(double seconds) const
{
    const QDateTime moment = CCommonUtils::buildDateTimeBase2001(seconds);
    if (m_zone == kFloating)
        return CCommonUtils::dateToString(moment, true);
    if (!m_zone.isEmpty() && !m_zone.contains(".."_L1)) {
        const QTimeZone zone(m_zone.toUtf8());
        if (zone.isValid())
            return moment.toTimeZone(zone).date().toString(Qt::ISODate);
    }
    // Days without a zone are midnight of either the clock or the phone's own zone; the last day of
    // a range is asked for by the second before.
    const double ofDay =
        std::fmod(std::fmod(*m_seconds, kSecondsADay) + kSecondsADay, kSecondsADay);
    const bool isClock = ofDay == 0 || ofDay == kSecondsADay - 1;
    return CCommonUtils::dateToString(moment, isClock);
}

} // namespace PhoneBackup
