#include "PhoneBackup/crypto/ClassKeys.h"

#include "PhoneBackup/crypto/KeyWrap.h"

#include <QtEndian>

namespace PhoneBackup {

namespace {

constexpr qsizetype kClassBytes = 4;

} // namespace

void ClassKeys::insert(int protectionClass, Secret key)
{
    m_keys.insert_or_assign(protectionClass, std::move(key));
}

Result<Secret> ClassKeys::unwrap(QByteArrayView wrapped) const
{
    if (wrapped.size() != kClassBytes + KeyWrap::kWrappedBytes)
        return Error { Fault::Corrupt, {}, Notice("crypto.keyDamaged") };
    const auto number = qFromLittleEndian<quint32>(wrapped.data());
    const auto found = m_keys.find(int(number));
    if (found == m_keys.end()) {
        return Error { Fault::Locked, {}, Notice("crypto.locked", { qint64(number) }) };
    }
    Secret key = KeyWrap::unwrap(found->second, wrapped.sliced(kClassBytes));
    if (key.isEmpty())
        return Error { Fault::Corrupt, {}, Notice("crypto.keyDamaged") };
    return key;
}

} // namespace PhoneBackup
