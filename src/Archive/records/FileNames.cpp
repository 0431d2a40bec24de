#include "Archive/records/FileNames.h"

namespace Archive {

FileNames::~FileNames() = default;

} // namespace Archive
