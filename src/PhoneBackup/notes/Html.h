#ifndef PHONEBACKUP_NOTES_HTML_H
#define PHONEBACKUP_NOTES_HTML_H

#include <QString>

//! The parts that HTML consists of, as far as notes have them.
namespace PhoneBackup::Html {

//! Appends the character of the entity at the front of \a text, an ampersand, to \a out.
//! \return how long the entity is, 0 when it is none.
qsizetype decodeEntity(QStringView text, QString &out);

//! \a text with its entities decoded.
QString decoded(QStringView text);

//! Where the tag at the front of \a text ends: a ">" in quotes is none. -1 when it does not.
qsizetype tagEnd(QStringView text);

//! The value of the attribute \a name in \a tag, which has no brackets; empty when it has none.
QString attribute(QStringView tag, QStringView name);

} // namespace PhoneBackup::Html

#endif
