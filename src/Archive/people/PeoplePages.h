#ifndef ARCHIVE_PEOPLE_PEOPLEPAGES_H
#define ARCHIVE_PEOPLE_PEOPLEPAGES_H

#include "Archive/lists/Listing.h"
#include "Archive/media/Persons.h"
#include "Archive/records/RecordTaker.h"

namespace Archive {

//! The address book by letter. Comes last: cards lead to what else there is of a person.
class PeoplePages final : public TakerOf<PeoplePages>
{
public:
    //! Both are borrowed.
    PeoplePages(Site &site, Persons &persons);

    void take(const Person &person);

    //! Writes the pages.
    void finish() { m_list.finish(); }

private:
    Persons &m_persons;
    Listing m_list;
};

} // namespace Archive

#endif
