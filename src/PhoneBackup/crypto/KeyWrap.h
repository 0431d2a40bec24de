#ifndef PHONEBACKUP_CRYPTO_KEYWRAP_H
#define PHONEBACKUP_CRYPTO_KEYWRAP_H

#include "PhoneBackup/crypto/Secret.h"

//! Keys that are kept encrypted by other keys: AES-256 key wrap (RFC 3394).
namespace PhoneBackup::KeyWrap {

//! Bytes of a wrapped key of 32 bytes.
inline constexpr qsizetype kWrappedBytes = 40;

/*!
    The key of 32 bytes that \a wrapped holds under \a wrappingKey. Empty when either has another
    length, and when the integrity check fails: the wrapping key is not the right one, or the bytes
    are damaged.
*/
Secret unwrap(const Secret &wrappingKey, QByteArrayView wrapped);

} // namespace PhoneBackup::KeyWrap

#endif
