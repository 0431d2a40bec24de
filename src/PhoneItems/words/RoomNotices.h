#ifndef PHONEITEMS_WORDS_ROOMNOTICES_H
#define PHONEITEMS_WORDS_ROOMNOTICES_H

#include "PhoneItems/words/Words.h"

namespace PhoneItems {

// The sentences of each room, defined in a file of its own: those of the folders below the rooms
// lie here, and those of a room in its own folder. Words.cpp lists all of them.
std::span<const NoticeWords> formatNotices(); //!< base, sqlite, plist, crypto
std::span<const NoticeWords> folderNotices();
std::span<const NoticeWords> callNotices(); //!< voicemail, too
std::span<const NoticeWords> mediaNotices();
std::span<const NoticeWords> notesNotices();
std::span<const NoticeWords> messageNotices();
std::span<const NoticeWords> plannerNotices();
std::span<const NoticeWords> safariNotices();
std::span<const NoticeWords> contactNotices();
std::span<const NoticeWords> whatsappNotices();
std::span<const NoticeWords> sourceNotices();

} // namespace PhoneItems

#endif
