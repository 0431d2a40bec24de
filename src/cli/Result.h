#ifndef CLI_RESULT_H
#define CLI_RESULT_H

#include "BackupAccess.h"
#include "ExitCode.h"

class QJsonObject;

//! What the program ends with: results on standard output, faults on standard error, a code.
namespace Cli {

struct Options;

//! \a result and the exit code that belongs to \a status, as text.
QByteArray document(QJsonObject result, Export::Status status);

//! Says \a failure on standard error.
void say(Console &console, const Export::Failure &failure);

//! Says why nothing is done, as JSON too when that is wanted. \return the code to end with.
ExitCode refuse(Console &console, const Options &options, const Export::Failure &failure);
ExitCode refuse(Console &console, const Options &options, const NoChoice &choice);

} // namespace Cli

#endif
