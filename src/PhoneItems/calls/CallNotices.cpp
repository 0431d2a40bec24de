#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "calls.mayBeMissing", QT_TRANSLATE_NOOP("DataExport", "Calls may be missing.") },
    { "calls.noTable", QT_TRANSLATE_NOOP("DataExport", "It has no readable table of calls.") },
    { "calls.notInPlainBackups",
      QT_TRANSLATE_NOOP("DataExport",
                        "Since iOS 13, phones store calls in encrypted backups only, and this "
                        "backup is not encrypted.") },
    { "voicemail.noTable",
      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of voicemail.") },
};

} // namespace

std::span<const NoticeWords> callNotices()
{
    return kNotices;
}

} // namespace PhoneItems
