#ifndef CLI_PROBLEMS_H
#define CLI_PROBLEMS_H

#include "model/Backup.h"

#include <QString>

namespace Cli {

class Console;

//! Display name of what \a problem belongs to: a data type, or "Backup".
QString problemType(const PhoneBackup::Backup &backup, const PhoneBackup::Problem &problem);

//! Says the \a problems of \a backup as warnings, the first ones if they are many.
void sayProblems(Console &console,
                 const PhoneBackup::Backup &backup,
                 const QList<PhoneBackup::Problem> &problems);

} // namespace Cli

#endif
