#ifndef CLI_SUMMARY_H
#define CLI_SUMMARY_H

#include "ExitCode.h"
#include "Inventory.h"
#include "PhoneItems/Backup.h"
#include "RunReport.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Cli {

//! What became of one data type.
struct TypeOutcome
{
    TypeTotals totals;
    RunReport::Counts counts;
    //! The type's as a whole: complete when each output is, not started when the export ended
    //! before it.
    CIExportReport::End state = CIExportReport::End::NotStarted;
    int exported = 0; //!< Items that are in the first of its outputs.
    int failed = 0; //!< Items that are not; the rest if it was stopped was not tried.
    int missing = 0; //!< Parts of the items, and of the backup, that are not in the output.

    //! Whether there is anything to tell of.
    bool isNothing() const
    {
        return totals.items == 0 && missing == 0 && counts.neverDownloaded == 0;
    }
};

//! The sums over several types.
struct Sums
{
    qint64 exported = 0;
    qint64 failed = 0;
    qint64 missing = 0;
    qint64 neverDownloaded = 0;

    explicit Sums(const QList<TypeOutcome> &types);
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

//! The outcome of a type, from what \a report was told.
TypeOutcome typeOutcome(const TypeTotals &totals, const RunReport &report);

//! "complete", "stopped", "not begun" or "failed".
QString stateWord(CIExportReport::End state);

//! The same with the outputs of \a type that are concerned, if others are not: "stopped (CSV)".
QString stateText(const TypeOutcome &type);

//! The table for a person.
QByteArray summaryText(const Outcome &outcome);

//! The same and more for a program.
QByteArray
summaryJson(const Outcome &outcome, const PhoneItems::Backup &backup, const RunReport &report);

} // namespace Cli

#endif
