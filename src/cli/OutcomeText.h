#ifndef CLI_OUTCOMETEXT_H
#define CLI_OUTCOMETEXT_H

#include <QByteArray>

namespace Export {
struct Outcome;
}

//! What became of an export, for a person at a terminal.
namespace Cli {

class Console;

//! Says on standard error what went wrong, and what there is nevertheless.
void sayOutcome(Console &console, const Export::Outcome &outcome);

//! The table of all types.
QByteArray summaryText(const Export::Outcome &outcome);

} // namespace Cli

#endif
