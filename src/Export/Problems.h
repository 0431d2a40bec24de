#ifndef EXPORT_PROBLEMS_H
#define EXPORT_PROBLEMS_H

#include "Export/Failure.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace PhoneItems {
class Backup;
}

namespace Export {

//! Something in a backup that could not be read, or that the backup lacks.
struct Problem
{
    enum class Kind {
        Loss, //!< Something is missing from the output.
        Warning, //!< Everything there is was exported anyway.
        NeverDownloaded, //!< A file that was only in the cloud.
        Absence, //!< Not a fault: backups of this kind never contain it.
    };

    Kind kind;
    int code; //!< Code of the data type, -1 for the backup as a whole.
    QString type; //!< Display name of the data type, or "Backup".
    QString source; //!< Where the problem is; may be empty.
    QString what; //!< A sentence.
    int systemError = 0; //!< The system's error number, if the system refused.

    bool isFault() const { return kind == Kind::Loss || kind == Kind::Warning; }

    //! "Notes: The database is damaged. (its path)".
    QString sentence() const;
};

//! The problems found in \a backup so far, except the first \a known ones.
QList<Problem> problems(const PhoneItems::Backup &backup, qsizetype known = 0);

//! A line for each of the \a problems that is an absence: "Call History: …".
QStringList absences(const QList<Problem> &problems);

//! Counts the files among \a problems that were never downloaded.
qint64 neverDownloaded(const QList<Problem> &problems);

//! A sentence that says that \a files were never downloaded.
QString neverDownloadedSentence(qint64 files);

//! The failure if something in \a backup could not be read because of the temporary folder.
std::optional<Failure> temporaryFolderFailure(const PhoneItems::Backup &backup);

} // namespace Export

#endif
