#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "safari.bookmarksMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport", "Bookmarks may be missing.") },
    { "safari.noBookmarks",
      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of bookmarks.") },
    { "safari.pagesMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport", "Part of the browsing history may be missing.") },
    { "safari.noPages",
      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of visited pages.") },
    { "safari.damagedPropertyList",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "The property list is damaged or missing. Part of the browsing history is missing.") },
    { "safari.notInPlainBackups",
      QT_TRANSLATE_NOOP("DataExport",
                        "Since iOS 13, phones store the browsing history in encrypted backups "
                        "only, and this backup is not encrypted.") },
};

} // namespace

std::span<const NoticeWords> safariNotices()
{
    return kNotices;
}

} // namespace PhoneItems
