#include "PhoneBackup/crypto/ClassKeys.h"

#include "PhoneBackup/crypto/KeyWrap.h"
#include "platform/Translation_p.h"

#include <QtEndian>

DATAEXPORT_USE_TR(DataExport);

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
        return Error { Fault::Corrupt, {}, tr("It cannot be decrypted: its key is damaged.") };
    const auto number = qFromLittleEndian<quint32>(wrapped.data());
    const auto found = m_keys.find(int(number));
    if (found == m_keys.end()) {
        return Error {
            Fault::Locked,
            {},
            tr("It is locked: the backup holds no key for its protection class %1.").arg(number)
        };
    }
    Secret key = KeyWrap::unwrap(found->second, wrapped.sliced(kClassBytes));
    if (key.isEmpty())
        return Error { Fault::Corrupt, {}, tr("It cannot be decrypted: its key is damaged.") };
    return key;
}

} // namespace PhoneBackup
