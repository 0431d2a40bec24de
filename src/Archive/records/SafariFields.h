#ifndef ARCHIVE_RECORDS_SAFARIFIELDS_H
#define ARCHIVE_RECORDS_SAFARIFIELDS_H

#include "Archive/records/FieldWriter.h"
#include "PhoneBackup/safari/Bookmark.h"
#include "PhoneBackup/safari/VisitedPage.h"

namespace Archive {

template <>
inline constexpr std::array kNames<PhoneBackup::BookmarkFolder::Kind> {
    "", "root", "favorites", "menu", "readingList", "allowList"
};

inline void fields(FieldWriter &field, const PhoneBackup::BookmarkFolder &folder)
{
    field("id", folder.uuid);
    field("row", folder.id, 0);
    field("kind", folder.kind);
    field("title", folder.title);
    field("modified", folder.modified);
    field("deleted", folder.deleted);
}

inline void fields(FieldWriter &field, const PhoneBackup::ReadingListEntry &entry)
{
    field("read", entry.isRead);
    field("preview", entry.preview);
    field("picture", entry.picture);
    field("added", entry.added);
    field("viewed", entry.viewed);
    field("fetched", entry.fetched);
    field("saved", entry.isSaved);
}

inline void fields(FieldWriter &field, const PhoneBackup::Bookmark &bookmark)
{
    // From the outermost one on; deeper ones than a person makes are damage that repeats itself.
    constexpr std::size_t kMostFolders = 64;
    std::vector<std::reference_wrapper<const PhoneBackup::BookmarkFolder>> folders;
    for (const auto *folder = bookmark.folder; folder != nullptr && folders.size() < kMostFolders;
         folder = folder->parent)
        folders.insert(folders.begin(), *folder);
    field("id", bookmark.uuid);
    field("row", bookmark.id, 0);
    field("title", bookmark.title);
    field("address", bookmark.address);
    field("folders", folders);
    field("modified", bookmark.modified);
    field("deleted", bookmark.deleted);
    field("isReadLater", bookmark.readLater != nullptr);
    field("readLater", bookmark.readLater);
}

inline void fields(FieldWriter &field, const PhoneBackup::VisitedPage &page)
{
    field("row", page.id, -1);
    field("title", page.title);
    field("address", page.address);
    field("visited", page.visited);
    field("visits", page.visits);
    field("knownVisits", page.knownVisits, 0);
}

} // namespace Archive

#endif
