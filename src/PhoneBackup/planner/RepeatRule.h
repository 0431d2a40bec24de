#ifndef PHONEBACKUP_PLANNER_REPEATRULE_H
#define PHONEBACKUP_PLANNER_REPEATRULE_H

#include "PhoneBackup/planner/PlannedTime.h"

#include <QString>

#include <vector>

namespace PhoneBackup {

//! How an event or reminder comes again.
struct RepeatRule
{
    enum class Unit { Unknown, Day, Week, Month, Year };

    //! Which of the unit's days or months are meant.
    struct Choice
    {
        enum class Kind { Weekday, MonthDay, Month };

        Kind kind = Kind::Weekday;
        //! Weekday: which of them in the unit, the first is 1, the last -1, and 0 all of them.
        //! MonthDay: the day, -1 for the last one. Month: 1 to 12.
        int number = 0;
        Qt::DayOfWeek weekday = Qt::Monday; //!< Of a weekday.
    };
    //! Choices of one kind: any of them will do.
    using Choices = std::vector<Choice>;

    Unit unit = Unit::Unknown;
    qint64 interval = 1; //!< Every so many units; less than 1 is every one.
    qint64 count = 0; //!< So many times; less than 1: without an end.
    PlannedTime until; //!< The last day; none: without an end.
    std::vector<Choices> choices; //!< All apply, in their stored order.
    QString specifier; //!< The rule text that the choices were read from.
    bool isUnderstood = true; //!< Whether the choices are all that the specifier says.
    bool isCertain = true; //!< false: what unit and interval mean in this store was never proved.

    //! The unit with this number: 1 day, 2 week, 3 month, 4 year.
    static Unit unitOf(qint64 frequency);

    /*!
        Sets choices, and the unit where \a frequency, its number, is 0, from \a text: a rule text
        ("FREQ=WEEKLY;BYDAY=MO,WE") or the calendar's own shorter form of it ("D=0MO,0WE").
    */
    void setSpecifier(const QString &text, qint64 frequency);
};

} // namespace PhoneBackup

#endif
