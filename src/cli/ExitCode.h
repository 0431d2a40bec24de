#ifndef CLI_EXITCODE_H
#define CLI_EXITCODE_H

#include "Export/Failure.h"

namespace Cli {

//! What the program answers to its caller; docs/exit-codes.md explains each.
enum class ExitCode {
    Complete = 0,
    Failed = 1,
    Usage = 2,
    Incomplete = 3, //!< Done, but some items could not be exported.
    NoBackup = 10,
    Password = 11, //!< Of an encrypted backup: missing or wrong.
    Output = 12,
    Cancelled = 130,
};

//! What the program answers when a run, or an attempt at one, came to \a status.
ExitCode exitCode(Export::Status status);

} // namespace Cli

#endif
