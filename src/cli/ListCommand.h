#ifndef CLI_LISTCOMMAND_H
#define CLI_LISTCOMMAND_H

#include "ExitCode.h"

namespace Cli {

class Console;
struct Options;

//! --list: shows what is in the backup and exports nothing.
ExitCode runList(Console &console, const Options &options);

} // namespace Cli

#endif
