#ifndef PHONEBACKUP_SOURCE_STOREDTEXT_H
#define PHONEBACKUP_SOURCE_STOREDTEXT_H

#include <QString>

namespace PhoneBackup {

//! Texts as the phone's databases hold them.
namespace StoredText {

/*!
    \a text as it is shown: without the places of files and apps (U+FFFC, U+FFFD) and without
    control characters; line ends are line feeds.
*/
QString cleaned(const QString &text);

//! The first \a longest characters of \a text; one less where they would end inside a pair.
QString beginning(const QString &text, qsizetype longest);
QStringView beginning(QStringView text, qsizetype longest);

} // namespace StoredText

} // namespace PhoneBackup

#endif
