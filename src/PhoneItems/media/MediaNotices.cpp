#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

#include <array>

namespace PhoneItems {

std::span<const NoticeWords> mediaNotices()
{
    static constexpr std::array kWords {
        NoticeWords { "media.noPhotoTable",
                      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of photos.") },
        NoticeWords { "media.bookPartsMissing",
                      QT_TRANSLATE_NOOP("DataExport",
                                        "%1 of the book's files could not be read and are missing "
                                        "from the copy, including “%2”.") },
        NoticeWords {
            "media.noBookFiles",
            QT_TRANSLATE_NOOP("DataExport", "None of the book's files is in the backup.") },
    };
    return kWords;
}

} // namespace PhoneItems
