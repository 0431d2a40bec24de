#ifndef PHONEBACKUP_MODEL_WIREFIELDS_H
#define PHONEBACKUP_MODEL_WIREFIELDS_H

#include <QByteArrayView>

/*!
    Records of numbered fields in the protocol-buffer wire format, as apps store them in columns.
    Lengths and numbers are checked; what does not fit ends the record.
*/
namespace PhoneBackup::WireFields {

//! Whether \a record, which is not empty, consists of whole fields from its beginning to its end.
bool areComplete(QByteArrayView record);

//! The bytes of the first field \a number that holds bytes; empty when there is none.
QByteArrayView bytes(QByteArrayView record, quint64 number);

} // namespace PhoneBackup::WireFields

#endif
