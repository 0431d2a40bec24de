#ifndef CLI_LISTCOMMAND_H
#define CLI_LISTCOMMAND_H

#include "ExitCode.h"

namespace Cli {

class Console;
struct Options;

//! Implements --list: prints what the backup contains.
ExitCode runList(Console &console, const Options &options);

} // namespace Cli

#endif
