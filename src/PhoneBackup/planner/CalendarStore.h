#ifndef PHONEBACKUP_PLANNER_CALENDARSTORE_H
#define PHONEBACKUP_PLANNER_CALENDARSTORE_H

#include "PhoneBackup/planner/Event.h"
#include "PhoneBackup/source/RowDatabase.h"

#include <QHash>

#include <functional>
#include <optional>

namespace PhoneBackup {

//! The phone's calendar database: its events, and until iOS 12 the reminders.
class CalendarStore
{
public:
    enum class Kind { Event, Reminder };

    //! A row of either kind: a reminder has the facts of an event, and these.
    struct Item
    {
        Event event;
        PlannedTime due;
        QDateTime completed;
        bool isCompleted = false;
        qint64 priority = 0; //!< \see Reminder
    };

    //! None when the backup has no calendar. Problems belong to \a dataType, and end in
    //! \a consequence.
    static std::optional<CalendarStore>
    open(Source &source, int dataType, const Notice &consequence);

    //! Calls \a item for each item of \a kind, in the order of the store. Birthdays made from
    //! contacts are left out.
    void read(Kind kind, const std::function<void(Item &&)> &item);

private:
    explicit CalendarStore(RowDatabase &&database);

    void readCalendars();

    RowDatabase m_database;
    QHash<qint64, std::shared_ptr<const EventCalendar>> m_calendars;
};

} // namespace PhoneBackup

#endif
