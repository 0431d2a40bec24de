#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

#include <array>

namespace PhoneItems {

std::span<const NoticeWords> whatsappNotices()
{
    static constexpr std::array kWords {
        NoticeWords { "whatsapp.chatsMayBeMissing",
                      QT_TRANSLATE_NOOP("DataExport", "Chats and messages may be missing.") },
        NoticeWords {
            "whatsapp.noMessages",
            QT_TRANSLATE_NOOP("DataExport", "It has no table of messages that can be read.") },
        NoticeWords { "whatsapp.noMessageColumn",
                      QT_TRANSLATE_NOOP("DataExport", "Its messages have no column %1.") },
        NoticeWords {
            "whatsapp.noChats",
            QT_TRANSLATE_NOOP("DataExport", "It has no table of chats that can be read.") },
        NoticeWords { "whatsapp.callsMayBeMissing",
                      QT_TRANSLATE_NOOP("DataExport", "Calls may be missing.") },
        NoticeWords {
            "whatsapp.noCalls",
            QT_TRANSLATE_NOOP("DataExport", "It has no table of calls that can be read.") },
        NoticeWords { "whatsapp.callNamesMayBeMissing",
                      QT_TRANSLATE_NOOP("DataExport",
                                        "Names of people and groups in calls may be missing.") },
        NoticeWords { "whatsapp.fileMissing",
                      QT_TRANSLATE_NOOP("DataExport", "The file “%1” is missing in the backup.") },
        NoticeWords {
            "whatsapp.neverDownloaded",
            QT_TRANSLATE_NOOP("DataExport", "The file was never downloaded to the phone.") },
    };
    return kWords;
}

} // namespace PhoneItems
