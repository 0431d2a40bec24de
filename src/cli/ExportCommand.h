#ifndef CLI_EXPORTCOMMAND_H
#define CLI_EXPORTCOMMAND_H

#include "ExitCode.h"

namespace Cli {

class Console;
struct Options;

//! Exports the selected types of the backup to OUTPUT and prints the result.
ExitCode runExport(Console &console, const Options &options);

} // namespace Cli

#endif
