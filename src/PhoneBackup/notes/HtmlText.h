#ifndef PHONEBACKUP_NOTES_HTMLTEXT_H
#define PHONEBACKUP_NOTES_HTMLTEXT_H

#include <QString>

namespace PhoneBackup {

/*!
    The text of \a html as a person reads it: a line for each block and line break, marks and
    numbers for the items of lists, targets behind links, names for pictures. Scripts and styles are
    left out. A text without any tag is returned as it is, its entities decoded. Never fails; time
    is linear.
*/
QString textOfHtml(const QString &html);

} // namespace PhoneBackup

#endif
