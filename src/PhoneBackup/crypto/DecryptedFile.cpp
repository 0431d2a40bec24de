#include "PhoneBackup/crypto/DecryptedFile.h"

#include "PhoneBackup/base/OpenFile.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace PhoneBackup {

namespace {

constexpr int kBlock = 16;
constexpr qint64 kChunk = 65536;

// The count of padding bytes at the end of a block, 0 when they are not all that count.
int paddingOf(const uchar *block)
{
    const int count = block[kBlock - 1];
    if (count < 1 || count > kBlock)
        return 0;
    return std::all_of(block + kBlock - count, block + kBlock, [&](uchar b) { return b == count; })
        ? count
        : 0;
}

} // namespace

void DecryptedFile::FreeContext::operator()(evp_cipher_ctx_st *context) const
{
    EVP_CIPHER_CTX_free(context); // wipes the key
}

DecryptedFile::DecryptedFile(const QString &path, const Secret &key, OnDamage onDamage)
    : m_file(path)
    , m_context(EVP_CIPHER_CTX_new())
    , m_onDamage(std::move(onDamage))
{
    static constexpr std::array<uchar, kBlock> kNoVector {};
    m_reliable = m_context && key.size() == EVP_CIPHER_get_key_length(EVP_aes_256_cbc())
        && EVP_DecryptInit_ex(
               m_context.get(), EVP_aes_256_cbc(), nullptr, key.data(), kNoVector.data())
            == 1
        && EVP_CIPHER_CTX_set_padding(m_context.get(), 0) == 1;
}

DecryptedFile::~DecryptedFile()
{
    close();
}

bool DecryptedFile::open(OpenMode mode)
{
    if (!m_reliable || (mode & WriteOnly) || !openForReading(m_file, &m_failure))
        return false;
    const qint64 size = m_file.size();
    m_left = size - size % kBlock;
    m_cutOff = m_left != size;
    m_cipher = std::make_unique_for_overwrite<uchar[]>(kChunk);
    m_plain = std::make_unique_for_overwrite<uchar[]>(kChunk);
    if (m_left == 0)
        end();
    return QIODevice::open(ReadOnly | Unbuffered);
}

void DecryptedFile::close()
{
    m_file.close();
    QIODevice::close();
}

bool DecryptedFile::atEnd() const
{
    return m_used == m_size && m_left == 0;
}

qint64 DecryptedFile::readData(char *data, qint64 maxSize)
{
    qint64 count = 0;
    while (count < maxSize && !atEnd()) {
        if (m_used == m_size && !fill())
            return -1;
        const qint64 step = std::min<qint64>(maxSize - count, m_size - m_used);
        std::memcpy(data + count, m_plain.get() + m_used, std::size_t(step));
        m_used += int(step);
        count += step;
    }
    return count;
}

qint64 DecryptedFile::writeData(const char * /*data*/, qint64 /*size*/)
{
    return -1;
}

bool DecryptedFile::fill()
{
    const qint64 wanted = std::min(kChunk, m_left);
    qint64 got = 0;
    while (got < wanted) {
        const qint64 count =
            m_file.read(reinterpret_cast<char *>(m_cipher.get()) + got, wanted - got);
        if (count < 0) {
            setErrorString(m_file.errorString());
            return false;
        }
        if (count == 0)
            break;
        got += count;
    }
    m_left -= wanted;
    if (got < wanted) { // cut while it was read
        m_cutOff = true;
        m_left = 0;
        got -= got % kBlock;
    }
    m_used = m_size = 0;
    if (got > 0
        && EVP_DecryptUpdate(m_context.get(), m_plain.get(), &m_size, m_cipher.get(), int(got))
            != 1) {
        setErrorString(qt_error_string(EIO)); // nothing of a file can make it fail
        return false;
    }
    if (m_left == 0)
        end();
    return true;
}

void DecryptedFile::end()
{
    const int padding =
        m_size >= kBlock && !m_cutOff ? paddingOf(m_plain.get() + m_size - kBlock) : 0;
    m_size -= padding;
    const bool isEmpty = m_size == 0 && m_used == 0 && !m_cutOff;
    if (padding > 0 || isEmpty || !m_onDamage)
        return;
    m_onDamage(Notice(m_cutOff ? "crypto.cutOff" : "crypto.endDamaged"));
}

} // namespace PhoneBackup
