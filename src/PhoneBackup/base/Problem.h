#ifndef PHONEBACKUP_BASE_PROBLEM_H
#define PHONEBACKUP_BASE_PROBLEM_H

#include "PhoneBackup/base/Result.h"

#include <QString>

namespace PhoneBackup {

//! Something of the backup that could not be read, though other things can.
struct Problem
{
    int dataType = -1; //!< Code of the data type that it belongs to, -1 for the backup as a whole.
    QString source; //!< What could not be read: domain and path, or a file of the folder.
    Notice what; //!< For a person.
    bool loss = true; //!< false: a warning; everything that is there is exported all the same.
    bool absent = false; //!< No fault at all: backups of this kind never hold it.
    Fault fault = Fault::Corrupt; //!< What kind of fault it is.
    int systemError = 0; //!< As Error::systemError.
    bool neverDownloaded = false; //!< No fault: the phone itself does not have the file \c source.
    qint64 row = 0; //!< Keeps apart what has one name.
    bool isNameless = false; //!< source is a person without a name: only what tells them apart.
};

} // namespace PhoneBackup

#endif
