#ifndef PHONEBACKUP_MODEL_VCARDTEXT_H
#define PHONEBACKUP_MODEL_VCARDTEXT_H

#include <QByteArrayView>
#include <QString>

namespace PhoneBackup {

//! The value of the first property \a name (capital letters) of \a card, empty when it has none.
QString vCardText(QByteArrayView card, QByteArrayView name);

} // namespace PhoneBackup

#endif
