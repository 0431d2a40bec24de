#ifndef PHONEBACKUP_CRYPTO_CLASSKEYS_H
#define PHONEBACKUP_CRYPTO_CLASSKEYS_H

#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/crypto/Secret.h"

#include <map>

namespace PhoneBackup {

//! The keys of the protection classes, which open the keys of the files.
class ClassKeys
{
public:
    void insert(int protectionClass, Secret key);
    bool isEmpty() const { return m_keys.empty(); }

    /*!
        The key that \a wrapped holds: 4 bytes with the number of its class, least first, and 40
        bytes of the key itself. Fault::Locked when there is no key of that class, Fault::Corrupt
        when the bytes are damaged; the error's sentence begins with "it", the file that the key is
        of.
    */
    Result<Secret> unwrap(QByteArrayView wrapped) const;

private:
    std::map<int, Secret> m_keys;
};

} // namespace PhoneBackup

#endif
