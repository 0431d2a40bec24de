#ifndef PHONEBACKUP_BASE_PHONETIME_H
#define PHONEBACKUP_BASE_PHONETIME_H

#include <QDateTime>

#include <limits>
#include <optional>

//! Moments as the phone's databases store them. 0, and what is not in 1970 to 2200, is no moment.
namespace PhoneBackup::PhoneTime {

//! Seconds from 1970 to 2001 and to 2200, UTC.
constexpr qint64 kYear2001 = 978307200;
constexpr qint64 kYear2200 = 7258118400;

//! Seconds since 2001-01-01 UTC.
QDateTime since2001(std::optional<double> seconds);

//! Seconds since 2001, or since 1970 where they would lie after 2031: for what has happened.
QDateTime ofThePast(std::optional<double> seconds);

//! Seconds since 1970-01-01 UTC.
QDateTime sinceUnix(std::optional<double> seconds);

//! No moment, where moments are milliseconds since 1970; earlier than all of them.
constexpr qint64 kNoMs = std::numeric_limits<qint64>::min();

//! \a ms since 1970-01-01 UTC where that is a moment, else kNoMs.
constexpr qint64 momentMs(qint64 ms)
{
    return ms > 0 && ms < kYear2200 * 1000 ? ms : kNoMs;
}

//! Milliseconds since 1970-01-01 UTC; invalid for kNoMs.
QDateTime ofMs(qint64 ms);

//! Seconds since 2001-01-01 UTC, in 1700 to 2400: for what a person plans.
QDateTime planned(std::optional<double> seconds);

//! Seconds since 2001-01-01 UTC, to the millisecond, of any year that a date can have.
QDateTime ofAnyYear(double seconds);

//! \a moment where it lies in 1970 to 2200, else no moment.
QDateTime withinBounds(const QDateTime &moment);

//! Order for lists with the newest first; what has no date comes last.
bool isNewer(const QDateTime &a, const QDateTime &b);

} // namespace PhoneBackup::PhoneTime

#endif
