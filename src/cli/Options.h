#ifndef CLI_OPTIONS_H
#define CLI_OPTIONS_H

#include "ExitCode.h"
#include "PhoneBackup/source/MessageFilter.h"

#include <QList>
#include <QString>

#include <variant>

namespace Cli {

//! What the command line asks for.
struct Options
{
    QString backup;
    QString output; //!< Empty with list.
    QList<int> types; //!< Codes of the selected data types, never empty.
    QString passwordFile; //!< Empty: none.
    PhoneBackup::MessageFilter messages; //!< Which messages are wanted, and what was sent in them.
    bool list = false;
    bool json = false;
    bool quiet = false;
    bool intoExisting = false;
    bool checkSpace = true;
    bool convertHeic = false; //!< Write a JPEG beside each HEIC picture that is copied.
};

//! The options, or the code to end with: help and version are written, faults are said here.
std::variant<Options, ExitCode> parseOptions(int argc, const char *const *argv);

} // namespace Cli

#endif
