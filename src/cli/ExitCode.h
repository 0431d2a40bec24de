#ifndef CLI_EXITCODE_H
#define CLI_EXITCODE_H

#include "Export/Failure.h"

namespace Cli {

//! Exit codes of the program; see docs/exit-codes.md.
enum class ExitCode {
    Complete = 0,
    Failed = 1,
    Usage = 2,
    Incomplete = 3, //!< Finished, but some items could not be exported.
    NoBackup = 10,
    Password = 11, //!< Missing or wrong, for an encrypted backup.
    Output = 12,
    Cancelled = 130,
};

//! The exit code for a run, or the attempt to start one, that ended with \a status.
ExitCode exitCode(Export::Status status);

} // namespace Cli

#endif
