#ifndef PHONEBACKUP_FOLDER_MANIFESTFILE_H
#define PHONEBACKUP_FOLDER_MANIFESTFILE_H

#include "PhoneBackup/base/PrivateFolder.h"
#include "PhoneBackup/crypto/ClassKeys.h"
#include "PhoneBackup/folder/BackupFolder.h"
#include "PhoneBackup/folder/Manifest.h"
#include "PhoneBackup/folder/Password.h"

#include <memory>
#include <optional>

namespace PhoneBackup {

/*!
    Opens the index of \a folder. Of an encrypted backup \a keys and its \a password are given; its
    index is decrypted into \a privateFolder, which must outlive the result, as \a keepGoing must.
*/
Result<std::unique_ptr<Manifest>> openManifest(const BackupFolder &folder,
                                               const std::optional<ClassKeys> &keys,
                                               const Password &password,
                                               PrivateFolder &privateFolder,
                                               const KeepGoing &keepGoing);

} // namespace PhoneBackup

#endif
