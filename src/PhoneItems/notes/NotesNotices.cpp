#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "notes.mayBeMissing", QT_TRANSLATE_NOOP("DataExport", "Notes may be missing.") },
    { "notes.noTable", QT_TRANSLATE_NOOP("DataExport", "It has no readable table of notes.") },
    { "notes.noTexts", QT_TRANSLATE_NOOP("DataExport", "It has no readable table of texts.") },
    { "notes.tableDamaged",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "The table is damaged, locked or too long; some of its cells may be missing.") },
    { "notes.unreadable",
      QT_TRANSLATE_NOOP("DataExport", "The text of the note is damaged and cannot be read.") },
    { "notes.cut",
      QT_TRANSLATE_NOOP("DataExport",
                        "The record of the note is damaged or too long; the end of its text may "
                        "be missing.") },
    { "notes.lockedFiles",
      QT_TRANSLATE_NOOP("DataExport", "Files of locked notes cannot be read and are left out.") },
    { "notes.neverDownloaded",
      QT_TRANSLATE_NOOP("DataExport", "The file was never downloaded to the phone.") },
};

} // namespace

std::span<const NoticeWords> notesNotices()
{
    return kNotices;
}

} // namespace PhoneItems
