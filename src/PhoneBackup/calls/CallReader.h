#ifndef PHONEBACKUP_CALLS_CALLREADER_H
#define PHONEBACKUP_CALLS_CALLREADER_H

#include "PhoneBackup/source/Call.h"

#include <functional>
#include <vector>

namespace PhoneBackup {

class Source;

/*!
    Reads the phone's history of calls in the order of its stores, then \a ofLogs, which come from
    the logs of apps. A call that stands in both is told once, among the latter.
*/
void readCalls(Source &source,
               std::vector<Call> ofLogs,
               const std::function<void(const Call &)> &sink);

} // namespace PhoneBackup

#endif
