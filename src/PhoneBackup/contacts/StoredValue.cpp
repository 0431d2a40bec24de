#include "PhoneBackup/contacts/StoredValue.h"

#include "PhoneBackup/source/ContactKind.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace PhoneBackup::StoredValue {

using namespace Qt::StringLiterals;

QDate day(const QString &stored)
{
    constexpr double kDaySeconds = 86400;
    constexpr double kNoonSeconds = kDaySeconds / 2;
    constexpr double kFirstDay = -730485; // 0001-01-01
    constexpr double kLastDay = 2921573; // 9999-12-31
    bool isNumber = false;
    const double seconds = stored.trimmed().toDouble(&isNumber);
    if (!isNumber) {
        const QDate written = QDate::fromString(stored.trimmed(), Qt::ISODate);
        return written.year() >= 1 && written.year() <= 9999 ? written : QDate();
    }
    if (!std::isfinite(seconds))
        return {};
    double day = std::floor(seconds / kDaySeconds);
    if (seconds - day * kDaySeconds > kNoonSeconds)
        ++day; // midnight further east
    if (day < kFirstDay || day > kLastDay)
        return {};
    return QDate(2001, 1, 1).addDays(qint64(day));
}

QString partOfPlainValue(int kind)
{
    switch (kind) {
    case ContactKind::kAddress:
        return u"Street"_s;
    case ContactKind::kInstantMessage:
    case ContactKind::kSocialProfile:
        return u"username"_s;
    default:
        return {};
    }
}

QString partKey(const QString &key)
{
    constexpr std::array kKeys { "Street"_L1,  "City"_L1,     "State"_L1,
                                 "ZIP"_L1,     "Country"_L1,  "CountryCode"_L1,
                                 "service"_L1, "username"_L1, "url"_L1 };
    for (const QLatin1StringView known : kKeys) {
        if (key.compare(known, Qt::CaseInsensitive) == 0)
            return known;
    }
    return key;
}

} // namespace PhoneBackup::StoredValue
