#ifndef ARCHIVE_LISTS_PLANNERPAGES_H
#define ARCHIVE_LISTS_PLANNERPAGES_H

#include "Archive/lists/Listing.h"
#include "Archive/records/RecordTaker.h"

#include <map>

namespace PhoneBackup {
struct PlannedDetails;
}

namespace Archive {

//! Events by month and reminders by list.
class PlannerPages final : public TakerOf<PlannerPages>
{
public:
    //! \a site is borrowed.
    explicit PlannerPages(Site &site);

    void take(const PhoneBackup::Event &event);
    void take(const PhoneBackup::Reminder &reminder);

    //! Writes the pages.
    void finish();

private:
    struct Planned
    {
        Listing::Entry entry;
        QString group;
    };

    Listing m_events;
    Listing m_reminders;
    std::vector<Planned> m_calendar;
    std::vector<std::pair<QString, std::vector<Planned>>> m_lists;
};

} // namespace Archive

#endif
