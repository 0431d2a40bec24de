#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "contacts.mayBeMissing", QT_TRANSLATE_NOOP("DataExport", "Contacts may be missing.") },
    { "contacts.damaged", QT_TRANSLATE_NOOP("DataExport", "It is damaged: %1.") },
    { "contacts.unknownKinds",
      QT_TRANSLATE_NOOP("DataExport", "Entries of a kind that is not known were left out: %1.") },
    { "contacts.birthdayNoDate", QT_TRANSLATE_NOOP("DataExport", "The birthday “%1” is no date.") },
    { "contacts.valueNoDate", QT_TRANSLATE_NOOP("DataExport", "“%1” is no date.") },
    { "contacts.entryUnreadable", QT_TRANSLATE_NOOP("DataExport", "An entry could not be read.") },
    { "contacts.partUnreadable",
      QT_TRANSLATE_NOOP("DataExport", "Part of an address or account could not be read.") },
    { "contacts.tooManyOfAKind",
      QT_TRANSLATE_NOOP("DataExport", "Of %1 entries of one kind only %2 are exported.") },
    { "contacts.textTooLong",
      QT_TRANSLATE_NOOP("DataExport", "A text is too long; its end is left out.") },
    { "contacts.photosMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport", "Photos of contacts may be missing.") },
    { "contacts.noPictures",
      QT_TRANSLATE_NOOP("DataExport", "It has no table of pictures that can be read.") },
    { "contacts.photoUnreadable",
      QT_TRANSLATE_NOOP("DataExport",
                        "The photo is no picture, too large, or could not be read.") },
};

} // namespace

std::span<const NoticeWords> contactNotices()
{
    return kNotices;
}

} // namespace PhoneItems
