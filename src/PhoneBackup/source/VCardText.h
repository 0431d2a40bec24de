#ifndef PHONEBACKUP_SOURCE_VCARDTEXT_H
#define PHONEBACKUP_SOURCE_VCARDTEXT_H

#include <QByteArrayView>
#include <QStringList>

namespace PhoneBackup {

//! The value of the first property \a name (capital letters) of \a card, empty when it has none.
QString vCardText(QByteArrayView card, QByteArrayView name);

//! The values of all properties \a name (capital letters) of \a card, empty ones left out.
QStringList vCardTexts(QByteArrayView card, QByteArrayView name);

} // namespace PhoneBackup

#endif
