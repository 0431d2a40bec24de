#include "PhoneItems/contacts/ContactWords.h"

#include "PhoneBackup/source/ContactKind.h"

#include <QDateTime>

#include <algorithm>
#include <array>
#include <cmath>

namespace PhoneBackup::ContactWords {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kBegin("_$!<");
constexpr QLatin1StringView kEnd(">!$_");

bool isTranslated(QStringView word)
{
    constexpr std::array kWords {
        "Mobile"_L1,   "Home"_L1,    "Work"_L1,      "Main"_L1,     "HomeFAX"_L1,     "WorkFAX"_L1,
        "OtherFAX"_L1, "Pager"_L1,   "Other"_L1,     "HomePage"_L1, "Anniversary"_L1, "Father"_L1,
        "Mother"_L1,   "Parent"_L1,  "Brother"_L1,   "Sister"_L1,   "Child"_L1,       "Friend"_L1,
        "Spouse"_L1,   "Partner"_L1, "Assistant"_L1, "Manager"_L1,
    };
    return std::find(kWords.begin(), kWords.end(), word) != kWords.end();
}

} // namespace

QString label(const QString &stored)
{
    if (!stored.startsWith(kBegin) || !stored.endsWith(kEnd)
        || stored.size() <= kBegin.size() + kEnd.size())
        return stored;
    const QStringView word = QStringView(stored).sliced(kBegin.size()).chopped(kEnd.size());
    if (isTranslated(word))
        return stored;
    QString words;
    for (qsizetype i = 0; i < word.size(); ++i) {
        if (i > 0 && word[i].isUpper() && word[i - 1].isLower())
            words += u' ';
        words += word[i];
    }
    return words.toLower();
}

QString day(const QString &stored)
{
    constexpr double kDaySeconds = 86400;
    constexpr double kNoonSeconds = kDaySeconds / 2;
    constexpr double kFirstDay = -730485; // 0001-01-01
    constexpr double kLastDay = 2921573; // 9999-12-31
    bool isNumber = false;
    double seconds = stored.trimmed().toDouble(&isNumber);
    if (!isNumber) {
        const QDate written = QDate::fromString(stored.trimmed(), Qt::ISODate);
        isNumber = written.isValid();
        seconds = double(QDate(2001, 1, 1).daysTo(written)) * kDaySeconds;
    }
    if (!isNumber || !std::isfinite(seconds))
        return {};
    double day = std::floor(seconds / kDaySeconds);
    if (seconds - day * kDaySeconds > kNoonSeconds)
        ++day; // midnight further east
    if (day < kFirstDay || day > kLastDay)
        return {};
    // Halfway between noon there and noon here: the same day in both places, whatever the zone.
    const double noon = day * kDaySeconds + kNoonSeconds;
    const QDateTime here =
        QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC).addSecs(qint64(noon)).toLocalTime();
    return QString::number(noon - here.offsetFromUtc() / 2, 'f', 0);
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

} // namespace PhoneBackup::ContactWords
