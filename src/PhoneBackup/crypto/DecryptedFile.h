#ifndef PHONEBACKUP_CRYPTO_DECRYPTEDFILE_H
#define PHONEBACKUP_CRYPTO_DECRYPTEDFILE_H

#include "PhoneBackup/base/Notice.h"
#include "PhoneBackup/crypto/Secret.h"

#include <QFile>
#include <QIODevice>

#include <functional>
#include <memory>

struct evp_cipher_ctx_st;

namespace PhoneBackup {

/*!
    \brief The plain bytes of an encrypted file (AES-256-CBC, PKCS#7 padding), from its beginning to
    its end.

    A file with a damaged end gives all that there is: with padding that cannot be right its bytes
    stay, and of a file that ends within a block the whole blocks.
    \par Memory
    Constant, whatever the size of the file.
*/
class DecryptedFile final : public QIODevice
{
public:
    //! Told once the end is reached and found to be damaged: what is wrong, for a person.
    using OnDamage = std::function<void(const Notice &what)>;

    DecryptedFile(const QString &path, const Secret &key, OnDamage onDamage);
    ~DecryptedFile() override;

    //! Opens for reading, the only \a mode that there is; an access time is left as it is.
    bool open(OpenMode mode) override;

    //! Why it could not be opened, to be put into a sentence.
    const Notice &failure() const { return m_failure; }

    void close() override;

    bool isSequential() const override { return true; }
    bool atEnd() const override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    struct FreeContext
    {
        void operator()(evp_cipher_ctx_st *context) const;
    };

    bool fill();
    void end();

    QFile m_file;
    std::unique_ptr<evp_cipher_ctx_st, FreeContext> m_context;
    OnDamage m_onDamage;
    Notice m_failure;
    qint64 m_left = 0; // of the file, in whole blocks
    bool m_cutOff = false;
    bool m_reliable = true;
    std::unique_ptr<uchar[]> m_cipher;
    std::unique_ptr<uchar[]> m_plain;
    int m_used = 0; // of the plain bytes
    int m_size = 0;
};

} // namespace PhoneBackup

#endif
