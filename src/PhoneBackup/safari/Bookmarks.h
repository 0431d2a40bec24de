#ifndef PHONEBACKUP_SAFARI_BOOKMARKS_H
#define PHONEBACKUP_SAFARI_BOOKMARKS_H

namespace PhoneBackup {

class SafariData;
class Source;

//! Adds the bookmarks of \a source and its reading list to \a data, in their stored order; each
//! bookmark belongs to the folder that it lies in directly.
void readBookmarks(Source &source, SafariData &data);

} // namespace PhoneBackup

#endif
