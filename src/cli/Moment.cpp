#include "Moment.h"

using namespace Qt::StringLiterals;

namespace Cli::Moment {

namespace {

// Not every day begins at midnight: where clocks go forward then, it begins later.
QDateTime startOfDay(const QString &text, int daysLater)
{
    const QDate date = QDate::fromString(text, u"yyyy-MM-dd"_s);
    return date.isValid() ? date.addDays(daysLater).startOfDay() : QDateTime();
}

QDateTime withTime(const QString &text)
{
    const QDateTime moment = QDateTime::fromString(text, u"yyyy-MM-dd hh:mm"_s);
    return moment.isValid() ? moment : QDateTime::fromString(text, u"yyyy-MM-ddThh:mm"_s);
}

} // namespace

QDateTime first(const QString &text)
{
    const QDateTime day = startOfDay(text.trimmed(), 0);
    return day.isValid() ? day : withTime(text.trimmed());
}

QDateTime behind(const QString &text)
{
    const QDateTime dayAfter = startOfDay(text.trimmed(), 1);
    return dayAfter.isValid() ? dayAfter : withTime(text.trimmed());
}

} // namespace Cli::Moment
