#include "PhoneBackup/calls/KnownCalls.h"

namespace PhoneBackup {

namespace {

// The app notes when it rang, the phone when it was told.
constexpr qint64 kSecondsApart = 60;

} // namespace

void KnownCalls::add(const Call &call, std::size_t number)
{
    if (call.addresses.size() != 1 || call.names.size() > 1 || !call.date.isValid())
        return;
    const PhoneAddress address(call.addresses.first());
    m_calls.insert({ { address.bucket(), call.direction, call.date.toSecsSinceEpoch() },
                     { address, number } });
}

std::optional<std::size_t> KnownCalls::take(const Call &call)
{
    if (call.addresses.size() != 1 || !call.date.isValid())
        return std::nullopt;
    const PhoneAddress address(call.addresses.first());
    if (address.kind() == PhoneAddress::Kind::None)
        return std::nullopt;
    const QString bucket = address.bucket();
    const qint64 seconds = call.date.toSecsSinceEpoch();
    const auto end = m_calls.upper_bound({ bucket, call.direction, seconds + kSecondsApart });
    for (auto known = m_calls.lower_bound({ bucket, call.direction, seconds - kSecondsApart });
         known != end;
         ++known) {
        if (PhoneAddress::match(known->second.first, address) > 0) {
            const std::size_t found = known->second.second;
            m_calls.erase(known);
            return found;
        }
    }
    return std::nullopt;
}

} // namespace PhoneBackup
