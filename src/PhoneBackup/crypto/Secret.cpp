#include "PhoneBackup/crypto/Secret.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <utility>

namespace PhoneBackup {

Secret::Secret(qsizetype size)
    : m_bytes(std::make_unique<uchar[]>(std::size_t(size)))
    , m_size(size)
{
}

Secret::Secret(QByteArrayView bytes)
    : Secret(bytes.size())
{
    std::copy(bytes.begin(), bytes.end(), m_bytes.get());
}

Secret::~Secret()
{
    wipe();
}

Secret::Secret(Secret &&other) noexcept
    : m_bytes(std::move(other.m_bytes))
    , m_size(std::exchange(other.m_size, 0))
{
}

Secret &Secret::operator=(Secret &&other) noexcept
{
    if (this != &other) {
        wipe();
        m_bytes = std::move(other.m_bytes);
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

void Secret::wipe(void *bytes, qsizetype size)
{
    OPENSSL_cleanse(bytes, std::size_t(size));
}

void Secret::wipe()
{
    if (m_bytes)
        wipe(m_bytes.get(), m_size);
}

} // namespace PhoneBackup
