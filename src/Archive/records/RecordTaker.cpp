#include "Archive/records/RecordTaker.h"

namespace Archive {

RecordTaker::~RecordTaker() = default;

} // namespace Archive
