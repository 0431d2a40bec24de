#ifndef CLI_OUTCOMETEXT_H
#define CLI_OUTCOMETEXT_H

#include <QByteArray>

namespace Export {
struct Outcome;
}

//! The result of an export as text.
namespace Cli {

class Console;

//! Prints to standard error what went wrong and what was exported anyway.
void sayOutcome(Console &console, const Export::Outcome &outcome);

//! A table of all types.
QByteArray summaryText(const Export::Outcome &outcome);

} // namespace Cli

#endif
