#ifndef CLI_SUMMARY_H
#define CLI_SUMMARY_H

#include "ExitCode.h"
#include "Inventory.h"
#include "RunReport.h"
#include "model/Backup.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Cli {

//! What became of one data type.
struct TypeOutcome
{
    enum class State {
        Complete, //!< Every item was tried.
        Stopped, //!< The export ended within it.
        NotBegun, //!< The export ended before it.
        Lost, //!< Its output could not be opened.
    };

    TypeTotals totals;
    RunReport::Counts counts;
    State state = State::NotBegun;
    int failed() const; //!< Items that are not in the output though they were tried.
};

//! What became of an export.
struct Outcome
{
    ExitCode exitCode = ExitCode::Complete;
    QString message; //!< Why it ended early; empty when it did not.
    QString output; //!< As the user wrote it.
    QString absoluteOutput;
    QList<TypeOutcome> types;
    QStringList absences; //!< What backups of this kind never hold, a line each.
    QString indexPath; //!< Absolute, of the page that leads to everything; empty without one.
    double seconds = 0;
};

//! The outcome of each type of \a inventory, from what \a report counted. \a stopped: the export
//! was asked to end, so that the type it was at may be incomplete.
QList<TypeOutcome> typeOutcomes(const Inventory &inventory, const RunReport &report, bool stopped);

//! "complete", "stopped", "not begun" or "failed".
QString stateWord(TypeOutcome::State state);

//! The table for a person.
QByteArray summaryText(const Outcome &outcome);

//! The same and more for a program.
QByteArray
summaryJson(const Outcome &outcome, const PhoneBackup::Backup &backup, const RunReport &report);

} // namespace Cli

#endif
