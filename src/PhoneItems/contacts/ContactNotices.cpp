#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "contacts.mayBeMissing", QT_TRANSLATE_NOOP("DataExport", "Contacts may be missing.") },
    { "contacts.unknownKinds",
      QT_TRANSLATE_NOOP("DataExport", "Entries of unknown kinds were left out: %1.") },
    { "contacts.birthdayNoDate",
      QT_TRANSLATE_NOOP("DataExport", "The birthday “%1” is not a valid date.") },
    { "contacts.valueNoDate", QT_TRANSLATE_NOOP("DataExport", "“%1” is not a valid date.") },
    { "contacts.entryUnreadable", QT_TRANSLATE_NOOP("DataExport", "An entry could not be read.") },
    { "contacts.partUnreadable",
      QT_TRANSLATE_NOOP("DataExport", "Part of an address or account could not be read.") },
    { "contacts.tooManyOfAKind",
      QT_TRANSLATE_NOOP("DataExport", "Only %2 of %1 entries of one kind are exported.") },
    { "contacts.textTooLong",
      QT_TRANSLATE_NOOP("DataExport", "A text was too long and has been cut off.") },
    { "contacts.photosMayBeMissing",
      QT_TRANSLATE_NOOP("DataExport", "Photos of contacts may be missing.") },
    { "contacts.noPictures",
      QT_TRANSLATE_NOOP("DataExport", "It has no readable table of pictures.") },
    { "contacts.photoUnreadable",
      QT_TRANSLATE_NOOP("DataExport",
                        "The photo is not a picture, is too large, or could not be read.") },
};

} // namespace

std::span<const NoticeWords> contactNotices()
{
    return kNotices;
}

} // namespace PhoneItems
