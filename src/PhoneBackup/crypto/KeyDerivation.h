#ifndef PHONEBACKUP_CRYPTO_KEYDERIVATION_H
#define PHONEBACKUP_CRYPTO_KEYDERIVATION_H

#include "PhoneBackup/crypto/Secret.h"

#include <functional>

//! Keys from passwords: PBKDF2 with HMAC (RFC 8018).
namespace PhoneBackup::KeyDerivation {

enum class Digest { Sha1, Sha256 };

//! Bytes of every key here.
inline constexpr qsizetype kKeyBytes = 32;

//! Asked now and then with the rounds done since it was asked last; false stops the derivation.
using Progress = std::function<bool(qint64 rounds)>;

//! Rounds that key() does for \a iterations: those of each block that the key is made of.
qint64 roundsOf(Digest digest, quint32 iterations);

/*!
    The key of \a password, \a salt and \a iterations (at least 1); empty when \a progress, which
    may be null, stopped it.
*/
Secret key(Digest digest,
           QByteArrayView password,
           QByteArrayView salt,
           quint32 iterations,
           const Progress &progress);

} // namespace PhoneBackup::KeyDerivation

#endif
