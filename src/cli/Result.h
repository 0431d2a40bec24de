#ifndef CLI_RESULT_H
#define CLI_RESULT_H

#include "ExitCode.h"
#include "Export/Backups.h"

#include <QByteArray>

class QJsonObject;

//! How the program ends: results on standard output, errors on standard error, an exit code.
namespace Cli {

class Console;
struct Options;

//! \a result with the exit code for \a status, as JSON text.
QByteArray document(QJsonObject result, Export::Status status);

//! Prints \a failure to standard error.
void say(Console &console, const Export::Failure &failure);

//! Prints why nothing was exported, also as JSON if requested, and the backups to choose from.
//! \return the exit code.
ExitCode refuse(Console &console, const Options &options, const Export::Refusal &refusal);

} // namespace Cli

#endif
