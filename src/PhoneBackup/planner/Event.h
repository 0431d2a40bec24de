#ifndef PHONEBACKUP_PLANNER_EVENT_H
#define PHONEBACKUP_PLANNER_EVENT_H

#include "PhoneBackup/planner/Planned.h"

#include <QDateTime>

#include <memory>

namespace PhoneBackup {

//! A calendar; until iOS 12 a list of reminders, too.
struct EventCalendar
{
    enum class Sharing { NotShared, ByOwner, WithOwner };

    qint64 id = 0; //!< Number of its row.
    QString uuid;
    QString title;
    QString color; //!< "#RRGGBB".
    QString account; //!< The name of the account that it belongs to.
    QString notes;
    Sharing sharing = Sharing::NotShared;
};

//! An event of the calendar.
struct Event
{
    enum class Status { None, Confirmed, Tentative, Cancelled };
    enum class Availability { Busy, Free, Tentative, Away };

    qint64 id = 0; //!< Number of its row.
    QString uuid; //!< The same in every backup, where there is one.
    QString title;
    QString description;
    std::shared_ptr<const EventCalendar> calendar; //!< Null when it is not known.
    std::unique_ptr<Place> place; //!< Null without one.
    PlannedTime start;
    PlannedTime end;
    bool isAllDay = false;
    PlannedTime replaces; //!< The occurrence of a repeated event that this one stands for.
    qint64 replacesIn = 0; //!< Number of that event, 0 for none.
    Status status = Status::None;
    Availability availability = Availability::Busy;
    bool isPrivate = false;
    qint64 travelSeconds = 0;
    QDateTime created;
    QDateTime modified;
    std::unique_ptr<PlannedDetails> details; //!< Null when there are none.
};

} // namespace PhoneBackup

#endif
