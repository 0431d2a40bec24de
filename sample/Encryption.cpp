#include "sample/Encryption.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSaveFile>
#include <QtEndian>

#include <openssl/evp.h>

#include <algorithm>
#include <memory>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kKeyBytes = 32;
constexpr int kSaltBytes = 20;
constexpr quint32 kShortIterations = 10000;
constexpr qint64 kChunk = 1 << 20;
constexpr int kLastPasswordClass = 8; // further ones open on their own phone only

struct FreeContext
{
    void operator()(EVP_CIPHER_CTX *context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, FreeContext>;

const uchar *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const uchar *>(bytes.constData());
}

uchar *bytesOf(QByteArray &bytes)
{
    return reinterpret_cast<uchar *>(bytes.data());
}

QByteArray invented(const QString &name)
{
    return QCryptographicHash::hash(u"sample backup "_s.append(name).toUtf8(),
                                    QCryptographicHash::Sha256);
}

QByteArray derived(const QByteArray &password,
                   const QByteArray &salt,
                   quint32 iterations,
                   const EVP_MD *digest)
{
    QByteArray key(kKeyBytes, '\0');
    PKCS5_PBKDF2_HMAC(password.constData(),
                      static_cast<int>(password.size()),
                      bytesOf(salt),
                      static_cast<int>(salt.size()),
                      static_cast<int>(iterations),
                      digest,
                      kKeyBytes,
                      bytesOf(key));
    return key;
}

QByteArray wrap(const QByteArray &key, const QByteArray &wrappingKey)
{
    const Context context(EVP_CIPHER_CTX_new());
    QByteArray result(key.size() + 8, '\0');
    int size = 0;
    EVP_CIPHER_CTX_set_flags(context.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
    EVP_EncryptInit_ex(context.get(), EVP_aes_256_wrap(), nullptr, bytesOf(wrappingKey), nullptr);
    EVP_EncryptUpdate(
        context.get(), bytesOf(result), &size, bytesOf(key), static_cast<int>(key.size()));
    return result;
}

Context contentCipher(const QByteArray &key)
{
    static const QByteArray noVector(16, '\0');
    Context context(EVP_CIPHER_CTX_new());
    EVP_EncryptInit_ex(context.get(), EVP_aes_256_cbc(), nullptr, bytesOf(key), bytesOf(noVector));
    return context;
}

QByteArray number(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray entry(const char *tag, const QByteArray &value)
{
    return QByteArray(tag) + number(static_cast<quint32>(value.size())) + value;
}

QByteArray firstSalt()
{
    return invented(u"first salt"_s).first(kSaltBytes);
}

QByteArray lastSalt()
{
    return invented(u"last salt"_s).first(kSaltBytes);
}

quint32 lastIterations(const Encryption::Settings &settings)
{
    return settings.twoSteps ? std::min(settings.iterations, kShortIterations)
                             : settings.iterations;
}

QByteArray classKey(int protectionClass)
{
    return invented(u"class %1"_s.arg(protectionClass));
}

} // namespace

QList<int> Encryption::allClasses()
{
    return { 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 };
}

Encryption::Encryption(const Settings &settings)
    : m_settings(settings)
{
    QByteArray key = settings.password.toUtf8();
    if (settings.twoSteps)
        key = derived(key, firstSalt(), settings.iterations, EVP_sha256());
    m_passwordKey = derived(key, lastSalt(), lastIterations(settings), EVP_sha1());
}

QByteArray Encryption::keybag() const
{
    QByteArray bag = entry("VERS", number(m_settings.twoSteps ? 4 : 3)) + entry("TYPE", number(1))
        + entry("UUID", invented(u"keybag"_s).first(16)) + entry("HMCK", QByteArray(40, 'h'))
        + entry("WRAP", number(1)) + entry("SALT", lastSalt())
        + entry("ITER", number(lastIterations(m_settings)));
    if (m_settings.twoSteps) {
        bag += entry("DPWT", number(1)) + entry("DPIC", number(m_settings.iterations))
            + entry("DPSL", firstSalt());
    }
    for (const int protectionClass : m_settings.classes) {
        const quint32 wrapping = protectionClass <= kLastPasswordClass ? 2 : 3;
        bag += entry("UUID", invented(u"uuid %1"_s.arg(protectionClass)).first(16))
            + entry("CLAS", number(static_cast<quint32>(protectionClass)))
            + entry("WRAP", number(wrapping)) + entry("KTYP", number(0))
            + entry("WPKY", wrap(classKey(protectionClass), m_passwordKey));
    }
    return bag;
}

QByteArray Encryption::keyFor(const QString &name)
{
    return invented(u"content "_s + name);
}

QByteArray Encryption::wrapped(const QByteArray &key, int protectionClass) const
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(static_cast<quint32>(protectionClass), bytes.data());
    return bytes + wrap(key, classKey(protectionClass));
}

QByteArray Encryption::encrypted(const QByteArray &plain, const QByteArray &key)
{
    const Context context = contentCipher(key);
    QByteArray result(plain.size() + 16, '\0');
    int size = 0;
    int rest = 0;
    EVP_EncryptUpdate(
        context.get(), bytesOf(result), &size, bytesOf(plain), static_cast<int>(plain.size()));
    EVP_EncryptFinal_ex(context.get(), bytesOf(result) + size, &rest);
    return result.first(size + rest);
}

QString Encryption::encryptFile(const QString &path, const QByteArray &key)
{
    QFile plain(path);
    QSaveFile target(path);
    if (!plain.open(QIODevice::ReadOnly))
        return plain.errorString();
    if (!target.open(QIODevice::WriteOnly))
        return target.errorString();
    const Context context = contentCipher(key);
    QByteArray result(kChunk + 16, '\0');
    for (QByteArray chunk = plain.read(kChunk); !chunk.isEmpty(); chunk = plain.read(kChunk)) {
        int size = 0;
        EVP_EncryptUpdate(
            context.get(), bytesOf(result), &size, bytesOf(chunk), static_cast<int>(chunk.size()));
        target.write(result.constData(), size);
    }
    int rest = 0;
    EVP_EncryptFinal_ex(context.get(), bytesOf(result), &rest);
    target.write(result.constData(), rest);
    return target.commit() ? QString() : target.errorString();
}

} // namespace Sample
