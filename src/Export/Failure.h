#ifndef EXPORT_FAILURE_H
#define EXPORT_FAILURE_H

#include "PhoneBackup/base/Result.h"

#include <QString>
#include <QStringList>

namespace Export {

//! How a run, or the attempt to start one, ended.
enum class Status {
    Complete,
    Failed,
    Usage, //!< The request cannot be carried out.
    Incomplete, //!< Finished, but some items could not be exported.
    NoBackup,
    Password, //!< Missing or wrong, for an encrypted backup.
    Output,
    Cancelled,
};

//! Why a run did not start or did not continue.
struct Failure
{
    enum class Cause {
        Stopped, //!< On request.
        Unsuitable, //!< The request makes no sense or would do harm.
        NotEmpty, //!< OUTPUT contains files, and Request::intoExisting is not set.
        NoBackup, //!< None was found, or it cannot be read.
        NoPassword, //!< The backup is encrypted, and no password was provided.
        WrongPassword,
        TemporaryFolder, //!< The temporary folder cannot be used or is full.
        NoRoom, //!< The disk of OUTPUT seems to have too little space to start.
        DiskFull, //!< The disk of OUTPUT filled up.
        Output, //!< OUTPUT cannot be written to, or no longer.
    };

    Cause cause;
    QString what; //!< A sentence: what is wrong and where.
    QStringList details = {}; //!< More lines; may be empty.
    QString advice = {}; //!< What the user can do; may be empty.
    int systemError = 0; //!< The system's error number, if the system refused.

    Status status() const;
};

//! Converts an error of the reader.
Failure failureOf(const PhoneBackup::Error &error);

//! The failure for a stop before anything was written.
Failure stoppedEarly();

} // namespace Export

#endif
