#include "PhoneBackup/planner/PlannedTime.h"

#include "PhoneBackup/base/PhoneTime.h"

#include <QTimeZone>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

PlannedTime::PlannedTime(std::optional<double> seconds, const QString &zone, Kind kind)
    : m_moment(PhoneTime::planned(seconds))
    , m_zone(zone)
    , m_kind(kind)
{
}

QString PlannedTime::floating()
{
    return u"_float"_s;
}

QDate PlannedTime::lastDay(const PlannedTime &start) const
{
    const bool isRange = isValid() && start.isValid() && m_moment > start.m_moment;
    return isRange ? dayOf(m_moment.addSecs(-1)) : day();
}

QDate PlannedTime::dayOf(const QDateTime &moment) const
{
    if (isFloating())
        return moment.date();
    // The name comes from the backup, and names of zones are looked for among files.
    if (!m_zone.isEmpty() && !m_zone.contains(".."_L1)) {
        const QTimeZone zone(m_zone.toUtf8());
        if (zone.isValid())
            return moment.toTimeZone(zone).date();
    }
    // Days without a zone are midnight of either the clock or the phone's own zone; the last day of
    // a range is asked for by the second before.
    constexpr int kMsADay = 24 * 60 * 60 * 1000;
    const int ofDay = m_moment.time().msecsSinceStartOfDay();
    const bool isClock = ofDay == 0 || ofDay == kMsADay - 1000;
    return isClock ? moment.date() : moment.toLocalTime().date();
}

} // namespace PhoneBackup
