#ifndef PHONEBACKUP_PLANNER_REMINDERSTORE_H
#define PHONEBACKUP_PLANNER_REMINDERSTORE_H

#include "PhoneBackup/planner/Reminder.h"

#include <QByteArrayView>

#include <vector>

namespace PhoneBackup {

class Source;

/*!
    The reminders in the store at \a domain and \a path, one of those that phones have since iOS 13:
    one a account, each with numbers of its own. In the order of the store.
*/
std::vector<Reminder> readReminderStore(Source &source, QByteArrayView domain, const QString &path);

//! The priority with this number: 1 high, 5 medium, 9 low, what lies between counts as the next.
Reminder::Priority priorityOf(qint64 number);

} // namespace PhoneBackup

#endif
