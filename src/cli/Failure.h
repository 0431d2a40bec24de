#ifndef CLI_FAILURE_H
#define CLI_FAILURE_H

#include "ExitCode.h"
#include "PhoneBackup/base/Result.h"

#include <QString>
#include <QStringList>

namespace Cli {

class Console;

//! Why the work did not start or did not go on.
struct Failure
{
    ExitCode exitCode;
    QString what; //!< What is wrong and where.
    QStringList details; //!< Further lines; may be empty.
    QString advice; //!< What to do about it; may be empty.
};

//! The failure that a fault of the backup is.
Failure failureOf(const PhoneBackup::Error &error);

//! The user asked to stop before anything was written.
Failure stoppedEarly();

//! Says \a failure on standard error.
void say(Console &console, const Failure &failure);

} // namespace Cli

#endif
