// The library's own function runs to its end unasked, and copies so much in every round that it
// takes three times as long as the hashing itself. The compression functions below it are what
// makes the speed; they are still there, but the library would rather not have them called.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "PhoneBackup/crypto/KeyDerivation.h"

#include <QtEndian>

#include <openssl/sha.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace PhoneBackup::KeyDerivation {

namespace {

constexpr quint32 kRoundsBetweenQuestions = 1 << 16;
constexpr std::size_t kBlockBytes = 64; // of either digest
using Block = std::array<uchar, kBlockBytes>;

struct Sha1
{
    using Context = SHA_CTX;
    static constexpr std::size_t kWords = 5;

    static void start(Context &context) { SHA1_Init(&context); }
    static void add(Context &context, const void *data, std::size_t size)
    {
        SHA1_Update(&context, data, size);
    }
    static void finish(Context &context, uchar *digest) { SHA1_Final(digest, &context); }
    static void compress(Context &context, const Block &block)
    {
        SHA1_Transform(&context, block.data());
    }
    static std::array<SHA_LONG *, kWords> words(Context &context)
    {
        return { &context.h0, &context.h1, &context.h2, &context.h3, &context.h4 };
    }
};

struct Sha256
{
    using Context = SHA256_CTX;
    static constexpr std::size_t kWords = 8;

    static void start(Context &context) { SHA256_Init(&context); }
    static void add(Context &context, const void *data, std::size_t size)
    {
        SHA256_Update(&context, data, size);
    }
    static void finish(Context &context, uchar *digest) { SHA256_Final(digest, &context); }
    static void compress(Context &context, const Block &block)
    {
        SHA256_Transform(&context, block.data());
    }
    static std::array<SHA_LONG *, kWords> words(Context &context)
    {
        return { &context.h[0], &context.h[1], &context.h[2], &context.h[3],
                 &context.h[4], &context.h[5], &context.h[6], &context.h[7] };
    }
};

// HMAC under one key: the states that the key leaves the two hashes in are computed once.
template <class Hash>
class Hmac
{
public:
    static constexpr std::size_t kBytes = Hash::kWords * 4;
    using Code = std::array<uchar, kBytes>;

    explicit Hmac(QByteArrayView key)
    {
        Block block {};
        if (std::size_t(key.size()) > kBlockBytes) {
            Hash::start(m_inner);
            Hash::add(m_inner, key.data(), std::size_t(key.size()));
            Hash::finish(m_inner, block.data());
        } else {
            std::copy(key.begin(), key.end(), block.begin());
        }
        start(m_inner, block, 0x36);
        start(m_outer, block, 0x36 ^ 0x5C);
        Secret::wipe(block.data(), kBlockBytes);
    }
    ~Hmac()
    {
        Secret::wipe(&m_inner, sizeof m_inner);
        Secret::wipe(&m_outer, sizeof m_outer);
        Secret::wipe(&m_work, sizeof m_work);
        Secret::wipe(m_message.data(), kBlockBytes);
    }
    Hmac(const Hmac &) = delete;
    Hmac &operator=(const Hmac &) = delete;

    // The code of salt and block number.
    Code first(QByteArrayView salt, quint32 number)
    {
        Code code {};
        const quint32 bigEndian = qToBigEndian(number);
        m_work = m_inner;
        Hash::add(m_work, salt.data(), std::size_t(salt.size()));
        Hash::add(m_work, &bigEndian, sizeof bigEndian);
        Hash::finish(m_work, code.data());
        m_work = m_outer;
        Hash::add(m_work, code.data(), kBytes);
        Hash::finish(m_work, code.data());

        // Every message from here on is one code: it fills the same one block with its padding.
        m_message.fill(0);
        m_message[kBytes] = 0x80;
        qToBigEndian(quint32((kBlockBytes + kBytes) * 8), &m_message[kBlockBytes - 4]);
        return code;
    }

    // Replaces the code by the code of itself.
    void next(Code &code)
    {
        compress(m_inner, code);
        compress(m_outer, code);
    }

private:
    static void start(typename Hash::Context &context, Block &block, uchar pad)
    {
        for (uchar &byte : block)
            byte = static_cast<uchar>(byte ^ pad);
        Hash::start(context);
        Hash::add(context, block.data(), kBlockBytes);
    }

    void compress(const typename Hash::Context &from, Code &code)
    {
        std::memcpy(m_message.data(), code.data(), kBytes);
        m_work = from;
        Hash::compress(m_work, m_message);
        uchar *out = code.data();
        for (const SHA_LONG *word : Hash::words(m_work)) {
            qToBigEndian(quint32(*word), out);
            out += 4;
        }
    }

    typename Hash::Context m_inner {};
    typename Hash::Context m_outer {};
    typename Hash::Context m_work {};
    Block m_message {};
};

template <class Hash>
Secret
derive(QByteArrayView password, QByteArrayView salt, quint32 iterations, const Progress &progress)
{
    Hmac<Hash> hmac(password);
    using Code = typename Hmac<Hash>::Code;
    Secret key(kKeyBytes);
    quint32 unasked = 0;
    qsizetype made = 0;
    for (quint32 number = 1; made < kKeyBytes; ++number) {
        Code code = hmac.first(salt, number);
        Code sum = code;
        for (quint32 i = 1; i < iterations; ++i) {
            if (++unasked == kRoundsBetweenQuestions) {
                if (progress && !progress(unasked))
                    return {};
                unasked = 0;
            }
            hmac.next(code);
            for (std::size_t byte = 0; byte < sum.size(); ++byte)
                sum[byte] = static_cast<uchar>(sum[byte] ^ code[byte]);
        }
        const qsizetype wanted = std::min(qsizetype(sum.size()), kKeyBytes - made);
        std::copy_n(sum.begin(), wanted, key.data() + made);
        made += wanted;
        Secret::wipe(code.data(), qsizetype(code.size()));
        Secret::wipe(sum.data(), qsizetype(sum.size()));
    }
    return key;
}

} // namespace

qint64 roundsOf(Digest digest, quint32 iterations)
{
    const std::size_t blockBytes =
        digest == Digest::Sha1 ? Hmac<Sha1>::kBytes : Hmac<Sha256>::kBytes;
    const std::size_t blocks = (std::size_t(kKeyBytes) + blockBytes - 1) / blockBytes;
    return qint64(blocks) * iterations;
}

Secret key(Digest digest,
           QByteArrayView password,
           QByteArrayView salt,
           quint32 iterations,
           const Progress &progress)
{
    return digest == Digest::Sha1 ? derive<Sha1>(password, salt, iterations, progress)
                                  : derive<Sha256>(password, salt, iterations, progress);
}

} // namespace PhoneBackup::KeyDerivation
