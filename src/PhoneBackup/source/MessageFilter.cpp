#include "PhoneBackup/source/MessageFilter.h"

#include "PhoneBackup/source/PhoneAddress.h"

#include <algorithm>

namespace PhoneBackup {

bool MessageFilter::accepts(const QStringList &names, const QStringList &addresses) const
{
    const auto fits = [&](const QString &wanted) {
        const PhoneAddress address(wanted);
        return std::any_of(
                   names.cbegin(),
                   names.cend(),
                   [&](const QString &name) { return name.contains(wanted, Qt::CaseInsensitive); })
            || std::any_of(addresses.cbegin(), addresses.cend(), [&](const QString &other) {
                   return PhoneAddress::match(address, PhoneAddress(other)) > 0;
               });
    };
    return chats.isEmpty() || std::any_of(chats.cbegin(), chats.cend(), fits);
}

} // namespace PhoneBackup
