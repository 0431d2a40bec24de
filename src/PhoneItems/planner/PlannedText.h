#ifndef PHONEITEMS_PLANNER_PLANNEDTEXT_H
#define PHONEITEMS_PLANNER_PLANNEDTEXT_H

#include "PhoneBackup/planner/Planned.h"

#include <QStringList>

namespace PhoneItems {

//! "2023-03-08 21:26" in local time or as planned on the clock, or "2023-03-08"; empty for no time.
QString plannedText(const PhoneBackup::PlannedTime &time);

//! The same of the \a end of something that begins at \a start: for days the last one that it
//! takes.
QString plannedEndText(const PhoneBackup::PlannedTime &end, const PhoneBackup::PlannedTime &start);

//! What there is to tell of \a details, a line each: how it repeats, who is invited, what is
//! attached, and links that \a description does not hold.
QStringList remarks(const PhoneBackup::PlannedDetails &details, const QString &description);

} // namespace PhoneItems

#endif
