#ifndef CLI_RESULT_H
#define CLI_RESULT_H

#include "ExitCode.h"
#include "Export/Backups.h"

#include <QByteArray>

class QJsonObject;

//! What the program ends with: results on standard output, faults on standard error, a code.
namespace Cli {

class Console;
struct Options;

//! \a result and the exit code that belongs to \a status, as text.
QByteArray document(QJsonObject result, Export::Status status);

//! Says \a failure on standard error.
void say(Console &console, const Export::Failure &failure);

//! Says why nothing is done, as JSON too when that is wanted, and which backups there are to choose
//! from. \return the code to end with.
ExitCode refuse(Console &console, const Options &options, const Export::Refusal &refusal);

} // namespace Cli

#endif
