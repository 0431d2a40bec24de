#ifndef PHONEBACKUP_PLIST_XMLPROPERTYLIST_H
#define PHONEBACKUP_PLIST_XMLPROPERTYLIST_H

#include <QByteArray>
#include <QVariant>

namespace PhoneBackup {

/*!
    The root of the XML property list \a data with all that it holds, as PropertyList describes it;
    an invalid QVariant when \a data is none.

    UTF-8 only. Nothing outside of \a data is ever looked at, and a document type that declares
    something of its own makes it none. Time and memory are linear in the size of \a data.
*/
QVariant readXmlPropertyList(const QByteArray &data);

} // namespace PhoneBackup

#endif
