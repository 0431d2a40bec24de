#ifndef CLI_EXPORTCOMMAND_H
#define CLI_EXPORTCOMMAND_H

#include "ExitCode.h"

namespace Cli {

class Console;
struct Options;

//! Exports the selected types of the backup into OUTPUT, and tells what became of each.
ExitCode runExport(Console &console, const Options &options);

} // namespace Cli

#endif
