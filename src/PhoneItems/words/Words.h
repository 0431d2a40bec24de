#ifndef PHONEITEMS_WORDS_WORDS_H
#define PHONEITEMS_WORDS_WORDS_H

#include "PhoneBackup/base/Notice.h"

#include <QByteArrayView>
#include <QString>

#include <span>

namespace PhoneItems {

//! The words of one sentence that the reader tells by its code: "%1" to "%9" are its facts.
struct NoticeWords
{
    const char *code;
    const char *text; //!< In English, marked with QT_TRANSLATE_NOOP("DataExport", …).
};

//! All sentences, room by room.
std::span<const std::span<const NoticeWords>> allNoticeWords();

//! \a notice for a person, in the user's language: its sentences, a blank between them.
QString words(const PhoneBackup::Notice &notice);

} // namespace PhoneItems

#endif
