#ifndef CLI_REFUSAL_H
#define CLI_REFUSAL_H

#include "BackupAccess.h"
#include "Failure.h"

namespace Cli {

struct Options;

//! Says why nothing is done, as JSON too when that is wanted. \return the code to end with.
ExitCode refuse(Console &console, const Options &options, const Failure &failure);
ExitCode refuse(Console &console, const Options &options, const NoChoice &choice);

} // namespace Cli

#endif
