#ifndef ARCHIVE_LISTS_CALLPAGES_H
#define ARCHIVE_LISTS_CALLPAGES_H

#include "Archive/lists/Listing.h"
#include "Archive/media/Persons.h"
#include "Archive/records/RecordTaker.h"

namespace Archive {

//! Calls by month, the newest first.
class CallPages final : public TakerOf<CallPages>
{
public:
    //! Both are borrowed.
    CallPages(Site &site, Persons &persons);

    void take(const PhoneBackup::Call &call);

    //! Writes the pages.
    void finish();

private:
    struct Call
    {
        Listing::Entry entry;
        QStringList addresses;
    };

    Site &m_site;
    Persons &m_persons;
    Listing m_list;
    std::vector<Call> m_calls;
    int m_missed = 0;
};

} // namespace Archive

#endif
