#ifndef PHONEBACKUP_PLIST_BINARYPLISTCHECK_H
#define PHONEBACKUP_PLIST_BINARYPLISTCHECK_H

#include <QByteArrayView>

namespace PhoneBackup {

/*!
    Whether the binary property list \a data can be expanded into a tree without harm: no cycle, no
    deep nesting, and no few bytes that unfold into gigabytes because many references share them.
    Says nothing about the values themselves.
*/
bool isExpandableBinaryPlist(QByteArrayView data);

//! The same for the nesting of an XML property list.
bool isExpandableXmlPlist(QByteArrayView data);

} // namespace PhoneBackup

#endif
