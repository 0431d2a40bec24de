#ifndef PHONEBACKUP_FOLDER_PASSWORD_H
#define PHONEBACKUP_FOLDER_PASSWORD_H

#include "PhoneBackup/crypto/Secret.h"

#include <functional>

namespace PhoneBackup {

//! What opens an encrypted backup.
struct Password
{
    Secret text; //!< UTF-8; empty when there is none.
    std::function<void(int percent)> progress; //!< Told how far the making of keys is; may be null.
};

} // namespace PhoneBackup

#endif
