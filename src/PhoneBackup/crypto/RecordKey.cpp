#include "PhoneBackup/crypto/RecordKey.h"

#include <openssl/err.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <memory>

namespace PhoneBackup {

namespace {

constexpr qsizetype kKeyBytes = 16;

bool isPropertyList(const QByteArray &bytes)
{
    return bytes.startsWith("bplist");
}

struct FreeContext
{
    void operator()(EVP_CIPHER_CTX *context) const { EVP_CIPHER_CTX_free(context); }
};

} // namespace

RecordKey::RecordKey(const Secret &password, QByteArrayView salt)
    : m_key(kKeyBytes)
{
    Secret salted(password.size() + salt.size());
    std::copy_n(password.data(), password.size(), salted.data());
    std::copy(salt.begin(), salt.end(), salted.data() + password.size());
    std::array<uchar, EVP_MAX_MD_SIZE> digest {};
    EVP_Digest(
        salted.data(), std::size_t(salted.size()), digest.data(), nullptr, EVP_sha1(), nullptr);
    std::copy_n(digest.data(), kKeyBytes, m_key.data());
    Secret::wipe(digest.data(), qsizetype(digest.size()));
}

QByteArray RecordKey::open(const QByteArray &stored) const
{
    if (isPropertyList(stored))
        return stored;
    // Some of these records are written as text.
    for (const QByteArray &bytes : { stored, QByteArray::fromBase64(stored) }) {
        QByteArray plain = decrypted(bytes);
        if (isPropertyList(plain))
            return plain;
    }
    return stored;
}

QByteArray RecordKey::decrypted(const QByteArray &bytes) const
{
    static constexpr std::array<uchar, 16> kVector { 0, 1, 2,  3,  4,  5,  6,  7,
                                                     8, 9, 10, 11, 12, 13, 14, 15 };
    const std::unique_ptr<EVP_CIPHER_CTX, FreeContext> context(EVP_CIPHER_CTX_new());
    QByteArray plain(bytes.size() + qsizetype(kVector.size()), Qt::Uninitialized);
    auto *out = reinterpret_cast<uchar *>(plain.data());
    int size = 0;
    int rest = 0;
    const bool ok =
        EVP_DecryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, m_key.data(), kVector.data())
            == 1
        && EVP_DecryptUpdate(context.get(),
                             out,
                             &size,
                             reinterpret_cast<const uchar *>(bytes.constData()),
                             int(bytes.size()))
            == 1
        && EVP_DecryptFinal_ex(context.get(), out + size, &rest) == 1;
    ERR_clear_error();
    return ok ? plain.first(size + rest) : QByteArray();
}

} // namespace PhoneBackup
