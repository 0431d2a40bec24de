#include "model/MessageFilter.h"

#include "model/PhoneAddress.h"

#include <algorithm>

namespace PhoneBackup {

bool MessageFilter::accepts(const QString &name, const QStringList &addresses) const
{
    const QString wanted = chat.trimmed();
    if (wanted.isEmpty() || name.contains(wanted, Qt::CaseInsensitive))
        return true;
    const PhoneAddress address(wanted);
    return std::any_of(addresses.cbegin(), addresses.cend(), [&](const QString &other) {
        return PhoneAddress::match(address, PhoneAddress(other)) > 0;
    });
}

} // namespace PhoneBackup
