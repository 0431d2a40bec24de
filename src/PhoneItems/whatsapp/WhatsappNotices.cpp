#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

#include <array>

namespace PhoneItems {

std::span<const NoticeWords> whatsappNotices()
{
    static constexpr std::array kWords {
        NoticeWords { "whatsapp.chatsMayBeMissing",
                      QT_TRANSLATE_NOOP("DataExport", "Chats and messages may be missing.") },
        NoticeWords { "whatsapp.noMessages",
                      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of messages.") },
        NoticeWords { "whatsapp.noMessageColumn",
                      QT_TRANSLATE_NOOP("DataExport", "Its messages have no column %1.") },
        NoticeWords { "whatsapp.noChats",
                      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of chats.") },
        NoticeWords { "whatsapp.callsMayBeMissing",
                      QT_TRANSLATE_NOOP("DataExport", "Calls may be missing.") },
        NoticeWords { "whatsapp.noCalls",
                      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of calls.") },
        NoticeWords { "whatsapp.callNamesMayBeMissing",
                      QT_TRANSLATE_NOOP("DataExport",
                                        "Names of people and groups may be missing from calls.") },
        NoticeWords {
            "whatsapp.fileMissing",
            QT_TRANSLATE_NOOP("DataExport", "The file “%1” is missing from the backup.") },
        NoticeWords {
            "whatsapp.neverDownloaded",
            QT_TRANSLATE_NOOP("DataExport", "The file was never downloaded to the phone.") },
    };
    return kWords;
}

} // namespace PhoneItems
