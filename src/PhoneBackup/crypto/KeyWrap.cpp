#include "PhoneBackup/crypto/KeyWrap.h"

#include <openssl/err.h>
#include <openssl/evp.h>

#include <memory>

namespace PhoneBackup::KeyWrap {

namespace {

constexpr qsizetype kKeyBytes = 32;

struct FreeContext
{
    void operator()(EVP_CIPHER_CTX *context) const { EVP_CIPHER_CTX_free(context); }
};

} // namespace

Secret unwrap(const Secret &wrappingKey, QByteArrayView wrapped)
{
    if (wrappingKey.size() != kKeyBytes || wrapped.size() != kWrappedBytes)
        return {};
    const std::unique_ptr<EVP_CIPHER_CTX, FreeContext> context(EVP_CIPHER_CTX_new());
    Secret key(kWrappedBytes); // the library may use the room of the check value, too
    int size = 0;
    EVP_CIPHER_CTX_set_flags(context.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
    const bool ok =
        EVP_DecryptInit_ex(context.get(), EVP_aes_256_wrap(), nullptr, wrappingKey.data(), nullptr)
            == 1
        && EVP_DecryptUpdate(context.get(),
                             key.data(),
                             &size,
                             reinterpret_cast<const uchar *>(wrapped.data()),
                             int(wrapped.size()))
            == 1
        && size == kKeyBytes;
    ERR_clear_error(); // a wrong key is nothing unexpected
    return ok ? Secret(key.view().first(kKeyBytes)) : Secret();
}

} // namespace PhoneBackup::KeyWrap
