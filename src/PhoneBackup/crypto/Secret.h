#ifndef PHONEBACKUP_CRYPTO_SECRET_H
#define PHONEBACKUP_CRYPTO_SECRET_H

#include <QByteArrayView>

#include <memory>

namespace PhoneBackup {

//! Bytes of a password or key: never copied by accident, and wiped when they are no longer needed.
class Secret
{
public:
    Secret() = default;

    //! \a size bytes, all 0.
    explicit Secret(qsizetype size);
    explicit Secret(QByteArrayView bytes);
    ~Secret();

    Secret(Secret &&other) noexcept;
    Secret &operator=(Secret &&other) noexcept;
    Secret(const Secret &) = delete;
    Secret &operator=(const Secret &) = delete;

    uchar *data() { return m_bytes.get(); }
    const uchar *data() const { return m_bytes.get(); }
    qsizetype size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }
    QByteArrayView view() const { return { m_bytes.get(), m_size }; }

    //! Overwrites \a size bytes in a way that no compiler leaves out.
    static void wipe(void *bytes, qsizetype size);

private:
    void wipe();

    std::unique_ptr<uchar[]> m_bytes;
    qsizetype m_size = 0;
};

} // namespace PhoneBackup

#endif
