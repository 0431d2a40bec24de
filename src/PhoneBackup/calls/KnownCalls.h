#ifndef PHONEBACKUP_CALLS_KNOWNCALLS_H
#define PHONEBACKUP_CALLS_KNOWNCALLS_H

#include "PhoneBackup/source/Call.h"
#include "PhoneBackup/source/PhoneAddress.h"

#include <map>
#include <tuple>

namespace PhoneBackup {

//! Calls of an app's log that the phone's own history may hold, too: those with one known person.
class KnownCalls
{
public:
    //! Adds \a call, which take() calls \a number.
    void add(const Call &call, std::size_t number);

    //! Takes out the call that \a call is; none when it is none of them.
    std::optional<std::size_t> take(const Call &call);

private:
    using Key = std::tuple<QString, Call::Direction, qint64>; // who, which way, and when
    std::multimap<Key, std::pair<PhoneAddress, std::size_t>> m_calls;
};

} // namespace PhoneBackup

#endif
