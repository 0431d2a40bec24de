#include "PhoneItems/shared/DurationText.h"

namespace PhoneItems {

using namespace Qt::StringLiterals;

QString durationText(qint64 seconds)
{
    constexpr qint64 kMinute = 60;
    constexpr qint64 kHour = 60 * kMinute;
    const auto padded = [](qint64 number) { return u"%1"_s.arg(number, 2, 10, '0'_L1); };
    const QString hours = seconds < kHour ? QString() : QString::number(seconds / kHour) + u':';
    const qint64 minutes = seconds % kHour / kMinute;
    return hours + (hours.isEmpty() ? QString::number(minutes) : padded(minutes)) + u':'
        + padded(seconds % kMinute);
}

} // namespace PhoneItems
