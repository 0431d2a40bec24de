#ifndef PHONEBACKUP_CRYPTO_KEYBAG_H
#define PHONEBACKUP_CRYPTO_KEYBAG_H

#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/crypto/ClassKeys.h"
#include "PhoneBackup/crypto/Secret.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <optional>

namespace PhoneBackup {

/*!
    \brief The keybag of an encrypted backup: the keys of the protection classes, wrapped with a key
    that is derived from the password.
*/
class Keybag
{
public:
    //! Asked with 0 to 100 while the password is turned into a key; false stops it.
    using Progress = std::function<bool(int percent)>;

    //! More rounds of derivation than this are refused.
    static constexpr quint32 kMaxIterations = 100'000'000;

    //! Reads as much of \a bytes as is whole; isCutOff() says whether that is all of it.
    static Keybag parse(QByteArrayView bytes);

    bool isCutOff() const { return m_cutOff; }

    /*!
        The keys of all classes that \a password opens. Takes as long as deriving a key from the
        password. Fault::WrongPassword when it opens none of those that files have, Fault::Corrupt
        when the keybag lacks what is needed, Fault::Cancelled on \a progress, which may be null.
    */
    Result<ClassKeys> unlock(const Secret &password, const Progress &progress) const;

private:
    struct ClassRecord
    {
        int protectionClass = 0;
        quint32 wrap = 0;
        QByteArray wrappedKey;

        bool opensWithPassword() const;
        bool isOfFiles() const;
    };
    struct Step
    {
        QByteArray salt;
        std::optional<quint32> iterations;
    };

    void readHeader(QByteArrayView tag, QByteArrayView value);
    static void readRecord(ClassRecord &record, QByteArrayView tag, QByteArrayView value);
    Error damaged(const Notice &why) const;
    Result<Secret> passwordKey(const Secret &password, const Progress &progress) const;

    Step m_first; // only of systems from 10.2 on
    Step m_last;
    QList<ClassRecord> m_records;
    bool m_cutOff = false;
};

} // namespace PhoneBackup

#endif
