#ifndef PHONEBACKUP_PLANNER_REMINDER_H
#define PHONEBACKUP_PLANNER_REMINDER_H

#include "PhoneBackup/planner/Planned.h"

#include <QDateTime>
#include <QStringList>

#include <memory>

namespace PhoneBackup {

//! A list of reminders.
struct ReminderList
{
    qint64 id = 0; //!< Number that lists of one store are ordered by.
    QString uuid;
    QString title;
    QString group; //!< The group of lists that it is in.
    QString account; //!< The account that it belongs to.
    QString color; //!< "#RRGGBB", where it is known.
};

//! A reminder, whatever store it comes from.
struct Reminder
{
    enum class Priority { None, High, Medium, Low };

    qint64 id = 0; //!< Number of its row, and above it that of its store.
    qint64 parent = 0; //!< The reminder that this one is a part of, 0 for none.
    QString uuid; //!< The same in every backup, where there is one.
    QString title;
    QString notes;
    std::shared_ptr<const ReminderList> list; //!< Null when it is not known.
    PlannedTime due;
    bool isAllDay = false; //!< Due on a day, and not at an hour.
    bool isCompleted = false;
    QDateTime completed; //!< Invalid when it is not known.
    QDateTime created;
    QDateTime modified;
    Priority priority = Priority::None;
    bool isFlagged = false;
    bool deleted = false;
    QStringList tags;
    std::unique_ptr<Guest> assignee; //!< Null for none.
    std::unique_ptr<PlannedDetails> details; //!< Null when there are none.
};

} // namespace PhoneBackup

#endif
