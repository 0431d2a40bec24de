#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "folder.copyAgain",
      QT_TRANSLATE_NOOP("DataExport",
                        "Copy the backup again from where it was made, or make a new one.") },
    { "folder.indexDamaged",
      QT_TRANSLATE_NOOP("DataExport", "The index “Manifest.db” is damaged.") },
    { "folder.indexEncrypted",
      QT_TRANSLATE_NOOP("DataExport",
                        "The index “Manifest.db” is encrypted and cannot be read. %1 Copy the "
                        "backup again from where it was made, or make a new one.") },
    { "folder.databaseUnreadable",
      QT_TRANSLATE_NOOP("DataExport", "The database “%1” cannot be read. %2") },
};

} // namespace

std::span<const NoticeWords> folderNotices()
{
    return kNotices;
}

} // namespace PhoneItems
