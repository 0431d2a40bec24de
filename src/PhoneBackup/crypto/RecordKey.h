#ifndef PHONEBACKUP_CRYPTO_RECORDKEY_H
#define PHONEBACKUP_CRYPTO_RECORDKEY_H

#include "PhoneBackup/crypto/Secret.h"

#include <QByteArray>

namespace PhoneBackup {

//! The key of the records in an index of system version 10.0: its index is plain, but for them.
class RecordKey
{
public:
    RecordKey(const Secret &password, QByteArrayView salt);

    //! The property list in \a stored, which may be one already; \a stored when it holds none.
    QByteArray open(const QByteArray &stored) const;

private:
    QByteArray decrypted(const QByteArray &bytes) const;

    Secret m_key;
};

} // namespace PhoneBackup

#endif
