#include "PhoneItems/contacts/ContactWords.h"

#include "PhoneBackup/base/PhoneTime.h"

#include <algorithm>
#include <array>

namespace PhoneItems::ContactWords {

using namespace PhoneBackup;
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

QString day(const QDate &day)
{
    if (!day.isValid())
        return {};
    constexpr qint64 kDaySeconds = 86400;
    // Halfway between noon there and noon here: the same day in both places, whatever the zone.
    const qint64 noon = QDate(2001, 1, 1).daysTo(day) * kDaySeconds + kDaySeconds / 2;
    const QDateTime here = PhoneTime::ofAnyYear(double(noon)).toLocalTime();
    return QString::number(noon - here.offsetFromUtc() / 2);
}

} // namespace PhoneItems::ContactWords
