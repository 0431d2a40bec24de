#ifndef EXPORT_OUTCOME_H
#define EXPORT_OUTCOME_H

#include "Export/Failure.h"
#include "Export/Formats.h"
#include "Export/Inventory.h"
#include "Export/Problems.h"
#include "Export/RunReport.h"
#include "PhoneBackup/folder/BackupInfo.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Export {

//! The result for one data type.
struct TypeOutcome
{
    TypeTotals totals;
    RunReport::Counts counts;
    //! Of the type as a whole: complete if every output is, not started if the export ended before
    //! this type.
    CIExportReport::End state = CIExportReport::End::NotStarted;
    int exported = 0; //!< Items that are in the first output.
    int failed = 0; //!< Items that are not. After a stop, the remaining items were not tried.
    bool isInArchiveOnly = false; //!< The formats asked for nothing else of it.
    int missing = 0; //!< Parts of items, or of the backup, that are not in the output.

    //! Whether there is nothing to report.
    bool isNothing() const
    {
        return totals.items == 0 && missing == 0 && counts.neverDownloaded == 0;
    }

    //! Path of the type's folder in \a output; empty if nothing was exported.
    QString folderIn(const QString &output) const;
};

//! Totals over several types.
struct Sums
{
    qint64 exported = 0;
    qint64 failed = 0;
    qint64 missing = 0;
    qint64 neverDownloaded = 0;

    explicit Sums(const QList<TypeOutcome> &types);
};

//! The result of an export.
struct Outcome
{
    Status status = Status::Complete;
    std::optional<Failure> failure; //!< Why it ended early, if it did.
    QList<PhoneBackup::BackupInfo>
        several; //!< The backups to choose from, if there is more than one.
    bool hasStarted = false; //!< If false, nothing was written and the members below are empty.
    PhoneBackup::BackupInfo backup;
    QString output; //!< As requested.
    QString absoluteOutput;
    QList<TypeOutcome> types;
    QList<Problem> remarks; //!< Warnings, and what backups of this kind never contain.
    QString indexPath; //!< Absolute path of the index page; empty if there is none.
    int indexError = 0; //!< Error number if only the index page could not be written, else 0.
    QString reportPath; //!< Absolute path of export-report.csv; empty if there is none.
    int reportError = 0; //!< Error number if lines of the report are missing, else 0.
    qint64 failureCount = 0; //!< Of all failures.
    QList<RunReport::Failed> failures; //!< The first RunReport::kKept.
    QList<RunReport::Failed> neverDownloaded; //!< The first RunReport::kKept such files.
    int jpegCopies = 0; //!< JPEG copies of HEIC pictures.
    int soundCopies = 0; //!< Copies of sound that browsers can play.
    double seconds = 0;

    //! Whether nothing was exported and nothing failed.
    bool isNothing() const;
};

//! The outcome of a type, as recorded by \a report.
TypeOutcome typeOutcome(const TypeTotals &totals, const RunReport &report, const Formats &formats);

//! "page", "CSV", "vCards" or "copies".
QString outputName(CIExportReport::Output output);

//! "complete", "stopped", "not started" or "failed".
QString stateWord(CIExportReport::End state);

//! The state word, with the affected outputs of \a type if not all are: "stopped (CSV)".
QString stateText(const TypeOutcome &type);

} // namespace Export

#endif
