#ifndef PHONEBACKUP_PLANNER_CALENDARDETAILS_H
#define PHONEBACKUP_PLANNER_CALENDARDETAILS_H

#include "PhoneBackup/planner/Planned.h"

#include <QHash>

#include <memory>
#include <unordered_map>

namespace PhoneBackup {

class RowDatabase;

//! What belongs to the items of the calendar database: read once, found by the item's number.
class CalendarDetails
{
public:
    explicit CalendarDetails(RowDatabase &database);

    //! What belongs to item \a id, null when nothing does. To be asked once for each item.
    std::unique_ptr<PlannedDetails> take(qint64 id);

    //! The place with this number, null when there is none.
    std::unique_ptr<Place> place(qint64 number) const;

private:
    void readPlaces();
    void readRepeats();
    void readGuests();
    void readAlarms();
    void readFiles();

    RowDatabase &m_database;
    std::unordered_map<qint64, PlannedDetails> m_details;
    QHash<qint64, Place> m_places;
    QHash<qint64, qint64> m_placesOfAlarms; // numbers of places
};

} // namespace PhoneBackup

#endif
