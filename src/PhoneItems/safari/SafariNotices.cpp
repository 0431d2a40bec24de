#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "safari.bookmarksMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport", "Bookmarks may be missing.") },
    { "safari.noBookmarks",
      QT_TRANSLATE_NOOP("DataExport", "It has no table of bookmarks that can be read.") },
    { "safari.pagesMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport", "Pages of the history may be missing.") },
    { "safari.noPages",
      QT_TRANSLATE_NOOP("DataExport", "It has no table of visited pages that can be read.") },
    { "safari.damagedPropertyList",
      QT_TRANSLATE_NOOP("DataExport",
                        "The property list is damaged or missing. Pages of the history are "
                        "missing.") },
    { "safari.notInPlainBackups",
      QT_TRANSLATE_NOOP("DataExport",
                        "Phones with iOS 13 or later put the web history into encrypted backups "
                        "only, and this one is not encrypted.") },
};

} // namespace

std::span<const NoticeWords> safariNotices()
{
    return kNotices;
}

} // namespace PhoneItems
