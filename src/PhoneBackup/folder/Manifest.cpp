#include "PhoneBackup/folder/Manifest.h"

namespace PhoneBackup {

Manifest::~Manifest() = default;

} // namespace PhoneBackup
