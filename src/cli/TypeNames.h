#ifndef CLI_TYPENAMES_H
#define CLI_TYPENAMES_H

#include <QString>
#include <QStringList>

#include <optional>

//! The words that name a data type on the command line.
namespace Cli::TypeNames {

//! The data type that \a text names by its word, a longer form of it, or its number. None when
//! this program cannot export such a type.
std::optional<int> code(const QString &text);

//! The words of all types that this program exports, in the order of their codes.
QStringList words();

} // namespace Cli::TypeNames

#endif
