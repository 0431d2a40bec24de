#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "messages.mayBeMissing", QT_TRANSLATE_NOOP("DataExport", "Messages may be missing.") },
    { "messages.noTable", QT_TRANSLATE_NOOP("DataExport", "It has no table “%1”.") },
    { "messages.noMessages",
      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of messages.") },
    { "messages.noAttachments",
      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of attachments.") },
    { "messages.textTooLong",
      QT_TRANSLATE_NOOP("DataExport",
                        "The text of some messages is too long and has been cut off.") },
    { "messages.textDamaged",
      QT_TRANSLATE_NOOP("DataExport",
                        "The text of some messages is damaged and could not be read.") },
    { "messages.neverDownloaded",
      QT_TRANSLATE_NOOP("DataExport", "The file was never downloaded to the phone.") },
    { "messages.soundExpired",
      QT_TRANSLATE_NOOP("DataExport",
                        "The voice message has expired; the phone no longer has its sound.") },
    { "messages.fileMissing",
      QT_TRANSLATE_NOOP("DataExport", "The file “%1” is missing from the backup.") },
};

} // namespace

std::span<const NoticeWords> messageNotices()
{
    return kNotices;
}

} // namespace PhoneItems
