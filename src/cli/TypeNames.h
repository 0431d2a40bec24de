#ifndef CLI_TYPENAMES_H
#define CLI_TYPENAMES_H

#include <QString>
#include <QStringList>

#include <optional>

//! Names of data types on the command line.
namespace Cli::TypeNames {

//! The data type with the name, long name or number \a text; nothing if the program cannot export
//! such a type.
std::optional<int> code(const QString &text);

//! The names of all types that the program exports, in the order of their codes.
QStringList words();

} // namespace Cli::TypeNames

#endif
