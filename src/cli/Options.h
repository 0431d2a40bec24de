#ifndef CLI_OPTIONS_H
#define CLI_OPTIONS_H

#include "ExitCode.h"
#include "Export/Request.h"

#include <QString>

#include <variant>

namespace Cli {

//! What the command line asks for.
struct Options : Export::Request
{
    QString passwordFile; //!< Empty: none.
    bool list = false; //!< Export nothing; output is empty.
    bool json = false;
    bool quiet = false;
};

//! The options, or the code to end with: help and version are written, faults are said here.
std::variant<Options, ExitCode> parseOptions(int argc, const char *const *argv);

} // namespace Cli

#endif
