#ifndef PHONEBACKUP_PLIST_BINARYPROPERTYLIST_H
#define PHONEBACKUP_PLIST_BINARYPROPERTYLIST_H

#include <QByteArrayView>
#include <QVariant>

namespace PhoneBackup {

/*!
    The root of the binary property list \a data with all that it holds, as PropertyList describes
    it; an invalid QVariant when \a data is damaged or larger than it may be once unfolded.

    An object that several others refer to is read once, and they share it. Time and memory are
    linear in the size of \a data.
*/
QVariant readBinaryPropertyList(QByteArrayView data);

} // namespace PhoneBackup

#endif
