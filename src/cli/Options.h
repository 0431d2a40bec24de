#ifndef CLI_OPTIONS_H
#define CLI_OPTIONS_H

#include "ExitCode.h"
#include "Export/Request.h"

#include <QString>

#include <variant>

namespace Cli {

//! The options of the command line.
struct Options : Export::Request
{
    QString passwordFile; //!< Empty if there is none.
    bool list = false; //!< List only; output is empty.
    bool json = false;
    bool quiet = false;
};

//! Returns the options, or the exit code after printing help, version or an error.
std::variant<Options, ExitCode> parseOptions(int argc, const char *const *argv);

} // namespace Cli

#endif
