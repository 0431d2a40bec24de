#ifndef ARCHIVE_LISTS_SAFARIPAGES_H
#define ARCHIVE_LISTS_SAFARIPAGES_H

#include "Archive/lists/Listing.h"
#include "Archive/records/RecordTaker.h"

namespace Archive {

//! Bookmarks and the reading list by folder, and visits by day.
class SafariPages final : public TakerOf<SafariPages>
{
public:
    //! \a site is borrowed.
    explicit SafariPages(Site &site);

    void take(const PhoneBackup::Bookmark &bookmark);
    void take(const PhoneBackup::VisitedPage &page);

    //! Writes the pages.
    void finish();

private:
    Site &m_site;
    Listing m_bookmarks;
    Listing m_history;
    std::vector<std::pair<QString, std::vector<Listing::Entry>>> m_folders;
};

} // namespace Archive

#endif
