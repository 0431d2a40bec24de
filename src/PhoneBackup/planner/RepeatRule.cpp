#include "PhoneBackup/planner/RepeatRule.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestSpecifier = 1000; // longer ones come from no phone

using Choice = RepeatRule::Choice;
using Choices = RepeatRule::Choices;

// 0 when the word is none.
qint64 frequencyOf(const QString &word)
{
    constexpr std::array kWords { "DAILY"_L1, "WEEKLY"_L1, "MONTHLY"_L1, "YEARLY"_L1 };
    const auto found = std::find(kWords.begin(), kWords.end(), word);
    return found == kWords.end() ? 0 : found - kWords.begin() + 1;
}

// Each of these is empty when a part is not understood.
Choices weekdays(const QStringList &parts)
{
    constexpr std::array kDays { "MO"_L1, "TU"_L1, "WE"_L1, "TH"_L1, "FR"_L1, "SA"_L1, "SU"_L1 };
    static const QRegularExpression kDay(u"^([+-]?\\d{0,2})(MO|TU|WE|TH|FR|SA|SU)$"_s);
    Choices days;
    for (const QString &part : parts) {
        const QRegularExpressionMatch match = kDay.match(part.trimmed());
        if (!match.hasMatch())
            return {};
        const auto day = std::find(kDays.begin(), kDays.end(), match.captured(2));
        days.push_back({ Choice::Kind::Weekday,
                         match.captured(1).toInt(),
                         Qt::DayOfWeek(day - kDays.begin() + Qt::Monday) });
    }
    return days;
}

Choices numbers(const QStringList &parts, Choice::Kind kind, int least, int most)
{
    Choices choices;
    for (const QString &part : parts) {
        bool ok = false;
        const int number = part.trimmed().toInt(&ok);
        if (!ok || number == 0 || number < least || number > most)
            return {};
        choices.push_back({ kind, number });
    }
    return choices;
}

} // namespace

RepeatRule::Unit RepeatRule::unitOf(qint64 frequency)
{
    const bool isKnown = frequency >= qint64(Unit::Day) && frequency <= qint64(Unit::Year);
    return isKnown ? Unit(frequency) : Unit::Unknown;
}

void RepeatRule::setSpecifier(const QString &text, qint64 frequency)
{
    specifier = text;
    isUnderstood = text.size() <= kLongestSpecifier;
    const QStringList parts = isUnderstood ? text.split(u';', Qt::SkipEmptyParts) : QStringList();
    for (const QString &part : parts) {
        const QString key = part.section(u'=', 0, 0).trimmed().toUpper();
        const QStringList values = part.section(u'=', 1).trimmed().toUpper().split(u',');
        if (key == "FREQ"_L1) {
            const qint64 named = values.size() == 1 ? frequencyOf(values.first()) : 0;
            if (frequency == 0)
                frequency = named;
            isUnderstood = isUnderstood && named != 0 && named == frequency;
            continue;
        }
        Choices found;
        if (key == "BYDAY"_L1 || key == "D"_L1)
            found = weekdays(values);
        else if (key == "BYMONTHDAY"_L1 || key == "M"_L1)
            found = numbers(values, Choice::Kind::MonthDay, -31, 31);
        else if (key == "BYMONTH"_L1 || key == "O"_L1)
            found = numbers(values, Choice::Kind::Month, 1, 12);
        isUnderstood = isUnderstood && !found.empty();
        choices.push_back(std::move(found));
    }
    unit = unitOf(frequency);
}

} // namespace PhoneBackup
