#ifndef PHONEBACKUP_SAFARI_BOOKMARKS_H
#define PHONEBACKUP_SAFARI_BOOKMARKS_H

#include "PhoneBackup/safari/Bookmark.h"

#include <functional>

namespace PhoneBackup {

class Source;

/*!
    Calls \a bookmark for each bookmark of \a source and each entry of its reading list, folder by
    folder in their stored order. Folders last until this returns.
*/
void readBookmarks(Source &source, const std::function<void(const Bookmark &)> &bookmark);

} // namespace PhoneBackup

#endif
