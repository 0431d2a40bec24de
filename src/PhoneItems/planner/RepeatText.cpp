#include "PhoneItems/planner/RepeatText.h"

#include "PhoneBackup/source/StoredText.h"
#include "PhoneItems/planner/PlannedText.h"
#include "platform/Translation_p.h"

#include <QStringList>

#include <array>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestShown = 1000;

using Choice = RepeatRule::Choice;

struct Unit
{
    const char *one;
    const char *several;
};
// By RepeatRule::Unit.
constexpr std::array<Unit, 5> kUnits { {
    { QT_TRANSLATE_NOOP("DataExport", "Repeats"), QT_TRANSLATE_NOOP("DataExport", "Repeats") },
    { QT_TRANSLATE_NOOP("DataExport", "Repeats every day"),
      QT_TRANSLATE_NOOP("DataExport", "Repeats every %1 days") },
    { QT_TRANSLATE_NOOP("DataExport", "Repeats every week"),
      QT_TRANSLATE_NOOP("DataExport", "Repeats every %1 weeks") },
    { QT_TRANSLATE_NOOP("DataExport", "Repeats every month"),
      QT_TRANSLATE_NOOP("DataExport", "Repeats every %1 months") },
    { QT_TRANSLATE_NOOP("DataExport", "Repeats every year"),
      QT_TRANSLATE_NOOP("DataExport", "Repeats every %1 years") },
} };

// From Qt::Monday on.
constexpr std::array<const char *, 7> kDays {
    QT_TRANSLATE_NOOP("DataExport", "Monday"),    QT_TRANSLATE_NOOP("DataExport", "Tuesday"),
    QT_TRANSLATE_NOOP("DataExport", "Wednesday"), QT_TRANSLATE_NOOP("DataExport", "Thursday"),
    QT_TRANSLATE_NOOP("DataExport", "Friday"),    QT_TRANSLATE_NOOP("DataExport", "Saturday"),
    QT_TRANSLATE_NOOP("DataExport", "Sunday"),
};

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

// Empty when there are no words for it.
QString choiceText(const Choice &choice)
{
    const QString which = ordinal(choice.number);
    switch (choice.kind) {
    case Choice::Kind::Weekday: {
        const QString day = tr(kDays[std::size_t(choice.weekday - Qt::Monday)]);
        if (choice.number == 0)
            return day;
        return which.isEmpty() ? QString() : tr("the %1 %2").arg(which, day);
    }
    case Choice::Kind::MonthDay:
        if (choice.number > 0)
            return QString::number(choice.number);
        return which.isEmpty() ? QString() : tr("the %1").arg(which);
    case Choice::Kind::Month:
        break;
    }
    return tr(kMonths[std::size_t(choice.number - 1)]);
}

// Likewise.
QString choicesText(const RepeatRule::Choices &choices)
{
    QStringList parts;
    for (const Choice &choice : choices) {
        parts.append(choiceText(choice));
        if (parts.last().isEmpty())
            return {};
    }
    if (parts.isEmpty())
        return {};
    switch (choices.front().kind) {
    case Choice::Kind::Weekday:
        return u' ' + tr("on %1").arg(listed(parts));
    case Choice::Kind::MonthDay:
        return u' ' + tr("on day %1 of the month").arg(listed(parts));
    case Choice::Kind::Month:
        break;
    }
    return u' ' + tr("in %1").arg(listed(parts));
}

} // namespace

QString repeatText(const RepeatRule &rule)
{
    if (!rule.isCertain)
        return tr(kUnits.front().one);
    QString details;
    bool isTold = rule.isUnderstood;
    for (const RepeatRule::Choices &choices : rule.choices) {
        const QString detail = choicesText(choices);
        isTold = isTold && !detail.isEmpty();
        details += detail;
    }

    const Unit &unit = kUnits[std::size_t(rule.unit)];
    const bool isSeveral = rule.interval > 1 && rule.unit != RepeatRule::Unit::Unknown;
    QString text = isSeveral ? tr(unit.several).arg(rule.interval) : tr(unit.one);
    if (isTold)
        text += details;
    if (rule.count == 1)
        text += u", "_s + tr("once");
    else if (rule.count > 1)
        text += u", "_s + tr("%1 times").arg(rule.count);
    if (rule.until.isValid())
        text += u' ' + tr("until %1").arg(plannedText(rule.until));
    if (!isTold)
        text += u" ("_s + StoredText::beginning(rule.specifier, kLongestShown) + u')';
    return text;
}

} // namespace PhoneItems
