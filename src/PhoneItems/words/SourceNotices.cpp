#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "source.stopped",
      QT_TRANSLATE_NOOP("DataExport", "Reading was stopped on request; lists may be incomplete.") },
    { "source.damaged", QT_TRANSLATE_NOOP("DataExport", "It is damaged: %1.") },
    { "source.endlessRows",
      QT_TRANSLATE_NOOP("DataExport", "It is damaged: its rows repeat endlessly.") },
    { "source.noOrdinaryTable",
      QT_TRANSLATE_NOOP("DataExport", "It is damaged: “%1” is not an ordinary table.") },
    { "source.filesStay",
      QT_TRANSLATE_NOOP("DataExport", "The files it refers to are exported anyway.") },
    { "source.namesMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport",
                        "Names, dates and deletion marks stored in it may be missing; the files "
                        "themselves are exported.") },
    { "source.peopleMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport", "People's names may be missing.") },
    { "source.noPropertyList",
      QT_TRANSLATE_NOOP("DataExport",
                        "The property list is damaged or missing. Files are exported under the "
                        "names they have on the phone.") },
};

} // namespace

std::span<const NoticeWords> sourceNotices()
{
    return kNotices;
}

} // namespace PhoneItems
