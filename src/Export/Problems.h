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

//! Something of a backup that could not be read, or that is not in it.
struct Problem
{
    enum class Kind {
        Loss, //!< Something that is not in the output.
        Warning, //!< All that is there is exported all the same.
        NeverDownloaded, //!< A file that the phone left in the cloud.
        Absence, //!< No fault: backups of this kind never hold it.
    };

    Kind kind;
    int code; //!< Of the data type that it belongs to, -1 for the backup as a whole.
    QString type; //!< Display name of that: a data type, or "Backup".
    QString source; //!< What could not be read; may be empty.
    QString what; //!< For a person.
    int systemError = 0; //!< The system's error number, where it was the system that refused.

    bool isFault() const { return kind == Kind::Loss || kind == Kind::Warning; }

    //! "Notes: The database is damaged. (its path)".
    QString sentence() const;
};

//! The problems with what was asked for of \a backup so far, without the first \a known ones.
QList<Problem> problems(const PhoneItems::Backup &backup, qsizetype known = 0);

//! What backups like \a backup never hold, of what was asked for so far: "Call History: …" each.
QStringList absences(const QList<Problem> &problems);

//! How many of the \a problems are files that were never downloaded.
qint64 neverDownloaded(const QList<Problem> &problems);

//! That so many files were never downloaded.
QString neverDownloadedSentence(qint64 files);

//! The failure when something of \a backup could not be read because of the temporary folder.
std::optional<Failure> temporaryFolderFailure(const PhoneItems::Backup &backup);

} // namespace Export

#endif
