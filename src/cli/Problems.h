#ifndef CLI_PROBLEMS_H
#define CLI_PROBLEMS_H

#include "Failure.h"
#include "PhoneItems/Backup.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace Cli {

class Console;

enum class ProblemKind {
    Loss, //!< Something that is not in the output.
    Warning, //!< All that is there is exported all the same.
    NeverDownloaded, //!< A file that the phone left in the cloud.
    Absence, //!< No fault: backups of this kind never hold it.
};

ProblemKind kindOf(const PhoneBackup::Problem &problem);

//! What backups like \a backup never hold, of what was asked for so far: "Call History: …" each.
QStringList absences(const PhoneItems::Backup &backup);

//! The failure when something of \a backup could not be read because of the temporary folder.
std::optional<Failure> temporaryFolderFailure(const PhoneItems::Backup &backup);

//! Display name of what \a problem belongs to: a data type, or "Backup".
QString problemType(const PhoneItems::Backup &backup, const PhoneBackup::Problem &problem);

//! How many of the \a problems are files that were never downloaded.
qint64 neverDownloaded(const QList<PhoneBackup::Problem> &problems);

//! Says the losses and warnings among the \a problems of \a backup; the first ones if they are
//! many.
void sayProblems(Console &console,
                 const PhoneItems::Backup &backup,
                 const QList<PhoneBackup::Problem> &problems);

} // namespace Cli

#endif
