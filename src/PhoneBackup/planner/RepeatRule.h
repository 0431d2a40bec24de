#ifndef PHONEBACKUP_PLANNER_REPEATRULE_H
#define PHONEBACKUP_PLANNER_REPEATRULE_H

#include <QString>

namespace PhoneBackup {

//! How an event or reminder comes again, as the calendar stores it.
struct RepeatRule
{
    qint64 frequency = 0; //!< 1 day, 2 week, 3 month, 4 year.
    qint64 interval = 1; //!< Every so many of them.
    qint64 count = 0; //!< So many times; 0: without an end.
    QString until; //!< The last day, as text; empty: without an end.
    QString specifier; //!< The rest as rule text: "BYDAY=MO,WE" or, shorter, "D=0MO,0WE".

    /*!
        The rule as a sentence: "Repeats every 2 weeks on Monday and Friday, 10 times". What of the
        specifier is not understood stands behind it as it is.
    */
    QString sentence() const;
};

} // namespace PhoneBackup

#endif
