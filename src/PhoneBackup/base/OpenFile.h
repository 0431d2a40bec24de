#ifndef PHONEBACKUP_BASE_OPENFILE_H
#define PHONEBACKUP_BASE_OPENFILE_H

#include "PhoneBackup/base/Notice.h"

class QFile;

namespace PhoneBackup {

/*!
    Opens \a file for reading and leaves its access time as it is, where the system grants that.
    Only regular files open. \return false when it could not be opened; \a why (may be null) gets
    the reason, to be put into a sentence.
*/
bool openForReading(QFile &file, Notice *why = nullptr);

} // namespace PhoneBackup

#endif
