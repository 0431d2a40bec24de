#ifndef EXPORT_OUTCOME_H
#define EXPORT_OUTCOME_H

#include "Export/Failure.h"
#include "Export/Inventory.h"
#include "Export/Problems.h"
#include "Export/RunReport.h"
#include "PhoneBackup/folder/BackupInfo.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Export {

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

    //! Path of the type's folder in the folder \a output; empty when nothing is there.
    QString folderIn(const QString &output) const;
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
    Status status = Status::Complete;
    std::optional<Failure> failure; //!< Why it ended early; none when it did not.
    QList<PhoneBackup::BackupInfo> several; //!< Those to choose from when there was not only one.
    bool hasStarted = false; //!< Otherwise nothing was written, and what follows tells nothing.
    PhoneBackup::BackupInfo backup;
    QString output; //!< As the user wrote it.
    QString absoluteOutput;
    QList<TypeOutcome> types;
    QList<Problem> remarks; //!< Warnings about the backup, and what backups of its kind never hold.
    QString indexPath; //!< Absolute, of the page that leads to everything; empty without one.
    int indexError = 0; //!< Why there is none though OUTPUT can be written; 0 when it did not fail.
    QString reportPath; //!< Absolute, of export-report.csv; empty without one.
    int reportError = 0; //!< Why lines of it are missing; 0 when none is.
    qint64 failureCount = 0; //!< All failures.
    QList<RunReport::Failed> failures; //!< The first ones.
    QList<RunReport::Failed> neverDownloaded; //!< Files of that kind, the first ones.
    int jpegCopies = 0; //!< Made of HEIC pictures.
    double seconds = 0;

    //! Whether there is anything to tell of, exported or not.
    bool isNothing() const;
};

//! The outcome of a type, from what \a report was told.
TypeOutcome typeOutcome(const TypeTotals &totals, const RunReport &report);

//! "page", "CSV", "vCards" or "copies".
QString outputName(CIExportReport::Output output);

//! "complete", "stopped", "not started" or "failed".
QString stateWord(CIExportReport::End state);

//! The same with the outputs of \a type that are concerned, if others are not: "stopped (CSV)".
QString stateText(const TypeOutcome &type);

} // namespace Export

#endif
