#ifndef PHONEBACKUP_BASE_KEEPGOING_H
#define PHONEBACKUP_BASE_KEEPGOING_H

#include <functional>

namespace PhoneBackup {

//! Asked now and then while something long is read; false stops it with Fault::Cancelled.
using KeepGoing = std::function<bool()>;

} // namespace PhoneBackup

#endif
