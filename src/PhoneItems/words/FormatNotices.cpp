#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "base.stopped", QT_TRANSLATE_NOOP("DataExport", "Stopped on request.") },
    { "base.unreadable", QT_TRANSLATE_NOOP("DataExport", "“%1” could not be read: %2.") },
    { "temporary.notMade",
      QT_TRANSLATE_NOOP("DataExport",
                        "No temporary folder could be made in “%1”: %2. Set the environment "
                        "variable TMPDIR to a folder with free space.") },
    { "temporary.inBackup", QT_TRANSLATE_NOOP("DataExport", "it lies in the backup") },
    { "temporary.notLocked", QT_TRANSLATE_NOOP("DataExport", "it cannot be locked") },
    { "temporary.tooSmall",
      QT_TRANSLATE_NOOP("DataExport",
                        "The temporary folder “%1” has too little room: %2 are needed, %3 are "
                        "free. Set the environment variable TMPDIR to a folder with more.") },
    { "temporary.notWritten",
      QT_TRANSLATE_NOOP("DataExport",
                        "The temporary folder “%1” could not be written: %2. Set the environment "
                        "variable TMPDIR to a folder with free space.") },
};

} // namespace

std::span<const NoticeWords> formatNotices()
{
    return kNotices;
}

} // namespace PhoneItems
