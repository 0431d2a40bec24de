#include "PhoneBackup/planner/RepeatRule.h"

#include "platform/Translation_p.h"

#include <QRegularExpression>
#include <QStringList>

#include <array>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestSpecifier = 1000;

struct Unit
{
    const char *word; // of FREQ
    const char *one;
    const char *several;
};
// By the number of the frequency.
constexpr std::array<Unit, 5> kUnits { {
    { "", "", "" },
    { "DAILY",
      QT_TRANSLATE_NOOP("DataExport", "Repeats every day"),
      QT_TRANSLATE_NOOP("DataExport", "Repeats every %1 days") },
    { "WEEKLY",
      QT_TRANSLATE_NOOP("DataExport", "Repeats every week"),
      QT_TRANSLATE_NOOP("DataExport", "Repeats every %1 weeks") },
    { "MONTHLY",
      QT_TRANSLATE_NOOP("DataExport", "Repeats every month"),
      QT_TRANSLATE_NOOP("DataExport", "Repeats every %1 months") },
    { "YEARLY",
      QT_TRANSLATE_NOOP("DataExport", "Repeats every year"),
      QT_TRANSLATE_NOOP("DataExport", "Repeats every %1 years") },
} };

struct Day
{
    const char *code;
    const char *name;
};
constexpr std::array<Day, 7> kDays { {
    { "MO", QT_TRANSLATE_NOOP("DataExport", "Monday") },
    { "TU", QT_TRANSLATE_NOOP("DataExport", "Tuesday") },
    { "WE", QT_TRANSLATE_NOOP("DataExport", "Wednesday") },
    { "TH", QT_TRANSLATE_NOOP("DataExport", "Thursday") },
    { "FR", QT_TRANSLATE_NOOP("DataExport", "Friday") },
    { "SA", QT_TRANSLATE_NOOP("DataExport", "Saturday") },
    { "SU", QT_TRANSLATE_NOOP("DataExport", "Sunday") },
} };

constexpr std::array<const char *, 12> kMonths {
    QT_TRANSLATE_NOOP("DataExport", "January"),   QT_TRANSLATE_NOOP("DataExport", "February"),
    QT_TRANSLATE_NOOP("DataExport", "March"),     QT_TRANSLATE_NOOP("DataExport", "April"),
    QT_TRANSLATE_NOOP("DataExport", "May"),       QT_TRANSLATE_NOOP("DataExport", "June"),
    QT_TRANSLATE_NOOP("DataExport", "July"),      QT_TRANSLATE_NOOP("DataExport", "August"),
    QT_TRANSLATE_NOOP("DataExport", "September"), QT_TRANSLATE_NOOP("DataExport", "October"),
    QT_TRANSLATE_NOOP("DataExport", "November"),  QT_TRANSLATE_NOOP("DataExport", "December"),
};

QString listed(const QStringList &parts)
{
    if (parts.size() < 2)
        return parts.join(QString());
    return tr("%1 and %2").arg(parts.first(parts.size() - 1).join(u", "_s), parts.last());
}

// Empty for a number that there is no word for.
QString ordinal(int number)
{
    switch (number) {
    case 1:
        return tr("first");
    case 2:
        return tr("second");
    case 3:
        return tr("third");
    case 4:
        return tr("fourth");
    case 5:
        return tr("fifth");
    case -1:
        return tr("last");
    case -2:
        return tr("second to last");
    default:
        return {};
    }
}

// Each of these is empty when a part is not understood: then all is shown as it is stored.
QString weekdays(const QString &value)
{
    static const QRegularExpression kDay(u"^([+-]?\\d{0,2})(MO|TU|WE|TH|FR|SA|SU)$"_s);
    QStringList names;
    for (const QString &part : value.split(u',')) {
        const QRegularExpressionMatch match = kDay.match(part.trimmed());
        if (!match.hasMatch())
            return {};
        const int number = match.captured(1).toInt();
        const QString which = ordinal(number);
        if (number != 0 && which.isEmpty())
            return {};
        for (const Day &day : kDays) {
            if (match.captured(2) == QLatin1StringView(day.code))
                names.append(number == 0 ? tr(day.name) : tr("the %1 %2").arg(which, tr(day.name)));
        }
    }
    return u' ' + tr("on %1").arg(listed(names));
}

QString monthDays(const QString &value)
{
    QStringList days;
    for (const QString &part : value.split(u',')) {
        bool ok = false;
        const int day = part.trimmed().toInt(&ok);
        if (!ok || day == 0 || day < -2 || day > 31)
            return {};
        days.append(day > 0 ? QString::number(day) : tr("the %1").arg(ordinal(day)));
    }
    return u' ' + tr("on day %1 of the month").arg(listed(days));
}

QString months(const QString &value)
{
    QStringList names;
    for (const QString &part : value.split(u',')) {
        bool ok = false;
        const int month = part.trimmed().toInt(&ok);
        if (!ok || month < 1 || month > int(kMonths.size()))
            return {};
        names.append(tr(kMonths[std::size_t(month - 1)]));
    }
    return u' ' + tr("in %1").arg(listed(names));
}

qint64 frequencyOf(const QString &word)
{
    for (std::size_t number = 1; number < kUnits.size(); ++number) {
        if (word == QLatin1StringView(kUnits[number].word))
            return qint64(number);
    }
    return 0;
}

} // namespace

QString RepeatRule::sentence() const
{
    qint64 unit = frequency;
    QString details;
    bool isUnderstood = specifier.size() <= kLongestSpecifier;
    const QStringList parts =
        isUnderstood ? specifier.split(u';', Qt::SkipEmptyParts) : QStringList();
    for (const QString &part : parts) {
        const QString key = part.section(u'=', 0, 0).trimmed().toUpper();
        const QString value = part.section(u'=', 1).trimmed().toUpper();
        QString detail;
        if (key == "FREQ"_L1) {
            const qint64 named = frequencyOf(value);
            if (unit == 0)
                unit = named;
            isUnderstood = isUnderstood && named != 0 && named == unit;
            continue;
        }
        if (key == "BYDAY"_L1 || key == "D"_L1)
            detail = weekdays(value);
        else if (key == "BYMONTHDAY"_L1 || key == "M"_L1)
            detail = monthDays(value);
        else if (key == "BYMONTH"_L1 || key == "O"_L1)
            detail = months(value);
        isUnderstood = isUnderstood && !detail.isEmpty();
        details += detail;
    }

    const bool isKnown = unit > 0 && unit < qint64(kUnits.size());
    const Unit &words = kUnits[isKnown ? std::size_t(unit) : 0];
    QString text = !isKnown ? tr("Repeats")
        : interval > 1      ? tr(words.several).arg(interval)
                            : tr(words.one);
    if (isUnderstood)
        text += details;
    if (count == 1)
        text += u", "_s + tr("once");
    else if (count > 1)
        text += u", "_s + tr("%1 times").arg(count);
    if (!until.isEmpty())
        text += u' ' + tr("until %1").arg(until);
    if (!isUnderstood)
        text += u" ("_s + specifier.left(kLongestSpecifier) + u')';
    return text;
}

} // namespace PhoneBackup
